# Surfaces in space: counts of what is known, every format, colours, the same bytes from any number of threads, pictures.
. "$(dirname "$0")/lib.sh"

# Two boxes of points a unit apart, with a wall's width of nothing between them.
awk 'BEGIN {
  for (b = 0; b < 2; ++b)
    for (x = 0; x < 7; ++x) for (y = 0; y < 7; ++y) for (z = 0; z < 7; ++z)
      printf "%.2f %.2f %.2f\n", 30 * b + x + 0.1 * ((3 * x + 5 * y + 2 * z) % 4) / 4, y + 0.05 * ((x + z) % 3),
             z + 0.05 * ((x + 2 * y) % 3)
}' >boxes.txt
"$urdimbre" --json surface boxes.txt -o boxes.ply --max-side 3 >boxes.json 2>/dev/null
expect "components" "$(number components boxes.json)" 2
expect "borders" "$(number borders boxes.json)" 0
expect "colours" "$(grep -c '"coloured": false' boxes.json)" 1
faces=$(number faces boxes.json)
for format in obj stl gltf; do "$urdimbre" --quiet surface boxes.txt -o "boxes.$format" --max-side 3; done
expect "faces in OBJ" "$(grep -c '^f ' boxes.obj)" "$faces"
expect "faces in STL" "$(od -An -tu4 -j80 -N4 boxes.stl | tr -d ' ')" "$faces"
expect "bytes of STL" "$(stat -c %s boxes.stl)" "$((84 + 50 * faces))"
expect "glTF" "$(sed -nE 's/.*"count":([0-9]+),"type":"SCALAR".*/\1/p' boxes.gltf)" "$((3 * faces))"
expect "PLY" "$(grep -ac "^element face $faces$" boxes.ply)" 1
for threads in 1 2 4; do
  "$urdimbre" --quiet --threads "$threads" surface boxes.txt -o "t$threads.ply" --max-side 3
  expect "bytes with $threads threads" "$(cmp boxes.ply "t$threads.ply" && echo same)" same
done
pass

# of a mesh that was made before
"$urdimbre" --quiet tetra boxes.txt -o boxes.tin3d
"$urdimbre" --json surface boxes.tin3d -o mesh.ply --max-side 3 >mesh.json 2>/dev/null
expect "components of the mesh's" "$(number components mesh.json)" 2
expect "the mesh's bytes" "$(cmp mesh.ply boxes.ply && echo same)" same

# colours
"$urdimbre" --quiet generate scan.las --points 20000 --seed 3
"$urdimbre" --json surface scan.las -o scan.ply --max-side 6 >scan.json 2>/dev/null
expect "colours" "$(grep -c '"coloured": true' scan.json)" 1
expect "colours in PLY" "$(grep -ac '^property uchar red$' scan.ply)" 1
"$urdimbre" --quiet tetra scan.las -o scan.tin3d
"$urdimbre" --quiet surface scan.tin3d -o again.ply --max-side 6
expect "bytes and colours of the mesh's" "$(cmp scan.ply again.ply && echo same)" same
"$urdimbre" --quiet surface scan.las -o scan.gltf --max-side 6
expect "colours in glTF" "$(grep -c COLOR_0 scan.gltf)" 1

# pictures
if built_with cairo; then
  for view in 0,90 210,30 30,-20 90,0; do
    "$urdimbre" --quiet render boxes.ply -o view.png --view "$view" --size 200x150
    expect "picture" "$(head -c 4 view.png | tail -c 3)" PNG
  done
  "$urdimbre" --quiet --threads 1 render scan.ply -o one.png --view 210,30 --size 300
  "$urdimbre" --quiet --threads 2 render scan.ply -o two.png --view 210,30 --size 300
  expect "bytes of a picture" "$(cmp one.png two.png && echo same)" same
  refuses 2 "AZIMUTH,ELEVATION" "$urdimbre" render boxes.ply -o o.png --view 30
  refuses 2 "AZIMUTH,ELEVATION" "$urdimbre" render boxes.ply -o o.png --view 30,91
  refuses 2 "for maps" "$urdimbre" render boxes.ply -o o.png --view 30,20 --contours 5
fi

