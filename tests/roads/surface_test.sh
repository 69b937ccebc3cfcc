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

# what cannot be
refuses 2 "max-side" "$urdimbre" surface boxes.txt -o o.ply
refuses 2 "max-side" "$urdimbre" surface boxes.txt -o o.ply --max-side 0
refuses 2 "extension" "$urdimbre" surface boxes.txt -o o.xyz --max-side 3
refuses 2 "is for clouds" "$urdimbre" surface boxes.tin3d -o o.ply --max-side 3 --class 2
refuses 1 "nothing is surface" "$urdimbre" surface boxes.txt -o o.ply --max-side 0.1
refuses 1 "nowhere.las" "$urdimbre" surface nowhere.las -o o.ply --max-side 3
printf '0 0 0\n9 0 0\n0 9 0\n9 9 0\n' >plane.txt
refuses 1 "in one plane" "$urdimbre" surface plane.txt -o o.ply --max-side 30
"$urdimbre" --quiet generate bigger.las --points 100000 --seed 5
for phase in Reading Linking; do
  cancels "$phase" 1 o.ply "$urdimbre" surface bigger.las -o o.ply --max-side 6
done
done_with
