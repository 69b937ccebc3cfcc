# What lies on an edge: limits that a number meets exactly, headers that declare more than there is, digits that nobody
# measured, vertices that were never given a height.
. "$(dirname "$0")/lib.sh"

# A limit takes in what lies on it, whatever the number is in binary: 0.29 times 100 is less than 29 there.
for limit in 0.07 0.29 0.57 1.13 4.35 8.03 10.07; do
  printf '0 0 0.00\n10 0 %s\n0 10 %s\n0 30 0\n30 0 0\n' "$limit" "$limit" >heights.txt
  "$urdimbre" --json --quiet tin heights.txt -o z.ply --z "0:$limit" >most.json
  expect "points up to $limit" "$(number points_accepted most.json)" 5
  printf '0 0 %s\n10 0 %s\n0 10 %s\n0 30 0\n30 0 0\n' "$limit" "$limit" "$limit" >level.txt
  "$urdimbre" --json --quiet tin level.txt -o z.ply --z "$limit:$limit" >both.json
  expect "points at $limit" "$(number points_accepted both.json)" 3
  "$urdimbre" --json --quiet contour level.txt -o z.geojson --interval 0.01 --z "0:$limit" >contour.json
  expect "points of contours up to $limit" "$(number points_accepted contour.json)" 5
  printf '0 0 0.00\n10 0 %s\n0 10 %s\n' "$limit" "$limit" >steep.txt
  "$urdimbre" --json --quiet tin steep.txt -o z.ply --height-difference "0:$limit" >most.json
  expect "triangles with a difference of $limit" "$(number triangles most.json)" 1
  printf '0 0 1\n%s 0 2\n0.02 0.01 3\n' "$limit" >long.txt
  "$urdimbre" --json --quiet tin long.txt -o z.ply --max-side "$limit" >long.json
  expect "triangles with a side of $limit" "$(number triangles long.json)" 1
done

# An added point as high above the surface as the tolerance goes in, one a hundredth higher does not.
printf '0 0 0\n100 0 0\n0 100 0\n100 100 0\n' >flat.txt
for height in 0.29 0.57 1.13; do
  printf '50 40 %s\n' "$height" >added.txt
  "$urdimbre" --json --quiet tin flat.txt --update added.txt --tolerance "$height" --precision 2 -o z.ply >in.json
  expect "a point at the tolerance of $height" "$(number vertices in.json)" 5
  awk '{ printf "%s %s %.2f\n", $1, $2, $3 + 0.01 }' added.txt >above.txt
  "$urdimbre" --json --quiet tin flat.txt --update above.txt --tolerance "$height" --precision 2 -o z.ply >out.json
  expect "a point above the tolerance of $height" "$(number vertices out.json)" 4
done

# An extent that a header declares beyond all room is none: the points themselves have the word.
"$urdimbre" --quiet generate scan.las --points 3000 --seed 2
huge='\000\000\000\242\224\032\155'  # 1e12 but for its sign
cp scan.las lying.las
printf '%b' "$huge\\102$huge\\302$huge\\102$huge\\302$huge\\102$huge\\302" | dd of=lying.las bs=1 seek=179 conv=notrunc 2>dd.txt
"$urdimbre" --quiet tin scan.las -o honest.ply
"$urdimbre" --quiet tin lying.las -o lying.ply
cmp honest.ply lying.ply || fail "a declared extent changes the surface"
"$urdimbre" --quiet contour lying.las --interval 5 -o lying.geojson
"$urdimbre" --quiet tetra lying.las -o lying.vtu
if built_with cairo; then "$urdimbre" --quiet render lying.las --size 50 -o lying.png; fi
"$urdimbre" --quiet classify ground lying.las -o ground.las
# What does not fit by what its points say is refused by its own name, beside a sound file too.
printf '0 0 1\n9e11 5 2\n3 4 3\n' >far.txt
refuses 1 "^urdimbre: far.txt: 32-bit coordinates have no room .*--precision -3 would fit" "$urdimbre" tin flat.txt far.txt -o x.ply
printf '0.001 0 1\n1 5 2\n3 4 3\n' >west.txt
printf '99000000 0 1\n99000001 5 2\n99000003 4 3\n' >east.txt
refuses 1 "^urdimbre: 2 files together: .*--precision 1 would fit" "$urdimbre" tin west.txt east.txt -o x.ply

# Digits that 32 bits have no room for are rounded, and it is said; a precision that is given stands.
printf '450000.123456789 4480000.1 650.25\n450010.1 4480000.2 651\n450000.1 4480010.3 652.123456789\n' >digits.txt
"$urdimbre" --json --quiet tin digits.txt -o digits.ply >digits.json 2>errors
expect "vertices of noisy digits" "$(number vertices digits.json)" 3
expect "words about digits" "$(grep -c 'warning: coordinates in text have 7 decimals, of which 32 bits hold 6 here' errors)" 1
refuses 1 "at precision 7 for heights from 650.25 to 652.123: --precision 6 would fit" "$urdimbre" tin digits.txt --precision 7 -o x.ply
"$urdimbre" --json --quiet tin flat.txt -o x.ply >flat.json 2>errors
expect "words about whole numbers" "$(wc -c <errors)" 0

