# An update adds what fits and loses nothing of its base, whatever filters there are and whatever kind of file the base is.
. "$(dirname "$0")/lib.sh"

"$urdimbre" --quiet generate scan.las --points 60000 --seed 3
"$urdimbre" --json info scan.las >info.json
read -r x y < <(tr -d '\n' <info.json | sed -E 's/.*"min": \[ *([0-9.]+), *([0-9.]+),.*/\1 \2/'; echo)

# at EAST NORTH Z: a line of text that far from the corner, of class 2
at() { awk -v x="$x" -v y="$y" -v e="$1" -v n="$2" -v z="$3" 'BEGIN { printf "%.3f %.3f %s 0 2\n", x + e, y + n, z }'; }
at 40.001 40.002 -500 >low.txt
at 41.001 42.002 9000 >high.txt
cat low.txt high.txt >both.txt

# tin OUTPUT ARGS...: its summary in OUTPUT.json
tin() {
  local output=$1
  shift
  "$urdimbre" --json tin "$@" -o "$output" >"$output.json" 2>errors || fail "tin $*: $(cat errors)"
}

for filter in "" "--class 2" "--exclude-class 3-6" "--class 2 --z -1000:5000" "--class 2 --max-side 3" \
  "--class 2 --slope 0:45" "--class 2 --height-difference :2" "--class 2 --order file"; do
  # shellcheck disable=SC2086
  tin base.ply scan.las --precision 3 $filter
  # shellcheck disable=SC2086
  tin up.ply scan.las --precision 3 $filter --update both.txt --tolerance 0.3
  inside=1
  refused=1
  case $filter in *--z*) refused=0 ;; esac
  expect "$filter: vertices" "$(number vertices up.ply.json)" "$(($(number vertices base.ply.json) + inside))"
  expect "$filter: accepted" "$(number points_accepted up.ply.json)" \
    "$(($(number points_accepted base.ply.json) + inside + refused))"
  expect "$filter: refused" "$(number refused up.ply.json)" "$refused"
  expect "$filter: duplicates" "$(number duplicates up.ply.json)" "$(number duplicates base.ply.json)"
  expect "$filter: added" "$(number added up.ply.json)" "$inside"
done
no_debris "updates"

# By itself it changes nothing: every point is a duplicate, whatever the tolerance.
tin ground.ply scan.las --class 2
tin again.ply scan.las --class 2 --update scan.las --tolerance 0.001
expect "an update by its own base" "$("$facts" --same ground.ply again.ply)" same
tin ground.obj scan.las --class 2
tin again.obj scan.las --class 2 --update scan.las --tolerance 0.001
cmp ground.obj again.obj || fail "an update by its own base changes the model"
expect "duplicates" "$(number duplicates again.ply.json)" \
  "$(($(number duplicates ground.ply.json) + $(number points_accepted ground.ply.json)))"
expect "refused" "$(number refused again.ply.json)" 0

# A native model is a base like any other, and an update of it comes out as one of what it was made of.
tin ground.urd scan.las --class 2 --precision 3
tin from_model.ply ground.urd --update both.txt --tolerance 0.3
tin from_cloud.ply scan.las --class 2 --precision 3 --update both.txt --tolerance 0.3
expect "an update of a native model" "$("$facts" --same from_model.ply from_cloud.ply)" same
tin remade.ply ground.urd
tin whole.ply scan.las --class 2 --precision 3
expect "the points of a native model" "$("$facts" --same remade.ply whole.ply)" same
tin chained.urd ground.urd --update low.txt
tin twice.urd chained.urd --update high.txt
expect "a native model updated twice" "$(number vertices twice.urd.json)" \
  "$(($(number vertices ground.urd.json) + 2))"
head -c 3000 ground.urd >cut.urd
refuses 1 "cut.urd: the terrain model is cut short" "$urdimbre" tin cut.urd --update both.txt -o x.ply

# Nothing of an update that the filters keep out is a riddle.
awk '{ print $1, $2, $3 }' low.txt >plain.txt
tin none.ply scan.las --class 2 --update plain.txt
expect "added" "$(number added none.ply.json)" 0
grep -q "plain.txt: none of its 1 points passes the filters" errors || fail "no word of a useless update: $(cat errors)"
pass

# What real ground lost: all first points of cells that stood above the first few.
if [ -f "$data/Topography.las" ]; then
  echo "273500.0001 5274500.0002 700 0 2" >fits.txt
  tin real.ply "$data/Topography.las" --class 2 --update fits.txt --tolerance 0.3
  expect "vertices of real ground" "$(number vertices real.ply.json)" 8160
  expect "accepted of real ground" "$(number points_accepted real.ply.json)" 8160
fi
done_with
