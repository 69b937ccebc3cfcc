#!/usr/bin/env bash
# The program for Windows writes what that for Linux writes, to the byte.
#   tests/windows/same_bytes_test.sh WINDOWS_PROGRAM LINUX_PROGRAM [CLOUDS]
# Three real clouds without a reference system, which the program for Windows leaves out; generated ones where those are not at hand.
set -euo pipefail
windows=$(realpath "$1")
linux=$(realpath "$2")
data=${URDIMBRE_DATA:-$(dirname "$0")/../../../shared/data}
[ ! -d "$data" ] || data=$(realpath "$data")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"

clouds=("$data/sample_c.las" "$data/bcts_1.las" "$data/isprs/samp11.las")
for cloud in "${clouds[@]}"; do
  [ -f "$cloud" ] || { echo "The real clouds are not at hand in $data: generated ones stand in."; clouds=(); break; }
done
if [ ${#clouds[@]} -eq 0 ]; then
  for seed in 3 4 5; do
    "$linux" --quiet generate "cloud$seed.las" --points 60000 --seed "$seed"
    clouds+=("cloud$seed.las")
  done
fi

clouds=("${clouds[@]:0:${3:-3}}")  # so many of them

compared=0
# same OUTPUT COMMAND...: both write the file, which takes the place of OUT.
same() {
  local output=$1 program
  shift
  for program in windows linux; do
    mkdir -p $program
    "${!program}" --quiet "${@/#OUT/$program/$output}" 2>errors || { cat errors >&2; echo "FAILED: $program: $*"; exit 1; }
  done
  [ -s "linux/$output" ] || { echo "FAILED: $output: nothing was written"; exit 1; }
  cmp "windows/$output" "linux/$output" || { echo "FAILED: $output differs: $*"; exit 1; }
  compared=$((compared + 1))
  rm -r windows linux
}

for cloud in "${clouds[@]}"; do
  for format in ply urd obj 2dm xml; do same "model.$format" tin "$cloud" -o OUT --max-side 50; done
  same threads.ply tin "$cloud" -o OUT --threads 3
  same contours.geojson contour "$cloud" -o OUT --interval 2
  same ground.las classify ground "$cloud" -o OUT
  same high.laz classify high "$cloud" -o OUT --distance 5 --height 2 --to 6
  same aerial.las classify aerial "$cloud" -o OUT
done
# Meshes in space: of the smaller ones, as they take longer.
same space.tin3d tetra "${clouds[0]}" -o OUT
same space.vtu tetra "${clouds[-1]}" -o OUT
"$linux" --quiet tin "${clouds[-1]}" -o base.urd
same updated.ply tin base.urd --update "${clouds[-1]}" -o OUT --tolerance 0.3
same cloud.las generate OUT --points 50000 --seed 8
same cloud.laz generate OUT --points 50000 --seed 8
same surface.stl surface "${clouds[0]}" -o OUT --max-side 4
echo "$compared files are the same to the byte."
