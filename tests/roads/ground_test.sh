# From a raw flight to its ground: generated scans, whose classes are the truth; the bytes; threads and orders; the way on to a
# terrain model; what goes wrong and Ctrl-C.
. "$(dirname "$0")/lib.sh"

# class_bytes FILE.las: the class of each point of a generated scan, a line each (point format 7: byte 16 of 36)
class_bytes() {
  local start
  start=$(od -An -tu4 -j96 -N4 "$1" | tr -d ' ')
  tail -c +$((start + 1)) "$1" | od -An -v -tu1 -w36 | awk '{ print $17 }'
}

# --- at most one in a hundred wrong on every kind of land: herbs, and ends of bridges ---
for land in forest town river steep; do
  "$urdimbre" --quiet generate "$land.las" --points 300000 --seed 7 --land "$land"
  "$urdimbre" --quiet classify ground "$land.las" -o out.las
  paste <(class_bytes "$land.las") <(class_bytes out.las) |
    awk '{ truth = $1 == 2 || $1 == 9 || $1 == 11; wrong += truth != ($2 == 2) } END { print wrong + 0, NR }' >wrong
  read -r wrong all <wrong
  [ "$all" -eq 300000 ] || fail "$land: $all classes were read"
  [ $((100 * wrong)) -le "$all" ] || fail "$land: $wrong of $all are wrong"
  pass
done
rm -f forest.las river.las steep.las

# --- the bytes: nothing but classes; threads and orders ---
ground="classify ground town.las"
cp town.las before.las
"$urdimbre" --json $ground -o out.las >out.json 2>progress
expect "the input" "$(cmp before.las town.las && echo same)" same
start=$(od -An -tu4 -j96 -N4 town.las | tr -d ' ')
cmp -l town.las out.las >differing || true
expect "differing bytes" "$(wc -l <differing)" "$(number reclassified out.json)"
expect "differing bytes that are no class" "$(awk -v s="$start" '($1 - 1 - s) % 36 != 16' differing | wc -l)" 0
for phase in Reading Filling Searching Writing; do
  grep -q "^$phase" progress || fail "no progress of the phase $phase"
done
pass
no_debris "ground"
for threads in 1 2 4; do
  "$urdimbre" --quiet --threads "$threads" $ground -o other.las
  expect "$threads threads" "$(cmp out.las other.las && echo same)" same
done
"$urdimbre" --quiet $ground --order file -o other.las
expect "the order of the file" "$(cmp out.las other.las && echo same)" same
! grep -q '^Ordering' progress || fail "a flight was ordered, which is in order"
"$urdimbre" --json $ground --order hilbert -o other.las >/dev/null 2>progress
grep -q '^Ordering' progress || fail "an order that was asked for was not made"
expect "the order along the curve" "$(cmp out.las other.las && echo same)" same

# --- options ---
"$urdimbre" --json $ground --dry-run -o dry.las >dry.json 2>/dev/null
[ ! -e dry.las ] || fail "a dry run wrote"
expect "a dry run tells the same" "$(number reclassified dry.json)" "$(number reclassified out.json)"
"$urdimbre" --json $ground --to 64 --low-noise 65 -o classes.las >classes.json 2>/dev/null
expect "points of the class" "$(class_bytes classes.las | grep -c '^64$')" "$(number found classes.json)"
expect "points of the noise" "$(class_bytes classes.las | grep -c '^65$')" "$(number low_noise_found classes.json)"
"$urdimbre" --json $ground --exclude-class 5 -o kept.las >/dev/null 2>&1
expect "a class left out" "$(paste <(class_bytes town.las) <(class_bytes kept.las) | awk '$1 == 5 && $2 != 5' | wc -l)" 0

# --- on to a model ---
"$urdimbre" --quiet tin out.las -o terrain.ply --class 2
"$urdimbre" --quiet check terrain.ply
pass

# --- what makes no sense, and what can't be done ---
refuses 2 "window" "$urdimbre" $ground --window 0 -o o.las
refuses 2 "slope" "$urdimbre" $ground --slope -1 -o o.las
refuses 2 "band" "$urdimbre" $ground --band wide -o o.las
refuses 2 "both 3" "$urdimbre" $ground --to 3 --low-noise 3 -o o.las
refuses 2 "--border" "$urdimbre" $ground --border=frame -o o.las
if built_with gdal; then refuses 1 "in degrees" "$urdimbre" $ground --a-srs EPSG:4258 -o o.las; fi
refuses 1 "fewer than 3" "$urdimbre" $ground --class 200 -o o.las
refuses 1 "nowhere" "$urdimbre" --temp-dir nowhere $ground -o o.las
[ ! -e o.las ] || fail "an output was left"
"$urdimbre" --quiet generate large.las --points 800000 --seed 11
for phase in Reading Searching Writing; do
  cancels "$phase" 1 o.las "$urdimbre" classify ground large.las -o o.las
done
done_with
