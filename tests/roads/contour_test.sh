# Contours, outlines and survey lines through vector files of every format, as another program reads them.
. "$(dirname "$0")/lib.sh"
contour_facts=$(dirname "$facts")/contour_facts
command -v ogrinfo >/dev/null || fail "ogrinfo is not there: install gdal-bin"

# ask FILE SQL: the one value that a query gives
ask() { ogrinfo -q -dialect sqlite -sql "$2" "$1" | sed -nE 's/^  v \([A-Za-z0-9]+\) = (.*)$/\1/p'; }
# summary FILE: what ogrinfo says of the one layer of a file
summary() { ogrinfo -ro -al -so "$1"; }
# told KEY FILE: a fact of contours beside an outline and a mesh
told() { sed -n "s/^$1 //p" "$2"; }
feature() { printf '{"type":"Feature","properties":{"CODE":"%s"},"geometry":{"type":"%s","coordinates":%s}}' "$1" "$2" "$3"; }
# collection EPSG FEATURES
collection() {
  printf '{"type":"FeatureCollection","name":"survey","crs":{"type":"name","properties":{"name":"urn:ogc:def:crs:EPSG::%s"}},"features":[%s]}' "$1" "$2"
}

"$urdimbre" --quiet generate scan.las --points 40000 --seed 3

# Every format opens elsewhere, with its system, its fields and as many contours as the summary tells.
ground=(scan.las --class 2,9 --a-srs EPSG:25830)
"$urdimbre" --json contour "${ground[@]}" --interval 0.5 -o c.gpkg >c.json 2>progress
contours=$(number contours c.json)
[ "$contours" -gt 10 ] || fail "only $contours contours"
for format in gpkg geojson fgb shp dxf; do
  "$urdimbre" --quiet contour "${ground[@]}" --interval 0.5 -o "c.$format"
  summary "c.$format" >c.txt
  expect "$format features" "$(sed -n 's/^Feature Count: //p' c.txt)" "$contours"
  [ "$format" = dxf ] && continue
  grep -q '^Geometry: 3D Line String' c.txt || fail "$format: no 3-D lines"
  grep -q 'ETRS89 / UTM zone 30N' c.txt || fail "$format: no reference system"
  [ "$format" = shp ] || grep -q '^Layer name: contour$' c.txt || fail "$format: another layer"
  expect "$format fields" "$(sed -nE 's/^(ELEV|INDEX|CLOSED|LENGTH): (Real|Integer).*/\1 \2/p' c.txt | tr '\n' ' ')" \
    "ELEV Real INDEX Integer CLOSED Integer LENGTH Real "
done
for phase in Reading Ordering Filling Linking Writing; do
  grep -q "^$phase" progress || fail "no progress of the phase $phase"
done
expect "index contours of a DXF" "$(ogrinfo -q -al c.dxf | grep -c 'Layer (String) = contour_index$')" "$(number index c.json)"
expect "heights of a DXF" "$(ogrinfo -q -al c.dxf | grep -c 'LINESTRING Z')" "$contours"
expect "closed contours" "$(ask c.gpkg 'SELECT SUM(CLOSED) AS v FROM contour')" "$(number closed c.json)"
expect "levels" "$(ask c.gpkg 'SELECT COUNT(DISTINCT ELEV) AS v FROM contour')" "$(number levels c.json)"
expect "multiples of the interval" "$(ask c.gpkg 'SELECT COUNT(*) AS v FROM contour WHERE ELEV * 2 != ROUND(ELEV * 2)')" 0
expect "every fifth level is one of index" \
  "$(ask c.gpkg 'SELECT COUNT(*) AS v FROM contour WHERE "INDEX" != (CAST(ROUND(ELEV * 2) AS INTEGER) % 5 = 0)')" 0

