#!/usr/bin/env bash
# What goes wrong on Windows, seen through the program: Ctrl-C, files that others hold, disks that are full or may only be read,
# long paths, names in any script.
#   tests/windows/faults_test.sh PROGRAM HOLD_FILE
. "$(dirname "$0")/../roads/lib.sh"
hold_file=$2

"$urdimbre" --quiet generate scan.las --points 600000 --seed 5
"$urdimbre" --quiet generate few.las --points 2000 --seed 3
"$urdimbre" --quiet tin few.las -o wanted.ply

# same A B: the same bytes
same() { cmp "$1" "$2" || fail "$1 and $2 differ"; pass; }

# Ctrl-C ends a run in any phase with 130, and leaves what stood there.
for phase in Reading Filling Linking; do
  cancels "$phase" 1 o.ply "$urdimbre" tin scan.las -o o.ply
done
cancels Linking 1 o.geojson "$urdimbre" contour scan.las --interval 1 -o o.geojson
cancels Linking 1 o.tin3d "$urdimbre" tetra scan.las -o o.tin3d
cancels Searching 1 o.las "$urdimbre" classify high scan.las --distance 2 --height 2 -o o.las

# A file that another program holds is told to be held: as input, and as what a new one would replace.
held() {
  coproc HOLD { "$hold_file" "$1"; }
  read -r word <&"${HOLD[0]}"
  expect "$1" "${word%$'\r'}" held
}
let_go() {
  local holder=$HOLD_PID
  echo >&"${HOLD[1]}"
  wait "$holder" || fail "hold_file: $?"
}
held few.las
refuses 1 "few.las: cannot be opened: another program has the file open" "$urdimbre" tin few.las -o o.ply
let_go
cp wanted.ply o.ply
held o.ply
close="another program has the file open: close the program that holds it, or give another name"
refuses 1 "o.ply: $close" "$urdimbre" tin few.las -o o.ply
refuses 1 "o.ply: $close" "$urdimbre" tin few.las -o o.ply --max-side 50
same o.ply wanted.ply
let_go
"$urdimbre" --quiet tetra few.las -o o.tin3d
held o.tin3d
refuses 1 "o.tin3d: .*$close" "$urdimbre" tetra few.las -o o.tin3d
let_go
cp few.las in.las
held in.las
refuses 1 "in.las.*another program has the file open" "$urdimbre" classify ground in.las -o in.las
let_go
same in.las few.las
"$urdimbre" --quiet tin few.las -o o.ply
"$urdimbre" --quiet classify ground in.las -o in.las
pass

# Nothing is made on a disk that may only be read, or that is full: small ones of memory. The first stands for folders of somebody
# else, too, which root may write in.
mkdir disk
if mount -t tmpfs -o size=1m tmpfs disk 2>/dev/null; then
  trap 'umount "$work/disk"; rm -rf "$work"' EXIT
  cp few.las disk
  refuses 1 "disk/o.ply.*[Nn]o space left on device" "$urdimbre" tin scan.las -o disk/o.ply
  refuses 1 "disk/o.obj.*[Nn]o space left on device" "$urdimbre" tin scan.las -o disk/o.obj
  refuses 1 "disk/o.geojson.*[Nn]o space left on device" "$urdimbre" contour scan.las --interval 1 -o disk/o.geojson
  refuses 1 "disk/o.las.*[Nn]o space left on device" "$urdimbre" classify ground scan.las -o disk/o.las
  refuses 1 "temporary folder .*disk.*[Mm]B" "$urdimbre" tin scan.las -o o.obj --temp-dir disk
  mount -o remount,ro disk
  for verb in "tin few.las -o disk/o.ply" "contour few.las --interval 1 -o disk/o.dxf" "tetra few.las -o disk/o.vtu"; do
    # shellcheck disable=SC2086
    refuses 1 "disk/o.*: cannot be written: .*write into a folder that exists and is yours" "$urdimbre" $verb
  done
  "$urdimbre" --quiet tin disk/few.las -o read.ply
  same read.ply wanted.ply
  umount disk
  trap 'rm -rf "$work"' EXIT
else
  echo "No disk can be mounted here: a full and a read-only one are not tried."
fi

# Paths of three hundred characters and names of any script lead to files as any other name does.
long=$(printf 'a folder with a long name, %03d/' 1 2 3 4 5 6 7 8 9 10)
for folder in "$long" "Ελλάδα/" "漢字/" "🏔/"; do
  mkdir -p "$folder"
  name=${folder}${folder%%/*}
  cp few.las "$name.las"
  "$urdimbre" --quiet tin "$name.las" -o "$name.ply"
  same "$name.ply" wanted.ply
  "$urdimbre" --quiet contour "$folder" --interval 2 -o "$name.geojson"
  "$urdimbre" --quiet classify ground "$name.las" -o "$name.las"
  temp=$folder
  if [ ${#folder} -gt 200 ]; then  # temporary files are named by calls whose paths have 260 characters at most
    refuses 1 "temporary folder has more than" "$urdimbre" tin "$name.las" -o "${name}2.ply" --temp-dir "$folder"
    temp=.
  fi
  "$urdimbre" --quiet tin "${folder}*.las" -o "${name}2.ply" --temp-dir "$temp"
  same "${name}2.ply" wanted.ply
  "$urdimbre" --json info "$name.las" >info.json
  grep -qF "${folder%%/*}.las" info.json || fail "the name came back otherwise: $(cat info.json)"
  refuses 1 "${folder%%/*}2.las: there is no such file" "$urdimbre" tin "${name}2.las" -o o.ply2.ply
done
expect "characters of the long one" "$((${#long} + ${#work} > 300))" 1
done_with
