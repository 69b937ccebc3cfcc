# The file of a mesh in space: written from clouds in both versions, told of, proved, converted; damaged ones are one line.
. "$(dirname "$0")/lib.sh"

"$urdimbre" --quiet generate scan.las --points 5000 --seed 3
"$urdimbre" --quiet tetra scan.las -o straight.vtu
"$urdimbre" --json tetra scan.las -o m.tin3d >m.json 2>/dev/null
"$urdimbre" --json check m.tin3d >check.json 2>/dev/null || fail "m.tin3d: $(cat check.json)"
expect "vertices with the frame's corners" "$(number vertices check.json)" "$(($(number vertices m.json) + 8))"
"$urdimbre" --json info m.tin3d >info.json 2>/dev/null
expect "version" "$(number version info.json)" 2
expect "points told of" "$(number points info.json)" 5000
expect "tetrahedra told of" "$(number tetrahedra info.json)" "$(number tetrahedra m.json)"
expect "tetrahedra in the file" "$(number tetrahedra_with_frame info.json)" "$(number tetrahedra check.json)"
expect "volume told of" "$(grep -o '"volume": [0-9.]*' info.json)" "$(grep -o '"volume": [0-9.]*' m.json)"
grep -q '"area": [1-9]' info.json || fail "info.json: $(cat info.json)"
"$urdimbre" info m.tin3d scan.las >both.txt 2>/dev/null
expect "files told of together" "$(grep -c '^  format' both.txt)" 2
pass

# the mesh of the cloud and that of the file are one, and prove alike
"$urdimbre" --quiet tetra m.tin3d -o back.vtu
"$urdimbre" --quiet check --whole back.vtu
for mesh in straight back; do "$urdimbre" --json check "$mesh.vtu" 2>/dev/null | sed 2d >"$mesh.json"; done
expect "proofs" "$(cat back.json)" "$(cat straight.json)"
for threads in 1 2 4; do
  "$urdimbre" --quiet --threads "$threads" tetra scan.las -o "t$threads.tin3d"
  "$urdimbre" --quiet --threads "$threads" tetra m.tin3d -o "c$threads.tin3d"
  expect "bytes with $threads threads" "$(cmp m.tin3d "t$threads.tin3d" && cmp m.tin3d "c$threads.tin3d" && echo same)" same
done
pass

# the first version: neither decimals nor origin
"$urdimbre" --quiet tetra m.tin3d -o one.tin3d --version 1
expect "magic" "$(head -c 15 one.tin3d)" "Ondara-TIN3D-01"
"$urdimbre" --quiet tetra one.tin3d -o o.vtu 2>stderr
expect "warnings" "$(grep -c 'names neither decimals nor origin' stderr)" 1
"$urdimbre" --quiet tetra one.tin3d -o o.vtu --precision 2 2>stderr
expect "warnings" "$(grep -c warning stderr)" 0
"$urdimbre" --quiet check one.tin3d 2>/dev/null
pass

# points taken out: what is left proves, and is the mesh of the other points
"$urdimbre" --json tetra m.tin3d --remove-class 6 -o without.tin3d >without.json 2>/dev/null
[ "$(number removed without.json)" -gt 100 ] || fail "without.json: $(cat without.json)"
"$urdimbre" --quiet check without.tin3d
expect "vertices left" "$(number vertices without.json)" "$(($(number vertices m.json) - $(number removed without.json)))"
"$urdimbre" --quiet tetra without.tin3d -o without.vtu
"$urdimbre" --quiet check --whole without.vtu
"$urdimbre" --json check without.vtu 2>/dev/null | sed 2d >left.json
"$urdimbre" --quiet tetra scan.las --remove-class 6 -o direct.vtu
expect "without a file between" "$("$urdimbre" --json check direct.vtu 2>/dev/null | sed 2d)" "$(cat left.json)"
printf '0 0 0\n10 0 0\n0 10 0\n0 0 10\n9 9 9\n4 4 3\n' >six.txt
printf '4 4 3\n' >one.txt
"$urdimbre" --quiet tetra six.txt -o six.tin3d
"$urdimbre" --quiet tetra six.tin3d --remove one.txt -o five.mesh
"$urdimbre" --quiet tetra six.txt --remove one.txt -o other.mesh
expect "one point less" "$(cmp five.mesh other.mesh && grep -A1 Vertices five.mesh | tail -1)" 5
"$urdimbre" --quiet check --whole five.mesh
pass
printf '4 4 3\n4 4 4\n' >two.txt
: >none.txt
refuses 1 "point 2, 4 4 4, is no vertex" "$urdimbre" tetra six.tin3d --remove two.txt -o o.tin3d
refuses 1 "none.txt" "$urdimbre" tetra six.tin3d --remove none.txt -o o.tin3d
refuses 1 "no vertex is of" "$urdimbre" tetra six.tin3d --remove-class 77 -o o.tin3d
refuses 2 "remove-class" "$urdimbre" tetra six.tin3d --remove-class x -o o.tin3d

