# Noise in a generated scan, whose classes are the truth: what each search finds with vegetation left out, and what it takes for
# noise that is none; bytes, threads, orders; refusals and Ctrl-C.
. "$(dirname "$0")/lib.sh"

# moved FROM FILE: how many points of a class were changed, by a JSON summary; of all classes with FROM "any"
moved() { awk -v from="$1" '/"from":/ { f = $2 + 0 } /"points":/ && (f == from || from == "any") { n += $2 + 0 } /"seconds"/ { exit } END { print n + 0 }' <(sed -n '/"changes"/,$p' "$2"); }
# of_class CLASS FILE.las
of_class() {
  "$urdimbre" --json info "$2" 2>/dev/null |
    awk -v key="\"$1\":" '/"classes"/ { inside = 1 } inside && $1 == key { n = $2 + 0 } inside && /}/ { exit } END { print n + 0 }'
}
at_least() { [ $((100 * $2)) -ge $(($1 * $3)) ] || fail "$2 of $3 are less than $1 per cent"; pass; }
# one_in N PART WHOLE: no more than that
one_in() { [ $(($1 * $2)) -le "$3" ] || fail "$2 of $3 are more than 1 in $1"; pass; }

# --- a million points of mixed land, twice: the figures that docs/classifying.md promises ---
for seed in 7 11; do
  "$urdimbre" --quiet generate scan.las --points 1000000 --seed $seed
  high=$(of_class 18 scan.las) low=$(of_class 7 scan.las)
  vegetation=$(($(of_class 3 scan.las) + $(of_class 4 scan.las) + $(of_class 5 scan.las)))
  others=$((1000000 - high - low - vegetation))
  [ "$high" -ge 80 ] && [ "$low" -ge 80 ] || fail "there is hardly any noise: $high high, $low low"
  search() { "$urdimbre" --json classify "$@" scan.las --exclude-class 3-5 --to 64 --dry-run >found.json 2>/dev/null; }

  search aerial
  at_least 99 "$(moved 18 found.json)" "$high"
  wrong=$(($(moved any found.json) - $(moved 18 found.json)))
  one_in 10000 "$wrong" "$others"
  search aerial --radius 2 --factor -3
  at_least 90 "$(moved 7 found.json)" "$low"
  wrong=$(($(moved any found.json) - $(moved 7 found.json)))
  one_in 10000 "$wrong" "$others"
  search isolated
  at_least 99 "$(moved 18 found.json)" "$high"
  at_least 40 "$(moved 7 found.json)" "$low"
  one_in 10000 $(($(moved any found.json) - $(moved 18 found.json) - $(moved 7 found.json))) "$others"
  search peaks
  at_least 99 "$(moved 18 found.json)" "$high"
  at_least 99 "$(moved 7 found.json)" "$low"
  one_in 500 $(($(moved any found.json) - $(moved 18 found.json) - $(moved 7 found.json))) "$others"
done

# --- the bytes; threads and orders ---
"$urdimbre" --quiet generate scan.las --points 200000 --seed 7 --land town
for search in "isolated" "aerial" "aerial --radius 2 --factor -3" "peaks"; do
  "$urdimbre" --json classify $search scan.las --exclude-class 3-5 --to 64 -o out.las >out.json 2>progress
  count=$(number reclassified out.json)
  [ "$count" -gt 0 ] || fail "$search finds nothing"
  start=$(od -An -tu4 -j96 -N4 scan.las | tr -d ' ')
  cmp -l scan.las out.las >differing || true
  expect "$search: differing bytes" "$(wc -l <differing)" "$count"
  expect "$search: differing bytes that are no class" "$(awk -v s="$start" '($1 - 1 - s) % 36 != 16 || $3 != 100' differing | wc -l)" 0
  for threads in 1 2 4; do
    "$urdimbre" --quiet --threads "$threads" classify $search scan.las --exclude-class 3-5 --to 64 -o other.las
    expect "$search: $threads threads" "$(cmp out.las other.las && echo same)" same
  done
done
for phase in Reading Ordering Filling Linking Writing; do
  grep -q "^$phase" progress || fail "no progress of the phase $phase"
done
"$urdimbre" --quiet classify aerial scan.las --dry-run 2>progress >/dev/null
pass
no_debris "noise"

# --- refusals ---
refuses 2 "give a length from 0 to 463.4, in units of the input" "$urdimbre" classify isolated scan.las --distance 500 -o o.las
refuses 2 "neighbours" "$urdimbre" classify isolated scan.las --neighbours 0 -o o.las
refuses 2 "factor" "$urdimbre" classify aerial scan.las --factor much -o o.las
refuses 2 "height" "$urdimbre" classify peaks scan.las --height 1e9 -o o.las
for search in isolated aerial peaks; do
  refuses 1 "fewer than 3" "$urdimbre" classify $search scan.las --class 200 -o o.las
  refuses 1 "nowhere" "$urdimbre" --temp-dir nowhere classify $search scan.las -o o.las
done

# --- Ctrl-C in each phase ---
"$urdimbre" --quiet generate scan.las --points 400000 --seed 7
for phase in Filling Linking Searching "Looking around each point" "Writing the classes back"; do
  cancels "$phase" 1 o.las "$urdimbre" classify aerial scan.las --radius 8 -o o.las
done
for phase in Linking Searching; do
  cancels "$phase" 1 o.las "$urdimbre" classify isolated scan.las -o o.las
done
cancels Linking 1 o.las "$urdimbre" classify peaks scan.las -o o.las
done_with