# They end on the outline of the surface, or with a ridge, and the same come from any order of the points.
"$urdimbre" --quiet tin "${ground[@]}" -o t.ply --outline outline.gpkg
"$contour_facts" c.gpkg outline.gpkg t.ply 0 >facts.txt
expect "contours" "$(told contours facts.txt)" "$contours"
expect "vertices" "$(told vertices facts.txt)" "$(number vertices c.json)"
expect "vertices off their level" "$(told sloping facts.txt)" 0
[ "$(told open_ends facts.txt)" -gt 10 ] || fail "only $(told open_ends facts.txt) open ends"
expect "contours that end in the open" "$(told broken facts.txt)" 0
for threads in 1 4; do
  "$urdimbre" --quiet --threads "$threads" contour "${ground[@]}" --interval 0.5 -o "threads.gpkg"
  cmp c.gpkg threads.gpkg || fail "$threads threads give other bytes"
  pass
done

# A lake on a level has one shore, and a level side of a triangle is a contour on demand alone.
lake() {
  awk 'BEGIN { srand(5)
    for (y = 0; y <= 60; ++y) for (x = 0; x <= 60; ++x) {
      d = sqrt((x - 30) ^ 2 + (y - 30) ^ 2)
      printf "%.2f %.2f %.3f\n", 450000 + x + rand() / 3, 4480000 + y + rand() / 3, d < 15 ? 250 : 250 + (d - 15) / 5 + 0.01
    } }'
}
lake >lake.txt
"$urdimbre" --json --quiet contour lake.txt --interval 0.5 -o lake.gpkg >lake.json
expect "shores of a lake" "$(ask lake.gpkg 'SELECT COUNT(*) AS v FROM contour WHERE ELEV = 250')" 1
expect "and it is closed" "$(ask lake.gpkg 'SELECT SUM(CLOSED) AS v FROM contour WHERE ELEV = 250')" 1
expect "length of the shore" "$(ask lake.gpkg 'SELECT LENGTH BETWEEN 85 AND 125 AS v FROM contour WHERE ELEV = 250')" 1
"$urdimbre" --json --quiet contour lake.txt --interval 0.5 --flat sides -o sides.gpkg >sides.json
expect "sides of triangles in a lake" "$(ask sides.gpkg 'SELECT SUM(LENGTH) > 2000 AS v FROM contour WHERE ELEV = 250')" 1
for y in $(seq 0 19); do for x in $(seq 0 19); do echo "$x.0 $y.0 1"; done; done >flat.txt
refuses 1 "no triangle is crossed by a level" "$urdimbre" contour flat.txt --interval 1 -o x.gpkg

# Heights in whole metres give no contour that ends in the open.
awk 'BEGIN { srand(3); for (i = 0; i < 20000; ++i) { x = 500 * rand(); y = 500 * rand()
  printf "%.2f %.2f %d\n", x, y, 100 + 12 * sin(x / 60) * cos(y / 80) + x / 60 } }' >metres.txt
"$urdimbre" --json --quiet contour metres.txt --interval 1 -o metres.gpkg >metres.json
"$urdimbre" --quiet tin metres.txt -o metres.ply --outline metres_outline.gpkg
"$contour_facts" metres.gpkg metres_outline.gpkg metres.ply 0 >facts.txt
[ "$(number contours metres.json)" -gt 50 ] || fail "only $(number contours metres.json) contours"
expect "contours of whole metres that end in the open" "$(told ends_off_outline facts.txt)" 0

# Levels from a base; short contours left out; long sides make gaps.
"$urdimbre" --json --quiet contour "${ground[@]}" --interval 1 --base 100.25 --index 4 -o base.gpkg >base.json
expect "levels from a base" "$(ask base.gpkg 'SELECT COUNT(*) AS v FROM contour WHERE ELEV - 0.25 != ROUND(ELEV - 0.25)')" 0
expect "index levels from a base" \
  "$(ask base.gpkg 'SELECT COUNT(*) AS v FROM contour WHERE "INDEX" != (CAST(ROUND(ELEV - 100.25) AS INTEGER) % 4 = 0)')" 0
