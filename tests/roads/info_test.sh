# What info tells of every kind of file, and what reading says of systems and heights that do not go together.
. "$(dirname "$0")/lib.sh"
feature() { printf '{"type":"Feature","properties":{"CODE":"%s"},"geometry":{"type":"%s","coordinates":%s}}' "$1" "$2" "$3"; }
# collection EPSG FEATURES
collection() {
  printf '{"type":"FeatureCollection","name":"survey","crs":{"type":"name","properties":{"name":"urn:ogc:def:crs:EPSG::%s"}},"features":[%s]}' "$1" "$2"
}
holds() { grep -qE -- "$2" "$1" || fail "$1 lacks '$2': $(cat "$1")"; pass; }
lacks() { ! grep -qE -- "$2" "$1" || fail "$1 has '$2': $(cat "$1")"; pass; }
info() { "$urdimbre" info "$@" >info.txt 2>/dev/null || fail "info $*"; "$urdimbre" --json info "$@" >info.json 2>/dev/null; }

"$urdimbre" --quiet generate scan.las --points 5000 --seed 3
"$urdimbre" --json tin scan.las -o scan.urd >tin.json 2>/dev/null
system=$(grep '"system"' tin.json | tr -d ' ,')

info scan.las
holds info.txt '^  system      ETRS89 / UTM zone 30N \(EPSG:25830\)$'
holds info.txt '^  x  .* metre$'
holds info.txt '^  z  .* metre$'
expect "the system, as every verb tells it" "$(grep '"system"' info.json | tr -d ' ,' | sort -u)" "$system"
expect "what wrote the file has another name" "$(grep -c '"system_id"' info.json)" 1

info scan.urd
holds info.txt "^  format      native model, [0-9,]+ triangles, 1 ring of outline$"
expect "points of a model" "$(number points info.json | sort -u)" "$(number vertices tin.json)"
expect "triangles of a model" "$(number triangles info.json)" "$(number triangles tin.json)"
holds info.txt '^  class 2  .* ground$'

cp scan.urd model.las
info model.las
holds info.txt "^  format      native model"
"$urdimbre" --quiet tin scan.las -o scan.ply
refuses 1 "scan.ply: is a PLY model: of models, only native ones" "$urdimbre" info scan.ply

collection 25830 "$(feature RIDGE LineString '[[20,50,10],[80,50,10]]'),$(feature SPOT Point '[50,20,5.25]'),$(feature ZERO LineString '[[20,52,0],[80,54,0]]')" >survey.geojson
info survey.geojson
holds info.txt '^  format      vector, 2 lines and 1 sets of points$'
holds info.txt '^  system      ETRS89 / UTM zone 30N \(EPSG:25830\)$'
holds info.txt '^  at height 0 1 lines and sets of points$'
expect "points of lines" "$(number points info.json | sort -u)" 5
info scan.las survey.geojson
expect "points of all" "$(number points info.json | tail -1)" 5005

# Systems come before extents, and one that is given over another is told of.
collection 25829 "$(feature A Point '[900000000,2,3]')" >west.geojson
info scan.las west.geojson
holds info.txt '^  system      not settled: west.geojson: its reference system is .*EPSG:25829'
refuses 1 "west.geojson: its reference system is .*EPSG:25829" "$urdimbre" tin scan.las west.geojson -o x.ply
collection 25829 "$(feature A Point '[450010,4480010,3]')" >near.geojson
"$urdimbre" --quiet tin scan.las near.geojson --a-srs EPSG:25830 -o x.ply 2>errors
holds errors '^urdimbre: warning: near.geojson: its reference system is .*EPSG:25829.*; --a-srs takes its numbers for .*EPSG:25830'
lacks errors 'scan.las'
"$urdimbre" --quiet tin scan.las --a-srs EPSG:25830 -o x.ply 2>errors
expect "words about the same system" "$(wc -c <errors)" 0

# The columns of text: what was taken for what, and how to say so.
printf '1,450000.1,4480000.2,100.0\n2,450010.1,4480000.2,101.0\n3,450000.1,4480010.2,102.0\n4,450011.1,4480012.2,102.5\n' >points.csv
info points.csv
holds info.txt '^  columns     recognised: 1 number, 2 x, 3 y, 4 z; others with --columns$'
holds info.txt '^  x           450000.100 to 450011.100$'
printf 'Point,Northing,Easting,Elevation,Code\n1,4480000.2,450000.1,100.0,EDGE\n2,4480000.2,450010.1,101.0,TOP\n3,4480010.2,450000.1,102.0,TOP\n' >pnezd.csv
info pnezd.csv
holds info.txt '^  columns     named by its first line: 1 \(passed over\), 2 y, 3 x, 4 z;'
holds info.txt '^  x           450000.100 to 450010.100$'
tail -n +2 pnezd.csv >plain.csv
info plain.csv --columns P,N,E,Z,D
holds info.txt '^  columns     given: '
holds info.txt '^  x           450000.100 to 450010.100$'
"$urdimbre" --quiet tin plain.csv --columns P,N,E,Z,D -o p.ply
"$urdimbre" --quiet tin pnezd.csv -o q.ply
cmp p.ply q.ply || fail "given columns and named ones differ"
pass
refuses 2 "names no column z" "$urdimbre" tin plain.csv --columns x,y -o x.ply

# Lines without heights that came as 0 are told of where the ground is elsewhere, and only there.
lines='[[450010,4480010,0],[450020,4480020,0]]'
collection 25830 "$(feature EDGE LineString "$lines"),$(feature TOP LineString '[[450011,4480013,660],[450021,4480025,661]]')" >zero.geojson
"$urdimbre" --quiet tin scan.las zero.geojson -o x.ply 2>errors
holds errors '^urdimbre: warning: zero.geojson: 1 of its 2 lines and sets of points have the height 0 throughout, and all else lies between'
printf '450000 4480000 -1\n450030 4480000 2\n450000 4480030 3\n' >shore.txt
"$urdimbre" --quiet tin shore.txt zero.geojson --code-field CODE --code EDGE -o x.ply 2>errors
expect "words about a shore at 0" "$(wc -c <errors)" 0
done_with
