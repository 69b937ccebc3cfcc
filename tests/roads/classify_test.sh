# From a LAS file to the same file with new classes: what is found on a generated scan, whose classes are the truth; the bytes;
# threads and orders; profiles; what goes wrong and Ctrl-C.
. "$(dirname "$0")/lib.sh"

# moved FROM FILE: how many points of a class were changed, by a JSON summary
moved() { awk -v from="$1" '/"from":/ { f = $2 + 0 } /"points":/ && f == from { n += $2 + 0 } /"seconds"/ { exit } END { print n + 0 }' "$2"; }
# of_class CLASS FILE.las
of_class() {
  "$urdimbre" --json info "$2" 2>/dev/null |
    awk -v key="\"$1\":" '/"classes"/ { inside = 1 } inside && $1 == key { n = $2 + 0 } inside && /}/ { exit } END { print n + 0 }'
}
# at_least PERCENT PART WHOLE, at_most PERCENT PART WHOLE
at_least() { [ $((100 * $2)) -ge $(($1 * $3)) ] || fail "$2 of $3 are less than $1 per cent"; pass; }
at_most() { [ $((100 * $2)) -le $(($1 * $3)) ] || fail "$2 of $3 are more than $1 per cent"; pass; }

"$urdimbre" --quiet generate scan.las --points 200000 --seed 7
cp scan.las before.las
high="classify high scan.las --distance 5 --height 2"
"$urdimbre" --json $high --to 64 -o out.las >out.json 2>progress

# --- what is found ---
count=$(number reclassified out.json)
at_least 80 "$(moved 5 out.json)" "$(of_class 5 scan.las)"
at_most 15 "$(moved 2 out.json)" "$(of_class 2 scan.las)"  # under the trees, within their outline
at_most 2 "$(moved 11 out.json)" "$(of_class 11 scan.las)"
# A flat roof is found by its edge; the outline takes the rest when its sides reach across. Trees would join the houses.
"$urdimbre" --json classify high scan.las --distance 15 --height 2 --exclude-class 3-5 --to 64 --dry-run >roofs.json 2>/dev/null
at_least 90 "$(moved 6 roofs.json)" "$(of_class 6 scan.las)"
at_most 8 "$(moved 2 roofs.json)" "$(of_class 2 scan.las)"
expect "points that have the class now" "$(of_class 64 out.las)" "$count"
for class in 2 5 6; do
  expect "points left in class $class" "$(of_class $class out.las)" "$(($(of_class $class scan.las) - $(moved $class out.json)))"
done
for phase in Reading Ordering Filling Linking Searching Writing; do
  grep -q "^$phase" progress || fail "no progress of the phase $phase"
done
pass
no_debris "classify"

# --- the bytes: one differing byte a point, and that its class ---
expect "the input" "$(cmp before.las scan.las && echo same)" same
start=$(od -An -tu4 -j96 -N4 scan.las | tr -d ' ')
cmp -l scan.las out.las >differing || true
expect "differing bytes" "$(wc -l <differing)" "$count"
expect "differing bytes that are no class" "$(awk -v s="$start" '($1 - 1 - s) % 36 != 16 || $3 != 100' differing | wc -l)" 0

# --- threads and orders ---
for threads in 1 2 4; do
  "$urdimbre" --quiet --threads "$threads" $high --to 64 -o "out$threads.las"
  expect "$threads threads" "$(cmp out.las "out$threads.las" && echo same)" same
done
"$urdimbre" --quiet $high --to 64 -o file.las --order file
expect "the order of the file" "$(cmp out.las file.las && echo same)" same
rm -f out[124].las file.las