"$urdimbre" --json --quiet contour "${ground[@]}" --interval 0.5 --min-length 20 -o long.gpkg >long.json
expect "short ones are counted" "$(($(number contours long.json) + $(number too_short long.json)))" "$contours"
expect "and none is written" "$(ask long.gpkg 'SELECT COUNT(*) AS v FROM contour WHERE LENGTH < 20')" 0
"$urdimbre" --json --quiet contour "${ground[@]}" --interval 0.5 --max-side 2 -o gaps.gpkg >gaps.json
"$urdimbre" --quiet tin "${ground[@]}" -o gaps.ply --max-side 2 --outline gaps_outline.gpkg
"$contour_facts" gaps.gpkg gaps_outline.gpkg gaps.ply 0 >facts.txt
[ "$(told open_ends facts.txt)" -gt 0 ] || fail "no contour ends at a gap"
expect "ends at gaps that are not on the outline" "$(told broken facts.txt)" 0
"$urdimbre" --json --quiet contour scan.las --class 2,9 --z 0:1000000 --interval 1 -o z.gpkg >z.json
expect "a window of heights" "$(ask z.gpkg 'SELECT COUNT(*) AS v FROM contour WHERE ELEV < 0')" 0

# The outline in every format: the polygons of the summary, and the plan area of the triangles.
polygons=$(ask gaps_outline.gpkg 'SELECT COUNT(*) AS v FROM outline')
[ "$polygons" -gt 1 ] || fail "only $polygons polygons"
for format in geojson fgb shp dxf; do
  "$urdimbre" --quiet tin "${ground[@]}" -o gaps.ply --max-side 2 --outline "o.$format"
  [ "$format" = dxf ] || expect "$format polygons" "$(summary "o.$format" | sed -n 's/^Feature Count: //p')" "$polygons"
done
expect "rings of a DXF" "$(ogrinfo -q -al o.dxf | grep -c 'Layer (String) = outline$')" "$polygons"
expect "holes of a DXF" "$(ogrinfo -q -al o.dxf | grep -c 'Layer (String) = outline_hole$')" \
  "$(ask gaps_outline.gpkg 'SELECT SUM(HOLES) AS v FROM outline')"

