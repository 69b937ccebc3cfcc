# Searches by what points look like, through the program: colour, intensity, jumps; what is found on a generated scan, the same
# bytes for any number of threads, listings, profiles, and what is refused.
. "$(dirname "$0")/lib.sh"

# moved FROM FILE: how many points of a class were changed, by a JSON summary
moved() { awk -v from="$1" '/"from":/ { f = $2 + 0 } /"points":/ && f == from { n += $2 + 0 } /"seconds"/ { exit } END { print n + 0 }' "$2"; }

"$urdimbre" --quiet generate scan.las --points 100000 --seed 7
cp scan.las before.las
"$urdimbre" info scan.las >info.txt
grep -qE '^  intensity   [0-9]+ to [0-9]+$' info.txt || fail "info tells no range of intensities: $(cat info.txt)"
grep -qE '^  colour      [0-9,]+ to [0-9,]+ \(8 bits\)$' info.txt || fail "info tells no range of colours"
"$urdimbre" --json info scan.las >info.json
expect "that both vary" "$(grep -c '"varies": true' info.json)" 4 # of the file, and of all

# --- what rises, and conditions made of it ---
"$urdimbre" classify colour scan.las --list 3 >list.txt 2>/dev/null
when=$(sed -n 's/.*--when \(.*\):CLASS$/\1/p' list.txt | head -1)
[ -n "$when" ] || fail "the list tells no condition: $(cat list.txt)"
pass
"$urdimbre" --json classify colour scan.las --when "$when:64" --distance 0 -o out.las >out.json 2>/dev/null
[ "$(number found out.json)" -gt 1000 ] || fail "a condition of the list finds nothing: $when"
pass
expect "the input" "$(cmp before.las scan.las && echo same)" same
expect "the same under the other name" "$("$urdimbre" --quiet classify color scan.las --when "$when:64" --distance 0 -o o.las && cmp o.las out.las && echo same)" same
"$urdimbre" classify intensity scan.las --list 3 >list.txt 2>/dev/null
grep -q -- "--when [0-9]*:[0-9]*:3:CLASS" list.txt || fail "no intensities are told"
expect "an empty list" "$("$urdimbre" classify intensity scan.las --list 500 2>/dev/null | head -1 | cut -d, -f1)" "0 rises of more than 500"

# --- one condition that takes everything, by colour and by intensity ---
"$urdimbre" --quiet classify colour scan.las --when 128,128,128:255:2:64 --distance 5 -o colour.las
"$urdimbre" --quiet classify intensity scan.las --when 0:65535:2:64 --distance 5 -o intensity.las
expect "everything of any colour, and of any intensity" "$(cmp colour.las intensity.las && echo same)" same

# --- threads ---
for threads in 1 2 4; do
  for kind in "colour --when 128,128,128:255:2:64" "intensity --when 0:60:2:5 --when 61:65535:2:6" \
              "jumps --difference 20 --to 9" "jumps --difference -20 --to 9 --distance 0"; do
    "$urdimbre" --quiet --threads "$threads" classify $kind scan.las -o "$threads.las"
    sum=$(cksum <"$threads.las")
    name=$(echo "$kind" | tr -c 'a-z0-9\n' _)
    [ "$threads" = 1 ] && echo "$sum" >"sum_$name"
    expect "$kind on $threads threads" "$sum" "$(cat "sum_$name")"
  done
done
rm -f [124].las o.las

# --- classes, orders, profiles ---
"$urdimbre" --json classify jumps scan.las --difference 20 --to 9 --class 2 --dry-run >two.json 2>/dev/null
[ "$(number reclassified two.json)" -gt 0 ] || fail "no jumps on the ground"
expect "a class that is not named" "$(moved 5 two.json)" 0
disjoint="--when 0:60:2:5 --when 61:65535:2:6 --distance 0"
"$urdimbre" --quiet classify intensity scan.las $disjoint -o hilbert.las
"$urdimbre" --quiet classify intensity scan.las $disjoint --order file -o file.las
# Where four points lie on one circle either triangulation is right: a point in a thousand may be seen in one alone.
differing=$( (cmp -l hilbert.las file.las || true) | wc -l)
[ "$differing" -le 20 ] || fail "disjoint conditions in the order of the file: $differing points differ"
pass
"$urdimbre" --json classify intensity scan.las $disjoint --profile wood -o p.las >given.json 2>/dev/null
"$urdimbre" --json classify intensity scan.las --profile wood -o q.las >kept.json 2>/dev/null
expect "parameters of the profile" "$(sed -n '/parameters/,/}/p' kept.json)" "$(sed -n '/parameters/,/}/p' given.json)"
expect "what they give" "$(cmp p.las q.las && echo same)" same

# --- what makes no sense, and what can't be done ---
refuses 2 "nothing to look for" "$urdimbre" classify colour scan.las -o o.las
refuses 2 "give R,G,B:TOLERANCE:HEIGHT:CLASS" "$urdimbre" classify colour scan.las --when 1:2:3:4 -o o.las
refuses 2 "leave out -o" "$urdimbre" classify intensity scan.las --list 2 -o o.las
refuses 2 "difference" "$urdimbre" classify jumps scan.las --to 9 -o o.las
refuses 2 "difference" "$urdimbre" classify jumps scan.las --difference 70000 --to 9 -o o.las
refuses 2 "129 conditions" "$urdimbre" classify intensity scan.las $(for i in $(seq 129); do echo "--when 1:2:3:4"; done) -o o.las
printf '0 0 1\n9 0 2\n0 9 1\n' >small.txt
refuses 1 "small.txt: is text" "$urdimbre" classify colour small.txt --when 1,2,3:4:5:6 -o o.las
if [ -d "$data" ]; then
  refuses 1 "4_6_crop.las: has no colours, or black alone" "$urdimbre" classify colour "$data/4_6_crop.las" --when 1,2,3:4:5:6 -o o.las
  refuses 1 "bcts_1.las: has no colours" "$urdimbre" classify colour "$data/bcts_1.las" --when 1,2,3:4:5:6 -o o.las
  refuses 1 "samp11.las: the intensity of every point is 0" "$urdimbre" classify jumps "$data/isprs/samp11.las" --difference 5 --to 9 -o o.las
  refuses 1 "class 40 does not fit point format 3" "$urdimbre" classify colour "$data/autzen_trim.las" --when 1,2,3:4:5:40 -o o.las
fi
no_debris "searches by looks"
done_with