# real scans, where they are there: as many pieces and faces as when somebody last looked at the pictures
if [ -d "$data/space" ]; then
  "$urdimbre" --json surface "$data/space/milk.las" -o milk.ply --max-side 0.02 >milk.json 2>/dev/null
  expect "pieces on a table" "$(number components milk.json)" 7
  expect "colours on a table" "$(grep -c '"coloured": true' milk.json)" 1
  "$urdimbre" --json surface "$data/space/room_scan1.las" -o room.ply --max-side 0.2 >room.json 2>/dev/null
  expect "faces of a room" "$(number faces room.json)" 62511
  # A wall: an upright strip, which has no area in plan. No surface over the plan has any.
  "$urdimbre" --quiet surface "$data/sample_c.las" -o wall.obj --max-side 5
  awk '$1 == "v" { ++n; x[n] = $2; y[n] = $3; z[n] = $4 }
    $1 == "f" { ux = x[$3] - x[$2]; uy = y[$3] - y[$2]; uz = z[$3] - z[$2]; vx = x[$4] - x[$2]; vy = y[$4] - y[$2]; vz = z[$4] - z[$2]
      a = uy * vz - uz * vy; b = uz * vx - ux * vz; c = ux * vy - uy * vx; all = sqrt(a * a + b * b + c * c) / 2
      if (c * c < 0.03 * (a * a + b * b + c * c)) upright += all }
    END { print int(upright) }' wall.obj >upright
  [ "$(cat upright)" -gt 300 ] || fail "square metres of upright faces of sample_c: $(cat upright)"
  pass
else
  echo "real scans are not there: passed over"
fi

# what cannot be
refuses 2 "max-side" "$urdimbre" surface boxes.txt -o o.ply
refuses 2 "max-side" "$urdimbre" surface boxes.txt -o o.ply --max-side 0
refuses 2 "extension" "$urdimbre" surface boxes.txt -o o.xyz --max-side 3
refuses 2 "is for clouds" "$urdimbre" surface boxes.tin3d -o o.ply --max-side 3 --class 2
refuses 1 "nothing is surface" "$urdimbre" surface boxes.txt -o o.ply --max-side 0.1
refuses 1 "nowhere.las" "$urdimbre" surface nowhere.las -o o.ply --max-side 3
printf '0 0 0\n9 0 0\n0 9 0\n9 9 0\n' >plane.txt
refuses 1 "in one plane" "$urdimbre" surface plane.txt -o o.ply --max-side 30
for n in 1 2 3; do
  head -n "$n" plane.txt >few.txt
  refuses 1 "a tetrahedron needs 4" "$urdimbre" surface few.txt -o o.ply --max-side 30
done
printf '0 0 0\n9 0 0\n0 9 0\n0 0 9\n' >four.txt
"$urdimbre" --json surface four.txt -o four.stl --max-side 30 >four.json 2>/dev/null
expect "faces of four points" "$(number faces four.json)" 4
for side in 1e-300 0.001; do
  for cloud in boxes.txt boxes.tin3d; do
    refuses 1 "nothing is surface" "$urdimbre" surface "$cloud" -o o.ply --max-side "$side"
  done
done
for side in 1e6 1e300; do  # the hull, whatever the frame is like
  "$urdimbre" --quiet surface boxes.txt -o hull.ply --max-side "$side"
  "$urdimbre" --quiet surface boxes.tin3d -o hull2.ply --max-side "$side"
  expect "the hull" "$(cmp hull.ply hull2.ply && echo same)" same
done
: >empty.txt
refuses 1 "empty.txt" "$urdimbre" surface empty.txt -o o.ply --max-side 30
head -c 20000 scan.las >cut.las
refuses 1 "cut.las" "$urdimbre" surface cut.las -o o.ply --max-side 6
for format in ply obj stl gltf; do
  "$urdimbre" --quiet surface scan.las -o "whole.$format" --max-side 6
  room=$(($(stat -c %s "whole.$format") / 1024 - 8))  # less than the file, more than the temporary one
  refuses 1 "o.$format: cannot be written: .*$too_large" \
    bash -c "ulimit -f $room; exec \"$urdimbre\" surface scan.las -o o.$format --max-side 6"
  refuses 1 "nowhere/o.$format" "$urdimbre" surface scan.las -o "nowhere/o.$format" --max-side 6
done
refuses 1 "temporary folder" bash -c "ulimit -f 50; exec \"$urdimbre\" surface scan.las -o o.ply --max-side 6"
"$urdimbre" --quiet generate bigger.las --points 100000 --seed 5
for phase in Reading Linking; do
  cancels "$phase" 1 o.ply "$urdimbre" surface bigger.las -o o.ply --max-side 6
done
done_with
