# Meshes in space: every format is proved, the same bytes come from any number of threads, each kind of input without a
# mesh is one line, and nothing is left behind.
. "$(dirname "$0")/lib.sh"

"$urdimbre" --quiet generate scan.las --points 20000 --seed 3
"$urdimbre" --json tetra scan.las -o m.vtu >m.json 2>/dev/null
"$urdimbre" --json check --whole m.vtu >check.json 2>/dev/null || fail "m.vtu: $(cat check.json)"
expect "tetrahedra proved" "$(number tetrahedra check.json)" "$(number tetrahedra m.json)"
expect "vertices proved" "$(number vertices check.json)" "$((20000 - $(number duplicates m.json)))"
expect "faces of the hull" "$(number boundary_faces check.json)" "$(number hull_faces m.json)"
expect "points refused" "$(number refused m.json)" 0
for format in mesh msh; do
  "$urdimbre" --quiet tetra scan.las -o "m.$format"
  "$urdimbre" --json check --whole "m.$format" >other.json 2>/dev/null || fail "m.$format: $(cat other.json)"
  expect "$format and vtu" "$(sed 2d other.json)" "$(sed 2d check.json)"
done
"$urdimbre" --quiet tetra scan.las -o hull.ply
grep -qa "^element face $(number hull_faces m.json)$" hull.ply || fail "hull.ply: $(head -9 hull.ply)"
pass
"$urdimbre" --quiet tetra scan.las -o CAPITALS.VTU
"$urdimbre" --quiet check --whole CAPITALS.VTU
expect "bytes of a name in capitals" "$(cmp m.vtu CAPITALS.VTU && echo same)" same
for threads in 1 2 4; do
  "$urdimbre" --quiet --threads "$threads" tetra scan.las -o "t$threads.vtu"
  expect "bytes with $threads threads" "$(cmp m.vtu "t$threads.vtu" && echo same)" same
done
"$urdimbre" --quiet tetra scan.las -o file.vtu --order file
"$urdimbre" --quiet check --whole file.vtu
pass

# A doubt is told once, and what says nothing of a mesh in space is not taken.
if built_with gdal; then
  survey='{"type":"FeatureCollection","features":[{"type":"Feature","properties":{},"geometry":{"type":"LineString","coordinates":[[1,1,0],[5,5,0]]}}]}'
  printf '%s' "$survey" >zero.geojson
  printf '0 0 100\n10 0 101\n0 10 102\n9 9 109\n5 4 104\n' >high.txt
  "$urdimbre" --quiet tetra high.txt zero.geojson --a-srs EPSG:25830 -o zero.vtu 2>doubts
  expect "warnings of lines at height 0" "$(grep -c 'have the height 0 throughout' doubts)" 1
fi
refuses 2 "--border" "$urdimbre" tetra scan.las -o b.vtu --border frame

# beside the origin coordinates keep their decimals too, so that the file can be proved
awk 'BEGIN { srand(7); for (i = 0; i < 2000; ++i) printf "%.3f %.3f %.3f\n", 20 * rand() - 10, 20 * rand() - 10, rand() - 1 }' >beside0.txt
for format in vtu mesh msh; do
  "$urdimbre" --quiet tetra beside0.txt -o "beside0.$format"
  "$urdimbre" --quiet check --whole "beside0.$format"
done
pass

# filters
"$urdimbre" --json tetra scan.las -o ground.vtu --class 2 >ground.json 2>/dev/null
"$urdimbre" --quiet check --whole ground.vtu
ground=$("$urdimbre" info scan.las 2>/dev/null | sed -nE 's/^  class 2 +([0-9,]+) .*/\1/p' | tr -d ,)
expect "points of the class" "$(number points_accepted ground.json)" "$ground"

# what the checker says of a mesh that was harmed
printf '0 0 0\n10 0 0\n0 10 0\n0 0 10\n9 9 9\n' >five.txt
"$urdimbre" --quiet tetra five.txt -o five.mesh
"$urdimbre" --quiet check --whole five.mesh
last=$(grep -n ' 0$' five.mesh | tail -1 | cut -d: -f1)
sed "${last}s/^\([0-9]*\) \([0-9]*\)/\2 \1/" five.mesh >turned.mesh
refuses 1 "wrong way round" "$urdimbre" --quiet check turned.mesh
sed "${last}d; s/^\(Tetrahedra\)$/\1/" five.mesh >short.mesh
refuses 1 "short.mesh" "$urdimbre" --quiet check short.mesh
printf '10 0 x\n' >bad.msh
refuses 1 "bad.msh" "$urdimbre" --quiet check bad.msh
head -c 3000 m.vtu >cut.vtu
refuses 1 "cut short" "$urdimbre" --quiet check cut.vtu

# inputs without a mesh
: >none.txt
refuses 1 "none.txt" "$urdimbre" tetra none.txt -o o.vtu
printf '1 2 3\n' >one.txt
refuses 1 "a tetrahedron needs 4" "$urdimbre" tetra one.txt -o o.vtu
printf '1 2 3\n4 5 6\n' >two.txt
refuses 1 "a tetrahedron needs 4" "$urdimbre" tetra two.txt -o o.vtu
printf '1 2 3\n4 5 6\n7 8 1\n' >three.txt
refuses 1 "a tetrahedron needs 4" "$urdimbre" tetra three.txt -o o.vtu
printf '0 0 0\n9 0 0\n0 9 0\n9 9 0\n' >plane.txt
refuses 1 "in one plane" "$urdimbre" tetra plane.txt -o o.vtu
printf '0 0 0\n1 2 3\n2 4 6\n3 6 9\n5 10 15\n' >line.txt
refuses 1 "on one line" "$urdimbre" tetra line.txt -o o.vtu
printf '5 5 5\n5 5 5\n5 5 5\n5 5 5\n' >equal.txt
refuses 1 "at one place" "$urdimbre" tetra equal.txt -o o.vtu
refuses 1 "a tetrahedron needs 4" "$urdimbre" tetra scan.las -o o.vtu --z 9000:9001
refuses 2 "extension" "$urdimbre" tetra scan.las -o o.obj
refuses 1 "nowhere" "$urdimbre" tetra scan.las -o nowhere/o.vtu
refuses 1 "temporary folder" bash -c "ulimit -f 1000; exec \"$urdimbre\" tetra scan.las -o o.vtu"
[ ! -e o.vtu ] || fail "an output was left"

# interrupted in each phase
"$urdimbre" --quiet generate bigger.las --points 150000 --seed 5
for phase in Reading Ordering Linking "Completing the hull" Writing; do
  cancels "$phase" 1 o.vtu "$urdimbre" tetra bigger.las -o o.vtu
done

for cloud in sample_c space/room_scan1 space/milk; do
  [ -f "$data/$cloud.las" ] || continue
  "$urdimbre" --quiet tetra "$data/$cloud.las" -o real.vtu
  "$urdimbre" --quiet check --whole real.vtu
  pass
done
done_with