# what cannot be
refuses 2 "is for clouds" "$urdimbre" tetra m.tin3d -o o.vtu --class 2
refuses 2 "taken alone" "$urdimbre" tetra m.tin3d scan.las -o o.vtu
refuses 2 "not in range" "$urdimbre" tetra m.tin3d -o o.tin3d --version 3
refuses 2 "is for TIN3D" "$urdimbre" tetra m.tin3d -o o.vtu --version 1
refuses 1 "m.tin3d" "$urdimbre" tetra m.tin3d -o m.tin3d
head -c 30000 m.tin3d >cut.tin3d
printf 'x' >none.tin3d
sed 's/Ondara-TIN3D-02/Ondara-TIN3D-07/' m.tin3d >seven.tin3d
for verb in info check "tetra -o o.vtu"; do
  refuses 1 "ends too early" "$urdimbre" $verb cut.tin3d
  refuses 1 "no TIN3D file" "$urdimbre" $verb none.tin3d
  refuses 1 "no TIN3D file" "$urdimbre" $verb seven.tin3d
  refuses 1 "nowhere.tin3d" "$urdimbre" $verb nowhere.tin3d
done
[ ! -e o.vtu ] || rm o.vtu
refuses 1 "nowhere" "$urdimbre" tetra m.tin3d -o nowhere/o.tin3d
refuses 1 "o.tin3d: cannot be written: .*$too_large" bash -c "ulimit -f 200; exec \"$urdimbre\" tetra scan.las -o o.tin3d"
ln -s /dev/full full.tin3d
refuses 1 "not an ordinary file" "$urdimbre" tetra scan.las -o full.tin3d
echo precious >kept.tin3d
refuses 1 "ends too early" "$urdimbre" tetra cut.tin3d -o kept.tin3d
expect "an existing output" "$(cat kept.tin3d)" precious
: >empty.txt
refuses 1 "empty.txt" "$urdimbre" tetra empty.txt -o o.tin3d
for n in 1 2 3; do
  head -n "$n" six.txt >few.txt
  refuses 1 "a tetrahedron needs 4" "$urdimbre" tetra few.txt -o o.tin3d
done
for n in 4 5; do
  head -n "$n" six.txt >few.txt
  "$urdimbre" --quiet tetra few.txt -o few.tin3d
  "$urdimbre" --json info few.tin3d >few.json 2>/dev/null
  expect "vertices" "$(number vertices few.json)" "$n"
  "$urdimbre" --quiet check few.tin3d 2>/dev/null
done
printf '0 0 10\n9 9 9\n' >two-of-few.txt
refuses 1 "few.tin3d: the points that are left span no tetrahedron" \
  "$urdimbre" tetra few.tin3d --remove two-of-few.txt -o o.tin3d
refuses 1 "nowhere.txt" "$urdimbre" tetra few.tin3d --remove nowhere.txt -o o.tin3d
"$urdimbre" --quiet generate bigger.las --points 100000 --seed 5
for phase in Reading Ordering Linking Writing; do
  cancels "$phase" 1 o.tin3d "$urdimbre" tetra bigger.las -o o.tin3d
done
done_with
