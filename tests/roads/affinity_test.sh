# A class that grows over its neighbours: roads over a generated land, whose classes are the truth; the bytes; threads and orders;
# limits, barriers and profiles; what goes wrong and Ctrl-C.
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
growth="classify affinity scan.las --grow 11 --height-difference 0.25 --side 3"
"$urdimbre" --json $growth -o out.las >out.json 2>progress

# --- what is reached: the ground around the roads, and next to nothing of what stands on it ---
count=$(number reclassified out.json)
at_least 90 "$(moved 2 out.json)" "$(of_class 2 scan.las)"
at_most 2 "$(moved 5 out.json)" "$(of_class 5 scan.las)"
at_most 2 "$(moved 6 out.json)" "$(of_class 6 scan.las)"
expect "points found" "$(number found out.json)" "$count"
[ "$(number rounds out.json)" -ge 2 ] || fail "there was one round only"
expect "points that have the class now" "$(of_class 11 out.las)" "$(($(of_class 11 scan.las) + count))"
for phase in Reading Ordering Filling Linking Searching Writing; do
  grep -q "^$phase" progress || fail "no progress of the phase $phase"
done
pass
no_debris "affinity"
"$urdimbre" --json classify affinity out.las --grow 11 --height-difference 0.25 --side 3 --dry-run >again.json 2>/dev/null
expect "what a second run finds" "$(number found again.json)" 0
grep -q "^rounds  *[0-9]" < <("$urdimbre" $growth --dry-run 2>/dev/null) || fail "the summary tells no rounds"
pass

# --- the bytes: one differing byte a point, and that its class ---
expect "the input" "$(cmp before.las scan.las && echo same)" same
start=$(od -An -tu4 -j96 -N4 scan.las | tr -d ' ')
cmp -l scan.las out.las >differing || true
expect "differing bytes" "$(wc -l <differing)" "$count"
expect "differing bytes that are no class" "$(awk -v s="$start" '($1 - 1 - s) % 36 != 16 || $3 != 13' differing | wc -l)" 0

# --- threads and orders: to the end neither counts ---
for threads in 1 2 4; do
  "$urdimbre" --quiet --threads "$threads" $growth -o other.las
  expect "$threads threads" "$(cmp out.las other.las && echo same)" same
  "$urdimbre" --quiet --threads "$threads" $growth --once -o "once$threads.las"
  expect "$threads threads, once" "$(cmp once1.las "once$threads.las" && echo same)" same
done
"$urdimbre" --quiet $growth --order file -o other.las
expect "the order of the file" "$(cmp out.las other.las && echo same)" same

# --- one run at a time: it ends short, and repeated it ends where the whole does ---
"$urdimbre" --json $growth --once --dry-run >once.json 2>/dev/null
expect "rounds of one run" "$(number rounds once.json)" 1
[ "$(number found once.json)" -lt "$count" ] || fail "one run reaches everything"
cp scan.las step.las
for round in $(seq 1 60); do
  "$urdimbre" --json classify affinity step.las --grow 11 --height-difference 0.25 --side 3 --once -o step.las >step.json 2>/dev/null
  [ "$(number found step.json)" -gt 0 ] || break
done
expect "after $round runs" "$(cmp out.las step.las && echo same)" same
rm -f step.las once[124].las other.las

# --- options ---
"$urdimbre" --json $growth --dry-run -o dry.las >dry.json 2>/dev/null
[ ! -e dry.las ] || fail "a dry run wrote"
expect "a dry run tells the same" "$(number reclassified dry.json)" "$count"
"$urdimbre" --json $growth --barrier 2 --dry-run >barrier.json 2>/dev/null
expect "points of the barrier that changed" "$(moved 2 barrier.json)" 0
"$urdimbre" --json $growth --exclude-class 2 --dry-run >kept.json 2>/dev/null
expect "points of a class left out that changed" "$(moved 2 kept.json)" 0
"$urdimbre" --json $growth --intensity-difference 0 --dry-run >intensity.json 2>/dev/null
[ "$(number found intensity.json)" -lt "$count" ] || fail "a limit of intensities limits nothing"
"$urdimbre" --json $growth --slope 0.05 --dry-run >slope.json 2>/dev/null
[ "$(number found slope.json)" -lt "$count" ] || fail "a limit of slopes limits nothing"
"$urdimbre" --json $growth --bounds 449950,4479950,450050,4480050 -o box.las >box.json 2>/dev/null
cmp -l scan.las box.las >differing || true
expect "differing bytes within bounds" "$(wc -l <differing)" "$(number reclassified box.json)"
grep -q "nothing to grow from" < <("$urdimbre" --json classify affinity scan.las --grow 77 --side 3 --dry-run 2>/dev/null) ||
  fail "nobody says that there is nothing to grow from"
pass

# --- profiles ---
"$urdimbre" --json $growth --once --profile wood -o p.las >given.json 2>/dev/null
"$urdimbre" --json classify affinity scan.las --profile wood -o q.las >kept.json 2>/dev/null
expect "parameters of the profile" "$(sed -n '/parameters/,/}/p' kept.json)" "$(sed -n '/parameters/,/}/p' given.json)"
expect "what they give" "$(cmp p.las q.las && echo same)" same

# --- what makes no sense, and what can't be done ---
refuses 2 "nothing would stop the growth" "$urdimbre" classify affinity scan.las -o o.las
refuses 2 "grow" "$urdimbre" $growth --grow 256 -o o.las
refuses 2 "barrier" "$urdimbre" $growth --barrier x -o o.las
refuses 2 "height-difference" "$urdimbre" classify affinity scan.las --height-difference -1 -o o.las
refuses 2 "intensity-difference" "$urdimbre" classify affinity scan.las --intensity-difference 65536 -o o.las
refuses 2 "side" "$urdimbre" classify affinity scan.las --side 1e9 -o o.las
refuses 2 "slope" "$urdimbre" classify affinity scan.las --slope steep -o o.las
refuses 1 "fewer than 3" "$urdimbre" $growth --class 200 -o o.las
refuses 1 "nowhere" "$urdimbre" --temp-dir nowhere $growth -o o.las
refuses 1 "temporary folder" bash -c "ulimit -f 100; exec \"$urdimbre\" $growth -o o.las"
refuses 1 "o.las" bash -c "ulimit -f 6000; exec \"$urdimbre\" $growth -o o.las"
[ ! -e o.las ] || fail "an output was left"

# --- Ctrl-C in each phase ---
for phase in Reading Filling Linking Searching Writing; do
  cancels "$phase" 1 o.las "$urdimbre" $growth -o o.las
done
expect "the input after all that" "$(cmp before.las scan.las && echo same)" same
done_with