# Vertices at 0 within lines that have heights are told of, as lines wholly at 0 are; coordinates beyond the Earth are refused.
if built_with gdal; then
  line() { printf '{"type":"FeatureCollection","features":[{"type":"Feature","properties":{},"geometry":{"type":"LineString","coordinates":%s}}]}' "$1"; }
  line '[[10,10,805],[50,50,0],[90,20,810],[80,70,0]]' >partly.geojson
  "$urdimbre" --quiet tin partly.geojson -o x.ply 2>errors
  expect "words about vertices at 0" \
    "$(grep -c 'warning: partly.geojson: 2 of its 4 vertices have the height 0, in lines that have others too, and all else lies between 805 and 810' errors)" 1
  line '[[10,10,5],[50,50,0],[90,20,-5],[80,70,1]]' >shore.geojson
  "$urdimbre" --quiet tin shore.geojson -o x.ply 2>errors
  expect "words about a shore" "$(wc -c <errors)" 0
  line '[[10,10,5],[1e300,50,0],[90,20,5]]' >beyond.geojson
  refuses 1 "feature 0 of layer beyond has the coordinates 1e+300, 50, 0, which lead to no place on Earth" "$urdimbre" tin beyond.geojson -o x.ply
fi

# What is missing of a file that is cut short is said.
head -c 60000 scan.las >cut.las
there=$(((60000 - $(od -An -t u4 -j 96 -N 4 cut.las)) / 36))
"$urdimbre" --json --quiet tin cut.las --partial -o x.ply >cut.json 2>errors
expect "points of a cut file" "$(number points_read cut.json)" "$there"
expect "words about a cut" \
  "$(grep -c "warning: cut.las: is cut short, and $(printf '%d,%03d' $(((3000 - there) / 1000)) $(((3000 - there) % 1000))) of the points that it promises are missing" errors)" 1
expect "missing points of info" "$("$urdimbre" --json --quiet info cut.las --partial | grep -c "\"missing_points\": $((3000 - there))")" 1
"$urdimbre" --quiet tin scan.las --partial -o x.ply 2>errors
expect "words about a whole file" "$(grep -vc 'its reference system is left out' errors)" 0

# Records behind the points that stand where points do keep nobody from the points.
cp scan.las stale.las
printf '%b' '\0220\001\000\000\000\000\000\000\001' | dd of=stale.las bs=1 seek=235 conv=notrunc 2>dd.txt
refuses 1 "extended records begin at byte 400, outside .*; --partial takes its points" "$urdimbre" tin stale.las -o x.ply
"$urdimbre" --quiet tin stale.las --partial -o stale.ply
cmp honest.ply stale.ply || fail "the points of a file with stale records"
pass

# An update that lies outside the bounds is counted whole.
printf '900 900 1\n901 900 1\n' >outside.txt
"$urdimbre" --quiet tin flat.txt --update outside.txt --bounds 0,0,100,100 -o x.ply 2>errors
grep -q "outside.txt: none of its 2 points passes the filters" errors || fail "a useless update: $(cat errors)"

# Options that say nothing of use.
refuses 2 '"nan" is no number' "$urdimbre" tin flat.txt -o x.ply --bounds 0,0,nan,50
refuses 2 '"1.5" is no number among the whole ones' "$urdimbre" contour scan.las --interval 1 --index 1.5 -o x.geojson
if built_with gdal; then
  refuses 2 "heights alone" "$urdimbre" tin flat.txt -o x.xml --a-srs EPSG:5782
  refuses 2 "names no reference system" "$urdimbre" tin flat.txt -o x.xml --a-srs EPSG:25830,EPSG:5782
fi
refuses 2 "a scan is a LAS file: use .las or .laz" "$urdimbre" generate scan.txt --points 10
refuses 2 "seed" "$urdimbre" generate other.las --points 10 --seed -1
refuses 1 "fewer than 3 points take part" "$urdimbre" tin added.txt -o x.ply

# A reader that goes away is told like a disk that is full, whatever had been printed by then.
names=()
while [ ${#names[@]} -lt 300 ]; do names+=(scan.las); done
{
  found=0
  "$urdimbre" --json info "${names[@]}" 2>errors || found=$?
  echo "$found" >status
} | head -1 >/dev/null
expect "a summary that nobody reads" "$(cat status)" 1
grep -q '^urdimbre: the summary could not be written to the standard output' errors || fail "a closed pipe: $(cat errors)"
pass
done_with
