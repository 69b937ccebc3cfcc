# Pictures: the same land gives the same picture, whatever file it comes from, and what can't be shown is refused.
. "$(dirname "$0")/lib.sh"

# bytes FILE OFFSET COUNT, in hexadecimal
bytes() { od -An -j"$2" -N"$3" -tx1 "$1" | tr -d ' \n'; }
width() { echo $((16#$(bytes "$1" 16 4))); }
height() { echo $((16#$(bytes "$1" 20 4))); }
is_png() {
  expect "$1: signature" "$(bytes "$1" 0 8)" 89504e470d0a1a0a
  expect "$1: end" "$(tail -c 8 "$1" | od -An -tx1 | tr -d ' \n')" 49454e44ae426082
}

"$urdimbre" --quiet generate scan.las --points 30000 --seed 3
"$urdimbre" --quiet tin scan.las -o scan.ply
"$urdimbre" --quiet tin scan.las -o scan.urd

"$urdimbre" --json render scan.las -o cloud.png --size 640x480 >cloud.json 2>progress
is_png cloud.png
expect "width" "$(width cloud.png)" 640
expect "height" "$(height cloud.png)" 480
for phase in Reading Linking Painting Writing; do grep -q "^$phase" progress || fail "no progress of the phase $phase"; done
pass
for model in ply urd; do
  "$urdimbre" --quiet render "scan.$model" -o "$model.png" --size 640x480 --a-srs EPSG:25830
  cmp cloud.png "$model.png" || fail "the .$model gives another picture than the cloud"
  pass
done
"$urdimbre" --quiet --threads 1 render scan.las -o one.png --size 640x480
cmp cloud.png one.png || fail "one thread gives another picture"
pass

# a cloud given twice adds nothing but duplicates
"$urdimbre" --quiet render scan.las scan.las -o twice.png --size 640x480
cmp cloud.png twice.png || fail "a cloud twice is not the cloud"
pass

"$urdimbre" --json render scan.las -o long.png --size 500 >long.json 2>/dev/null
expect "the longer side" "$(($(width long.png) > $(height long.png) ? $(width long.png) : $(height long.png)))" 500

# contours and classes change the picture, and the counts say how
"$urdimbre" --json render scan.las --class 2 -o ground.png --size 640x480 >ground.json 2>/dev/null
"$urdimbre" --json render scan.las --class 2 --contours 1 -o contours.png --size 640x480 >contours.json 2>/dev/null
expect "contour lines without contours" "$(number contour_lines ground.json)" 0
[ "$(number contour_lines contours.json)" -gt 10 ] || fail "few contours: $(number contour_lines contours.json)"
cmp -s ground.png contours.png && fail "contours are not to be seen"
"$urdimbre" --quiet render scan.las --classes -o classes.png --size 640x480
is_png classes.png
cmp -s cloud.png classes.png && fail "classes are not to be seen"
"$urdimbre" --quiet render scan.urd --classes -o classes_urd.png --size 640x480 --a-srs EPSG:25830
cmp classes.png classes_urd.png || fail "the classes of the model are not those of the cloud"
pass

# a part of it, by the model and by the cloud; a picture without letters
"$urdimbre" --quiet render scan.urd -o part.png --bounds 449980,4479980,450000,4480000 --size 300x300
is_png part.png
"$urdimbre" --quiet render scan.urd -o tiny.png --size 1x1
expect "the smallest picture" "$(width tiny.png)x$(height tiny.png)" 1x1

# what makes no sense
refuses 2 "extension .png" "$urdimbre" render scan.las -o scan.jpg
refuses 2 "extension .png" "$urdimbre" render scan.las -o scan
refuses 2 "from 1 to 20000" "$urdimbre" render scan.las -o o.png --size 0
refuses 2 "from 1 to 20000" "$urdimbre" render scan.las -o o.png --size 20001x10
refuses 2 "WIDTHxHEIGHT" "$urdimbre" render scan.las -o o.png --size large
refuses 2 "contours" "$urdimbre" render scan.las -o o.png --contours 0
refuses 1 "levels" "$urdimbre" render scan.las -o o.png --contours 0.00001
refuses 1 "nothing to show" "$urdimbre" render scan.ply -o o.png --bounds 0,0,1,1
refuses 1 "fewer than 3" "$urdimbre" render scan.las -o o.png --bounds 0,0,1,1
refuses 1 "no triangle" "$urdimbre" render scan.ply -o o.png --max-side 0.0001
refuses 2 "shown alone" "$urdimbre" render scan.las scan.ply -o o.png
"$urdimbre" --quiet render scan.ply -o nounit.png --size 640x480
cmp -s cloud.png nounit.png && fail "the unit is not to be seen"
refuses 2 "EPSG:1" "$urdimbre" render scan.ply -o o.png --a-srs EPSG:1
refuses 2 "--class is for clouds" "$urdimbre" render scan.ply -o o.png --class 2
refuses 1 "holds no classes" "$urdimbre" render scan.ply -o o.png --classes
refuses 1 "no such file" "$urdimbre" render missing.las -o o.png
refuses 1 "no such file" "$urdimbre" render missing.ply -o o.png
refuses 1 "no such file" "$urdimbre" render missing.urd -o o.png
refuses 1 "nowhere" "$urdimbre" render scan.ply -o nowhere/o.png

# a mesh in space, whole and cut open on the viewer's side
awk 'BEGIN { srand(3); for (i = 0; i < 500; ++i) printf "%.2f %.2f %.2f\n", 9 * rand() - 4, 9 * rand() - 4, 9 * rand() - 4 }' >dice.txt
"$urdimbre" --json --quiet tetra dice.txt -o dice.vtu >dice.json
"$urdimbre" --json --quiet render dice.vtu -o dice.png --view 60,20 --size 200 >whole.json
is_png dice.png
expect "outer faces of a mesh" "$(number triangles whole.json)" "$(number hull_faces dice.json)"
"$urdimbre" --json --quiet render dice.vtu -o open.png --view 60,20 --size 200 --cut x=0 >open.json
cmp -s dice.png open.png && fail "the cut is not to be seen"
[ "$(number triangles open.json)" -gt 100 ] || fail "the cut bares nothing: $(number triangles open.json) faces"
for format in mesh msh; do
  "$urdimbre" --quiet tetra dice.txt -o "dice.$format"
  "$urdimbre" --quiet render "dice.$format" -o "$format.png" --view 60,20 --size 200 --cut x=0
  expect "picture of .$format" "$(cmp open.png "$format.png" && echo same)" same
done
"$urdimbre" --quiet render dice.vtu -o beyond.png --view 60,20 --size 200 --cut x=100
expect "a cut beyond the mesh" "$(cmp dice.png beyond.png && echo same)" same
# seen from the west it is the other side that goes, so that both together have each tetrahedron once
refuses 1 "nothing is left" "$urdimbre" render dice.vtu -o o.png --view 60,20 --cut x=-100
"$urdimbre" --quiet render dice.vtu -o west.png --view 240,20 --size 200 --cut x=-100
refuses 1 "nothing is left" "$urdimbre" render dice.vtu -o o.png --view 240,20 --cut x=100
refuses 1 "nothing is left" "$urdimbre" render dice.vtu -o o.png --view 60,20 --cut z=-100
refuses 2 "such as x=12.5" "$urdimbre" render dice.vtu -o o.png --view 60,20 --cut w=1
refuses 2 "such as x=12.5" "$urdimbre" render dice.vtu -o o.png --view 60,20 --cut x=1m
refuses 2 "no map of a mesh" "$urdimbre" render dice.vtu -o o.png
refuses 2 "whence" "$urdimbre" render dice.vtu -o o.png --cut x=0
refuses 2 "scan.las is none" "$urdimbre" render scan.las -o o.png --view 60,20 --cut x=0
refuses 2 "shown alone" "$urdimbre" render dice.vtu scan.las -o o.png --view 60,20
refuses 2 "classes is for" "$urdimbre" render dice.vtu -o o.png --view 60,20 --classes
refuses 2 "is for clouds" "$urdimbre" render dice.vtu -o o.png --view 60,20 --class 2
refuses 1 "no such file" "$urdimbre" render missing.vtu -o o.png --view 60,20
head -c 3000 dice.vtu >cut.vtu
refuses 1 "cut.vtu" "$urdimbre" render cut.vtu -o o.png --view 60,20
pass

# damaged models, and a disk that is full
head -c 300000 scan.ply >cut.ply
refuses 1 "cut.ply" "$urdimbre" render cut.ply -o o.png
head -c 300000 scan.urd >cut.urd
refuses 1 "cut short" "$urdimbre" render cut.urd -o o.png
echo "not a model" >wrong.ply
refuses 1 "is no PLY file" "$urdimbre" render wrong.ply -o o.png
echo precious >kept.png
refuses 1 "kept.png" bash -c "ulimit -f 20; exec \"$urdimbre\" render scan.ply -o kept.png"
expect "an existing picture" "$(cat kept.png)" precious
[ ! -e o.png ] || fail "a picture was left"
pass
done_with