# --- options ---
"$urdimbre" --json $high --to 64 --dry-run -o dry.las >dry.json 2>/dev/null
[ ! -e dry.las ] || fail "a dry run wrote"
expect "a dry run tells the same" "$(number reclassified dry.json)" "$count"
"$urdimbre" --json $high --to 64 --single-pass --dry-run >single.json 2>/dev/null
[ "$(number found single.json)" -lt "$(number found out.json)" ] || fail "one pass finds no less"
"$urdimbre" --json $high --to 64 --exclude-class 6 --dry-run >kept.json 2>/dev/null
expect "an excluded class" "$(moved 6 kept.json)" 0
"$urdimbre" --json $high --to 64 --class 2,6 --dry-run >two.json 2>/dev/null
expect "a class that is not named" "$(moved 5 two.json)" 0
expect "classes that take part" "$(number points_accepted two.json)" "$(($(of_class 2 scan.las) + $(of_class 6 scan.las)))"
"$urdimbre" --json $high --to 64 --bounds 449950,4479950,450050,4480050 -o box.las >box.json 2>/dev/null
[ "$(number points_accepted box.json)" -lt 200000 ] || fail "the bounds leave nothing out"
cmp -l scan.las box.las >differing || true
expect "differing bytes within bounds" "$(wc -l <differing)" "$(number reclassified box.json)"
"$urdimbre" --quiet $high --to 64 -o scan.las
expect "a file classified onto itself" "$(cmp scan.las out.las && echo same)" same
cp before.las scan.las

# --- profiles ---
"$urdimbre" --json $high --to 64 --single-pass --profile wood -o p.las >given.json 2>/dev/null
"$urdimbre" --json classify high scan.las --profile wood -o q.las >kept.json 2>/dev/null
expect "parameters of the profile" "$(sed -n '/parameters/,/}/p' kept.json)" "$(sed -n '/parameters/,/}/p' given.json)"
expect "what they give" "$(cmp p.las q.las && echo same)" same
"$urdimbre" --quiet classify high scan.las --profile wood --height 3 -o q.las
"$urdimbre" --json classify high scan.las --profile wood --dry-run >kept.json 2>/dev/null
expect "a value given goes before the profile's, and is kept" "$(number height kept.json)" 3.0
"$urdimbre" --json classify high scan.las --profile town --dry-run >town.json 2>/dev/null
expect "another profile" "$(number height town.json)" 5.0
expect "profiles kept" "$(grep -c '^wood\.' "$settings/urdimbre.ini")" 4
rm "$settings/urdimbre.ini"
mkdir "$settings/urdimbre.ini"
refuses 1 "could not be kept" "$urdimbre" $high --profile wood -o q.las
rmdir "$settings/urdimbre.ini"

# --- what makes no sense, and what can't be done ---
refuses 2 "distance" "$urdimbre" classify high scan.las --distance -1 -o o.las
refuses 2 "height" "$urdimbre" classify high scan.las --height 1e9 -o o.las
refuses 2 "to" "$urdimbre" classify high scan.las --to 256 -o o.las
refuses 2 "extension\|use .las" "$urdimbre" $high -o o.ply
refuses 2 "dry-run" "$urdimbre" $high
refuses 2 "profile" "$urdimbre" $high -o o.las --profile a=b
refuses 2 "subcommand" "$urdimbre" classify
refuses 2 "subcommand" "$urdimbre" classify nosuch scan.las
printf '0 0 1\n9 0 2\n0 9 1\n' >small.txt
refuses 1 "small.txt: is text" "$urdimbre" classify high small.txt -o o.las
refuses 1 "fewer than 3" "$urdimbre" $high --class 200 -o o.las
refuses 1 "nowhere" "$urdimbre" --temp-dir nowhere $high -o o.las
refuses 1 "o.las" "$urdimbre" $high -o nowhere/o.las
refuses 1 "temporary folder" bash -c "ulimit -f 4000; exec \"$urdimbre\" $high -o o.las"
refuses 1 "o.las" bash -c "ulimit -f 6000; exec \"$urdimbre\" $high -o o.las"
[ ! -e o.las ] || fail "an output was left"
echo precious >kept.las
refuses 1 "kept.las" bash -c "ulimit -f 6000; exec \"$urdimbre\" $high -o kept.las"
expect "an existing output" "$(cat kept.las)" precious
expect "the input after all that" "$(cmp before.las scan.las && echo same)" same
done_with
