# The road from a LAS file to a model, on a generated cloud: the summary, the file and the mesh agree, and the same bytes come
# out of any number of threads.
. "$(dirname "$0")/lib.sh"

"$urdimbre" --quiet generate scan.las --points 60000 --seed 3
"$urdimbre" --json tin scan.las -o a.ply >a.json 2>progress

points=$(number points_read a.json)
expect "points read" "$points" 60000
vertices=$(fact vertices a.ply)
expect "vertices are the distinct points" "$vertices" "$((points - $(number duplicates a.json)))"
triangles=$(fact triangles a.ply)
expect "triangles of the summary" "$(number triangles a.json)" "$triangles"
expect "rings of the summary" "$(number rings a.json)" "$(fact rings a.ply)"
expect "Euler: triangles of a surface without holes" "$triangles" "$((2 * vertices - 2 - $(fact boundary_sides a.ply)))"
expect "clockwise triangles" "$(fact inverted a.ply)" 0
expect "flat triangles" "$(fact flat a.ply)" 0
expect "sides of more than two triangles" "$(fact crowded_sides a.ply)" 0
expect "points in a circle of a neighbour" "$(fact not_delaunay a.ply)" 0
expect "vertices without a triangle" "$(fact unused a.ply)" 0
for phase in Reading Ordering Filling Linking Generating Writing; do
  grep -q "^$phase" progress || fail "no progress of the phase $phase"
done
pass
no_debris "tin"

for threads in 1 2 4; do
  "$urdimbre" --quiet --threads "$threads" tin scan.las -o "b$threads.ply"
  cmp a.ply "b$threads.ply" || fail "$threads threads give other bytes"
  pass
done
"$urdimbre" --quiet tin scan.las -o file.ply --order file
expect "the order of the file gives the same mesh up to cocircular points" "$("$facts" --same a.ply file.ply)" same

# A PLY is written without a model, but for one that an outline or a filter asks for: the same surface. How a file is sorted
# does not show where points at one place have one height.
"$urdimbre" --quiet tin scan.las -o by_model.ply --outline outline.geojson
expect "a model in between" "$("$facts" --same a.ply by_model.ply)" same
awk 'BEGIN { srand(5); for (i = 0; i < 4000; ++i) { x = int(rand() * 90) / 10; y = int(rand() * 90) / 10; print x, y, x + y } }' >few.txt
sort -R --random-source=few.txt few.txt >shuffled.txt
cmp -s few.txt shuffled.txt && fail "the shuffled file is the file itself"
"$urdimbre" --quiet tin few.txt -o few.ply
"$urdimbre" --quiet tin shuffled.txt -o shuffled.ply
cmp few.ply shuffled.ply || fail "the order of the file shows"
pass

for format in obj 2dm xml urd; do
  "$urdimbre" --quiet tin scan.las -o "a.$format"
  [ -s "a.$format" ] || fail "no a.$format"
  pass
done
expect "OBJ faces" "$(grep -c '^f ' a.obj)" "$triangles"
expect "2DM triangles" "$(grep -c '^E3T ' a.2dm)" "$triangles"
expect "LandXML faces" "$(grep -o '<F>' a.xml | wc -l)" "$triangles"

# Filters: what they reject is counted, and only shorter, flatter, other triangles stay.
"$urdimbre" --json tin scan.las -o long.ply --max-side 2 >long.json 2>/dev/null
[ "$(number max_side long.json)" -gt 0 ] || fail "nothing is longer than 2 m"
expect "what is left and what is rejected" "$(($(number triangles long.json) + $(number max_side long.json)))" "$triangles"
expect "longest side" "$(echo "$(fact longest_side long.ply) <= 2.0000001" | tr -d ' ' | awk -F'<=' '{print ($1 <= $2)}')" 1
"$urdimbre" --json tin scan.las -o steep.ply --slope 0:45 >steep.json 2>/dev/null
expect "slopes" "$(($(number triangles steep.json) + $(number slope steep.json)))" "$triangles"
"$urdimbre" --json tin scan.las -o jump.ply --height-difference 0:1 >jump.json 2>/dev/null
expect "height differences" "$(($(number triangles jump.json) + $(number height_difference jump.json)))" "$triangles"
"$urdimbre" --json tin scan.las -o bright.ply --intensity-difference :500 >bright.json 2>/dev/null
expect "intensity differences" "$(($(number triangles bright.json) + $(number intensity_difference bright.json)))" "$triangles"

# Classes: the ground, and all but the ground, are all.
"$urdimbre" --json tin scan.las -o ground.ply --class 2 >ground.json 2>/dev/null
"$urdimbre" --json tin scan.las -o rest.ply --exclude-class 2 >rest.json 2>/dev/null
expect "ground and rest" "$(($(number points_accepted ground.json) + $(number points_accepted rest.json)))" 60000

# An update under a tolerance leaves out what stands above the ground.
"$urdimbre" --json tin ground.las -o x.ply >/dev/null 2>&1 && fail "ground.las is not there"
"$urdimbre" --json tin scan.las --class 2 --update scan.las --tolerance 0.5 -o up.ply >up.json 2>/dev/null
expect "an update by the same ground adds nothing" "$(number vertices up.json)" "$(number vertices ground.json)"
done_with