# Survey lines beside a cloud, and alone.
printf '0 0 0\n100 0 0\n0 100 0\n100 100 0\n' >corners.txt
collection 25830 "$(feature RIDGE LineString '[[20,50,10],[50,50,10],[80,50,10]]'),$(feature SPOT Point '[50,20,5.25]')" >survey.geojson
"$urdimbre" --json --quiet tin corners.txt survey.geojson -o s.xml >s.json
expect "vertices of lines and points" "$(number vertices s.json)" 8
expect "lines" "$(number lines s.json)" 2
grep -q 'name="ETRS89 / UTM zone 30N" epsgCode="25830"' s.xml || fail "the system of the lines is not that of the model"
"$urdimbre" --json --quiet tin corners.txt survey.geojson --code-field CODE --code RIDGE -o s.ply >s.json
expect "one code alone" "$(number vertices s.json)" 7
"$urdimbre" --json --quiet tin corners.txt survey.geojson --bounds 0,0,60,100 -o s.ply >s.json
expect "points of lines within the bounds" "$(number vertices s.json)" 5
printf '0 0 0 0 2\n100 0 0 0 2\n0 100 0 0 2\n100 100 0 0 2\n40 40 30 0 5\n' >classes.txt
"$urdimbre" --json --quiet tin classes.txt survey.geojson --class 2 -o s.ply >s.json
expect "lines take part whatever classes are wanted" "$(number vertices s.json)" 8
lines=$(for i in $(seq 0 24); do
  feature RIDGE LineString "[[$((449900 + i * 8)),4479900,650],[$((449902 + i * 8)),4480000,651],[$((449901 + i * 8)),4480100,650]]"
done | sed 's/}}{/}},{/g')
collection 25830 "$lines" >ridges.geojson
"$urdimbre" --json --quiet tin scan.las ridges.geojson -o s.ply >s.json
expect "no point is lost beside lines" "$(($(number vertices s.json) + $(number duplicates s.json)))" $((40000 + 75))
expect "the mesh with lines is Delaunay" "$(fact not_delaunay s.ply)" 0
"$urdimbre" --json --quiet contour survey.geojson --interval 1 -o s.gpkg >s.json
expect "contours of lines alone" "$(number levels s.json)" 4
"$urdimbre" --json --quiet contour survey.geojson --interval 1 --flat sides -o s.gpkg >s.json
expect "contours of lines alone, the level ridge as one of them" "$(number levels s.json)" 5
for format in GPKG:gpkg "ESRI Shapefile:shp" DXF:dxf; do
  file=lines.${format#*:}
  ogr2ogr -f "${format%:*}" "$file" survey.geojson -nlt LINESTRINGZ -where "CODE = 'RIDGE'" $([ "${file#*.}" = dxf ] && echo -skipfailures) \
    2>/dev/null
  "$urdimbre" --json --quiet tin corners.txt "$file" -o s.ply >s.json
  expect "$file" "$(number vertices s.json)" 7
done
collection 25830 "$(feature FLAT LineString '[[20,50],[80,50]]'),$(feature RIDGE LineString '[[20,50,10],[80,50,10]]')" >flat.geojson
refuses 1 "no heights" "$urdimbre" tin corners.txt flat.geojson -o x.ply
"$urdimbre" --json --quiet tin corners.txt flat.geojson --without-z skip -o s.ply >s.json
expect "skipped" "$(number skipped_without_z s.json)" 1
expect "what has heights stays" "$(number vertices s.json)" 6
collection 25829 "$(feature A Point '[1,2,3]')" >west.geojson
refuses 1 "EPSG:25829.*survey.geojson.*EPSG:25830" "$urdimbre" tin corners.txt survey.geojson west.geojson -o x.ply
"$urdimbre" --quiet tin corners.txt survey.geojson west.geojson --a-srs EPSG:25830 -o s.ply
refuses 1 "no field KIND" "$urdimbre" tin survey.geojson --code-field KIND -o x.ply
collection 25830 "" >none.geojson
refuses 1 "holds no lines" "$urdimbre" tin corners.txt none.geojson -o x.ply
printf 'SQLite format 3 and then nothing' >broken.gpkg
refuses 1 "broken.gpkg" "$urdimbre" tin corners.txt broken.gpkg -o x.ply
refuses 1 "missing.shp" "$urdimbre" tin corners.txt missing.shp -o x.ply
refuses 2 "nonsense" "$urdimbre" tin corners.txt --a-srs nonsense -o x.ply

# Feet: an outline and a model say so.
"$urdimbre" --quiet tin corners.txt --a-srs EPSG:2994 -o feet.xml
grep -q '<Imperial .*linearUnit="foot"' feet.xml || fail "no feet"
refuses 1 "degree" "$urdimbre" tin corners.txt --a-srs EPSG:4326 -o x.xml

# What cannot be done is refused in one line, and an existing file survives it.
refuses 2 "extension" "$urdimbre" contour scan.las --interval 1 -o x.kml
refuses 2 "extension" "$urdimbre" tin scan.las -o x.ply --outline x.kml
refuses 2 "interval" "$urdimbre" contour scan.las -o x.gpkg
refuses 2 "interval" "$urdimbre" contour scan.las --interval -1 -o x.gpkg
refuses 1 "0.001.*0.01" "$urdimbre" contour scan.las --interval 0.001 --precision 2 -o x.gpkg
refuses 1 "0.125" "$urdimbre" contour scan.las --interval 0.125 --precision 2 -o x.gpkg
printf '0 0 0\n9 0 0\n0 9 5000.00\n' >steep.txt
refuses 1 "500,001 levels, more than 100,000" "$urdimbre" contour steep.txt --interval 0.01 -o x.gpkg
refuses 1 "no level" "$urdimbre" contour steep.txt --interval 9000 --base 6000 -o x.gpkg
refuses 1 "min-length" "$urdimbre" contour steep.txt --interval 1000 --min-length 100 -o x.gpkg
refuses 1 "max-side" "$urdimbre" contour steep.txt --interval 1000 --max-side 1 -o x.gpkg
refuses 1 "fewer than 3" "$urdimbre" contour steep.txt --interval 1 --z 9000:9001 -o x.gpkg
refuses 1 "nowhere/x.shp" "$urdimbre" contour steep.txt --interval 1000 -o nowhere/x.shp
refuses 1 "nowhere/x.shp" "$urdimbre" tin steep.txt -o x.ply --outline nowhere/x.shp
for format in gpkg geojson fgb shp dxf; do
  echo precious >"kept.$format"
  refuses 1 "kept\(_temp\)\?[.]$format.*: cannot be written" bash -c "ulimit -f 20; exec \"$urdimbre\" contour scan.las --class 2,9 --interval 0.1 -o kept.$format"
  expect "an existing $format" "$(cat "kept.$format")" precious
done
[ -z "$(find . -name 'x.*' -o -name 'kept.[^gfsd]*' -o -name 'kept.dbf')" ] || fail "an output was left: $(ls)"

# Ctrl-C, and nothing is there.
"$urdimbre" --quiet generate large.las --points 300000 --seed 5
for phase in Reading Linking Writing; do
  cancels "$phase" 1 o2.shp "$urdimbre" contour large.las --interval 0.25 -o o2.shp
  [ -z "$(find . -name 'o2.*')" ] || fail "$phase: something was written"
done

# Two neighbouring tiles of real ground as one cloud: contours go on across the border.
if [ -d "$data" ]; then
  tiles=("$data/bcts_1.las" "$data/bcts_2.las" --class 2)
  "$urdimbre" --quiet contour "${tiles[@]}" --interval 1 -o tiles.gpkg
  "$urdimbre" --quiet tin "${tiles[@]}" -o tiles.ply --outline tiles_outline.gpkg
  "$contour_facts" tiles.gpkg tiles_outline.gpkg tiles.ply 629400 >facts.txt
  [ "$(told crossing facts.txt)" -gt 5 ] || fail "$(told crossing facts.txt) contours cross the border of the tiles"
  expect "contours that break at the border" "$(told off_outline_at_border facts.txt)" 0
  expect "contours of the tiles that end in the open" "$(told broken facts.txt)" 0

  # Dense forest with all its walls of leaves: no line breaks in a sliver.
  border=("$data/bcts_1.las" "$data/bcts_2.las" --bounds 885000,629385,885300,629415)
  "$urdimbre" --quiet contour "${border[@]}" --interval 10 -o forest.gpkg
  "$urdimbre" --quiet tin "${border[@]}" -o forest.ply --outline forest_outline.gpkg
  "$contour_facts" forest.gpkg forest_outline.gpkg forest.ply 629400 >facts.txt
  [ "$(told contours facts.txt)" -gt 1000 ] || fail "only $(told contours facts.txt) contours in the forest"
  expect "contours of the forest that end in the open" "$(told broken facts.txt)" 0

  # The system of a file that tells it by parameters of its own, in feet.
  "$urdimbre" --json --quiet tin "$data/autzen_trim.las" -o feet.xml --outline feet.geojson >feet.json
  grep -q '<Imperial .*linearUnit="foot"' feet.xml || fail "autzen_trim is in feet"
  grep -q 'epsgCode="2994"' feet.xml || fail "autzen_trim: no code"
  grep -q 'Oregon GIC Lambert (ft)' < <(summary feet.geojson) || fail "autzen_trim: no system in GeoJSON"
  pass
fi
done_with
