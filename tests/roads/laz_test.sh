# Compressed clouds through every verb: what comes out must be what plain ones give.
. "$(dirname "$0")/lib.sh"

"$urdimbre" --quiet generate scan.las --points 120000 --seed 5
"$urdimbre" --quiet generate scan.laz --points 120000 --seed 5
[ "$(stat -c %s scan.laz)" -lt $(($(stat -c %s scan.las) / 3)) ] || fail "scan.laz is not compressed"
pass

# every verb that reads
for threads in 1 2 3; do
  "$urdimbre" --quiet --threads $threads tin scan.laz -o "packed$threads.ply" --class 2,9,11
done
"$urdimbre" --quiet tin scan.las -o plain.ply --class 2,9,11
for threads in 1 2 3; do cmp plain.ply "packed$threads.ply" || fail "tin of scan.laz, $threads threads"; done
pass
verbs=(contour)
if built_with cairo; then verbs+=(render); fi
for verb in "${verbs[@]}"; do
  options=(); output=o.png
  [ $verb = contour ] && options=(--interval 5) && output=o.geojson
  "$urdimbre" --quiet $verb scan.las -o "$output" ${options[@]+"${options[@]}"}
  mv "$output" "plain-$output"
  "$urdimbre" --quiet $verb scan.laz -o "$output" ${options[@]+"${options[@]}"}
  cmp "plain-$output" "$output" || fail "$verb of scan.laz"
  pass
done
"$urdimbre" info scan.las --json 2>/dev/null | grep -v '"file"\|"format"\|"records"\|"system_problem"' >plain.json
"$urdimbre" info scan.laz --json 2>/dev/null | grep -v '"file"\|"format"\|"records"\|"system_problem"' >packed.json
cmp plain.json packed.json || fail "info of scan.laz"
pass
grep -q '^  compressed  in chunks of layers, 50,000 points each' < <("$urdimbre" info scan.laz 2>/dev/null) || fail "info tells no compression"
pass

# classes: the same in either form, and nothing else changes
high=(--quiet classify high --distance 5 --height 2 --to 6)
"$urdimbre" "${high[@]}" scan.las -o high.las
"$urdimbre" "${high[@]}" scan.laz -o high.laz
"$urdimbre" "${high[@]}" scan.laz -o unpacked.las
"$urdimbre" "${high[@]}" scan.las -o packed.laz
cmp high.las unpacked.las || fail "classify from LAZ to LAS"
cmp high.laz packed.laz || fail "classify from LAS to LAZ"
colour=(--quiet classify colour --distance 5 --when 128,128,128:255:2:6)
"$urdimbre" "${colour[@]}" scan.las -o colour.las
"$urdimbre" "${colour[@]}" scan.laz -o unpacked.las
cmp colour.las unpacked.las || fail "classify by colour from LAZ to LAS"
! cmp -s scan.las colour.las || fail "no colour is found"
pass
cp scan.laz again.laz
"$urdimbre" "${high[@]}" again.laz -o again.laz
cmp high.laz again.laz || fail "classify onto itself"
pass

# folders and patterns
mkdir tiles
cp scan.laz tiles/a.laz
cp scan.las tiles/b.las
"$urdimbre" info tiles --json >tiles.json 2>/dev/null
grep -q '"tiles[/\]*a.laz"' tiles.json && grep -q '"tiles[/\]*b.las"' tiles.json || fail "info of a folder"
"$urdimbre" --quiet tin "tiles/*.laz" -o one.ply --class 2,9,11
cmp plain.ply one.ply || fail "tin of a pattern"
refuses 1 "no file matches" "$urdimbre" tin "tiles/*.xyz" -o o.ply
mkdir empty
refuses 1 "empty: is a folder without" "$urdimbre" info empty

# files that are cut short
head -c $(($(stat -c %s scan.laz) * 2 / 3)) scan.laz >cut.laz
refuses 1 "cut.laz: the header promises 120,000 points and 50,000 of them stand in whole compressed chunks.*--partial" \
  "$urdimbre" tin cut.laz -o o.ply
"$urdimbre" info --partial cut.laz --json >cut.json 2>/dev/null
expect "points before the cut" "$(number points cut.json | head -1)" 50000
"$urdimbre" --quiet tin --partial cut.laz -o cut.ply

# levels of detail
refuses 1 "scan.laz: has no levels of detail" "$urdimbre" tin scan.laz --resolution 5 -o o.ply
if [ -d "$data/laz" ]; then
  copc=$data/laz/with-color.copc.laz
  grep -q 'octree      COPC, 65 nodes in' < <("$urdimbre" info "$copc" 2>/dev/null) || fail "info of a COPC file"
  few=$("$urdimbre" --json tin "$copc" --resolution 1000000 -o few.ply 2>/dev/null | grep -o '"points_read": [0-9]*')
  expect "the first level alone" "$few" '"points_read": 24'
  box=(--bounds "636000,849500,637000,851000")
  some=$("$urdimbre" --json tin "$copc" "${box[@]}" -o some.ply 2>/dev/null | grep -o '"points_read": [0-9]*')
  expect "the nodes alone that the box touches" "$some" '"points_read": 269'
  "$urdimbre" --quiet tin "$data/laz/with-color.las" "${box[@]}" -o all.ply
  cmp all.ply some.ply || fail "tin of a part of with-color.copc.laz"
  "$urdimbre" --quiet tin "$data/laz/bcts_1.laz" -o a.ply
  "$urdimbre" --quiet tin "$data/bcts_1.las" -o b.ply
  cmp a.ply b.ply || fail "tin of bcts_1.laz"
  pass
else
  echo "SKIPPED: the real files: $data is not there"
fi
done_with
