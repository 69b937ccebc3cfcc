# Each kind of bad input: one line that names the cause, the right exit code, nothing left behind.
. "$(dirname "$0")/lib.sh"

"$urdimbre" --quiet generate good.las --points 2000 --seed 1
size=$(stat -c %s good.las)
start=$(od -An -tu4 -j96 -N4 good.las | tr -d ' ')

# patch FILE OFFSET BYTES: writes bytes (octal escapes) into a copy's place
patch_at() { printf "$3" | dd of="$1" bs=1 seek="$2" conv=notrunc status=none; }
variant() { cp good.las "$1"; }

refuses 1 "missing.las" "$urdimbre" tin missing.las -o o.ply
mkdir folder.las
refuses 1 "folder" "$urdimbre" tin folder.las -o o.ply
: >empty.las
refuses 1 "empty.las" "$urdimbre" tin empty.las -o o.ply
printf '\021\342\003\304\005\266\007\250\111\012' >random.las
refuses 1 "random.las" "$urdimbre" tin random.las -o o.ply
head -c "$start" good.las >header.las
refuses 1 "header.las" "$urdimbre" tin header.las -o o.ply
head -c $((size - 17)) good.las >cut.las
refuses 1 "cut short" "$urdimbre" tin cut.las -o o.ply
variant count.las
patch_at count.las 247 '\377\377\377\177\000\000\000\000'  # the 64-bit count of 1.4
refuses 1 "count.las" "$urdimbre" tin count.las -o o.ply
variant scale.las
patch_at scale.las 131 '\000\000\000\000\000\000\000\000'
refuses 1 "scale" "$urdimbre" tin scale.las -o o.ply
variant nan.las
patch_at nan.las 155 '\000\000\000\000\000\000\370\177'
refuses 1 "offset" "$urdimbre" tin nan.las -o o.ply
variant packed.las
patch_at packed.las 104 '\207'
refuses 1 "ompress" "$urdimbre" tin packed.las -o o.ply
variant version.las
patch_at version.las 25 '\011'
refuses 1 "version" "$urdimbre" tin version.las -o o.ply

printf '0 0 1\n10 0 2\n0 ten 3\n' >line.txt
refuses 1 "line 3" "$urdimbre" tin line.txt -o o.ply
printf '0 0 1\n10 0 2\n' >two.txt
refuses 1 "3" "$urdimbre" tin two.txt -o o.ply
printf '0 0 1\n10 0 2\n0 0 1\n10 0 5\n' >same.txt
refuses 1 "distinct" "$urdimbre" tin same.txt -o o.ply
printf '0 0 1\n10 10 2\n20 20 1\n35 35 5\n' >straight.txt
refuses 1 "one line" "$urdimbre" tin straight.txt -o o.ply
printf '0 0 1\n90000 0 2\n0 90000 1\n' >wide.txt
refuses 1 "precision" "$urdimbre" tin wide.txt -o o.ply --precision 6
printf '0 0 1\n9 0 2\n0 9 1\n' >small.txt
"$urdimbre" --quiet tin small.txt -o small.ply
expect "a triangle of text" "$(fact triangles small.ply)" 1

refuses 2 "10:5" "$urdimbre" tin small.txt -o o.ply --z 10:5
refuses 2 "minimum" "$urdimbre" tin small.txt -o o.ply --bounds 5,0,1,9
refuses 2 "300" "$urdimbre" tin small.txt -o o.ply --class 2,300
refuses 2 "extension" "$urdimbre" tin small.txt -o o.shp
refuses 2 "nosuch" "$urdimbre" tin small.txt -o o.ply --nosuch
refuses 2 "" "$urdimbre"
refuses 1 "the filters reject all" "$urdimbre" tin good.las -o o.ply --max-side 0.01
refuses 1 "fewer than 3" "$urdimbre" tin good.las -o o.ply --z 9000:9001

# numbers that are none, or too large or small for anything
for option in --max-side=nan --max-side=inf --max-side=-1 --max-side=; do
  refuses 2 "max-side" "$urdimbre" tin good.las -o o.ply "$option"
done
refuses 2 "nan" "$urdimbre" contour good.las -o o.geojson --interval nan
refuses 2 "nan" "$urdimbre" contour good.las -o o.geojson --interval 1 --base nan
refuses 2 "nan" "$urdimbre" contour good.las -o o.geojson --interval 1 --min-length nan
refuses 2 "nan" "$urdimbre" classify high good.las -o o.las --height nan
if built_with cairo; then
  refuses 1 "one line" "$urdimbre" render straight.txt -o o.png
  refuses 2 "nan" "$urdimbre" render good.las -o o.png --contours nan
  for interval in 1e-300 1e-320; do
    refuses 1 "too many" "$urdimbre" render good.las -o o.png --contours "$interval"
  done
fi

# what is no ordinary file is neither waited for nor read for ever
mkfifo pipe.las pipe.txt pipe.ply pipe.urd pipe.gpkg
pipes=(pipe.las pipe.txt /dev/zero /dev/full /dev/stdin)
if built_with gdal; then pipes+=(pipe.gpkg); fi
for pipe in "${pipes[@]}"; do
  refuses 1 "$pipe: is not an ordinary file" timeout 300 "$urdimbre" tin "$pipe" -o o.ply < <(cat good.las)
done
refuses 1 "pipe.ply: is not an ordinary file" timeout 300 "$urdimbre" check pipe.ply
refuses 1 "pipe.urd: is not an ordinary file" timeout 300 "$urdimbre" check pipe.urd
mkdir folder.ply
for output in folder.ply full.ply; do
  [ -e "$output" ] || ln -s /dev/full "$output"
  refuses 1 "$output: is " "$urdimbre" tin good.las -o "$output"
done
expect "the phases before an impossible name is refused" "$(grep -c '^Reading' stderr)" 0
if ! on_windows; then  # Wine shows its programs no links of this system
  echo precious >behind.ply
  ln -s behind.ply link.ply
  "$urdimbre" --quiet tin good.las -o link.ply
  [ -L link.ply ] && [ ! -L behind.ply ] || fail "a link was replaced by a file"
  expect "the file behind a link" "$(fact triangles behind.ply)" "$(fact triangles link.ply)"
fi

# an existing file survives every failure
echo precious >kept.ply
refuses 1 "cut short" "$urdimbre" tin cut.las -o kept.ply
expect "an existing output" "$(cat kept.ply)" precious

# folders and disks
refuses 1 "nowhere" "$urdimbre" --temp-dir nowhere tin good.las -o o.ply
refuses 1 "need" "$urdimbre" --temp-dir good.las tin good.las -o o.ply
refuses 1 "o.ply" "$urdimbre" tin good.las -o nowhere/o.ply
long=$PWD/$(printf 'x%.0s' {1..225})
mkdir "$long"
refuses 1 "temporary folder" "$urdimbre" --temp-dir "$long" tin good.las -o o.ply
"$urdimbre" --quiet generate bigger.las --points 50000 --seed 1
refuses 1 "temporary folder" bash -c "ulimit -f 500; exec \"$urdimbre\" tin bigger.las -o o.ply"
refuses 1 "o.obj" bash -c "ulimit -f 1500; exec \"$urdimbre\" tin bigger.las -o o.obj"
[ ! -e o.ply ] && [ ! -e o.obj ] || fail "an output was left"
pass
printf "not a cloud" >tile.laz
refuses 1 "tile.laz" "$urdimbre" tin tile.laz -o o.ply
done_with
