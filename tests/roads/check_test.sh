# The proof of models, sound ones and ones that were damaged in their files.
. "$(dirname "$0")/lib.sh"

# says WHAT FILE...: the check ends with 1 and tells it on a line of its own
says() {
  local text=$1 found=0
  shift
  "$urdimbre" --quiet check "$@" 2>stderr || found=$?
  expect "check $*" "$found" 1
  grep -q "^urdimbre: .*$text" stderr || fail "check $*: no '$text': $(cat stderr)"
}

"$urdimbre" --quiet generate scan.las --points 3000 --seed 5
for format in ply urd; do
  "$urdimbre" --quiet tin scan.las -o "m.$format"
  "$urdimbre" --json check --whole "m.$format" >"$format.json" 2>/dev/null || fail "m.$format is sound: $(cat "$format.json")"
  "$urdimbre" --quiet tin scan.las -o "f.$format" --class 2 --slope 0:30 --max-side 8
  "$urdimbre" --quiet check "f.$format" || fail "f.$format is sound"
  says "in a surface that should be whole" --whole "f.$format"
done
expect "both forms have the same triangles" "$(number triangles ply.json)" "$(number triangles urd.json)"
expect "sides by the oracle" "$(number boundary_sides ply.json)" "$(fact boundary_sides m.ply)"

# What a file says of itself counts before its name.
cp m.urd called.ply
cp m.ply called.urd
"$urdimbre" --quiet check called.ply || fail "a native model that is called .ply is sound"
"$urdimbre" --quiet check called.urd || fail "a PLY that is called .urd is sound"
pass

# A PLY's faces stand at its end, 13 bytes each; doubles before them, 24 bytes a vertex.
size=$(stat -c %s m.ply)
faces=$((size - 13 * $(number triangles ply.json)))
vertices=$((faces - 24 * $(number vertices ply.json)))
copy_bytes() { dd if="$1" of="$2" bs=1 skip="$3" seek="$4" count="$5" conv=notrunc status=none; }
damaged() { cp m.ply bad.ply; }

damaged
copy_bytes m.ply bad.ply $((faces + 5)) $((faces + 9)) 4  # corners 2 and 3 change places
copy_bytes m.ply bad.ply $((faces + 9)) $((faces + 5)) 4
says "1 triangle runs the wrong way round: triangle 0 " bad.ply
damaged
copy_bytes m.ply bad.ply "$faces" $((faces + 13 * 700)) 13
says "1 triangle has the vertices of another: " bad.ply
says "in a surface that should be whole" --whole bad.ply
damaged
copy_bytes m.ply bad.ply $((vertices + 24 * 40)) $((vertices + 24 * 1900)) 24
says "1 vertex lies at the place of another: vertex 1900 " bad.ply
damaged
printf '\377\377\377\177' | dd of=bad.ply bs=1 seek=$((faces + 1)) conv=notrunc status=none
says "face 0 names vertex 2147483647" bad.ply
head -c $((size - 5)) m.ply >bad.ply
says "cut short" bad.ply
head -c $((size - 13)) m.ply >bad.ply
says "bad.ply: " bad.ply
printf 'ply\nformat ascii 1.0\nelement vertex 4\nproperty double x\nproperty double y\nproperty double z\nelement face 2
property list uchar int vertex_indices\nend_header\n0 0 0\n10 1 0\n20 0 0\n10 -30 0\n3 0 3 2\n3 0 2 1\n' >kite.ply
"$urdimbre" --quiet check --whole kite.ply && fail "the long side of the kite is not Delaunay"
sed 's/^3 0 3 2$/3 0 3 1/; s/^3 0 2 1$/3 1 3 2/' kite.ply >good.ply
"$urdimbre" --quiet check --whole good.ply || fail "the short one is"
says "1 side is not Delaunay: vertex 2 (20 0) to vertex 0 (0 0): vertex 1 (10 1)" kite.ply

head -c 3000 m.urd >bad.urd
says "cut short" bad.urd
cp m.urd bad.urd
printf '\001\002' | dd of=bad.urd bs=1 seek=4000 conv=notrunc status=none
says "damaged" bad.urd
refuses 1 "neither" "$urdimbre" check scan.las
refuses 1 "gone.ply" "$urdimbre" check gone.ply
refuses 2 "FILE" "$urdimbre" check
done_with
