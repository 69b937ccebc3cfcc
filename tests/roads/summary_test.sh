# What the program tells a person: the same figures as its summary in JSON, and a bar on a terminal.
. "$(dirname "$0")/lib.sh"

# plain FILE COMMAND...: what a person reads. told KEY FILE: a number of a JSON summary, with its thousands parted.
plain() { "$urdimbre" "${@:2}" >"$1" 2>/dev/null || fail "$*"; }
told() { number "$1" "$2" | sed -E ':a; s/^([0-9]+)([0-9]{3})/\1,\2/; ta'; }
holds() { grep -qE -- "$2" "$1" || fail "$1 lacks '$2': $(cat "$1")"; pass; }

plain generate.txt generate scan.las --points 20000 --seed 3
holds generate.txt '^scan.las: 20,000 points, a block of 50 m by 50 m in 1 strips$'
printf '0 0 1\n10 0 2\n0 10 3\n9 9 4\n' >four.xyz

plain info.txt info scan.las four.xyz
"$urdimbre" --json info four.xyz >four.json 2>/dev/null
grep -q '"format": "text"' four.json || fail "format of text: $(cat four.json)"
holds info.txt '^  format      LAS 1.4, point format 7, 36 bytes a point, 1 variable length records$'
holds info.txt '^  format      text$'
holds info.txt '^all 2 files$'
holds info.txt '^  points      20,004$'
holds info.txt '^  x           0.000 to 10.000$'
holds info.txt '^  class 0     4 never classified$'

plain tin.txt tin scan.las -o m.ply --max-side 20
"$urdimbre" --json tin scan.las -o m.ply --max-side 20 >tin.json 2>/dev/null
holds tin.txt "^m.ply: $(told triangles tin.json) triangles over $(told vertices tin.json) points, 1 ring of outline$"
holds tin.txt "^points     20,000 read, 20,000 accepted, $(told duplicates tin.json) duplicate, 0 refused$"
holds tin.txt "^rejected   0 by slope, 0 by height difference, 0 by intensity difference, $(told max_side tin.json) by longest side$"
holds tin.txt '^memory     [0-9]+ MB at most$'

plain check.txt check m.ply
holds check.txt '^m.ply: sound$'
holds check.txt "^triangles  $(told triangles tin.json) in 1 piece$"
! "$urdimbre" --json check <(true) >check.json 2>/dev/null || fail "nothing is no model"
"$urdimbre" --quiet tin scan.las -o gap.ply --class 2 --max-side 3
! "$urdimbre" --json check --whole gap.ply >gap.json 2>/dev/null || fail "gap.ply has holes"
grep -q '"kind": ' gap.json || fail "faults in JSON: $(cat gap.json)"

plain contour.txt contour scan.las -o c.geojson --interval 5
"$urdimbre" --json contour scan.las -o c.geojson --interval 5 >contour.json 2>/dev/null
holds contour.txt "^c.geojson: $(told contours contour.json) contours on $(told levels contour.json) levels from "
holds contour.txt "$(told vertices contour.json) vertices, 0 contours left out as too short$"

if built_with cairo; then
  plain render.txt render m.ply -o m.png --contours 5 --size 300x200
  holds render.txt "^m.png: [0-9]+ by [0-9]+ pixels, .* $(told triangles tin.json) triangles$"
  holds render.txt '^contours   [0-9,]+ lines$'
fi

plain classify.txt classify high scan.las -o h.las --distance 5 --height 2 --to 6
"$urdimbre" --json classify high scan.las -o h.las --distance 5 --height 2 --to 6 >classify.json 2>/dev/null
holds classify.txt "^h.las: $(told reclassified classify.json) of 20,000 points changed their class$"
holds classify.txt "^points     20,000 read, 20,000 accepted, $(told found classify.json) found$"
plain dry.txt classify high scan.las --dry-run --distance 5 --height 2 --to 6
holds dry.txt "^scan.las: $(told reclassified classify.json) of 20,000 points would change their class; nothing was written$"

# On a terminal: a bar for each phase that fits the columns, and none of it left over. A bare root has no pseudo-terminals, and a
# program for Windows has a console of its own, which is no terminal here.
command -v script >/dev/null || fail "script is not there: install bsdutils"
if on_windows || ! script -qec true /dev/null >/dev/null 2>&1; then
  echo "This system gives no pseudo-terminal: the bars on a terminal were not looked at."
  done_with
  exit
fi
bar() { script -qec "stty cols $1; $urdimbre tin scan.las -o m.ply" /dev/null | tr '\r' '\n'; }
bar 100 >wide.txt
holds wide.txt '^Linking  .*[0-9]+ %'
expect "the longest line of a bar" "$(grep ' %' wide.txt | awk 'length > 99' | wc -l)" 0
holds wide.txt '^m.ply: [0-9,]+ triangles'
bar 30 >narrow.txt
holds narrow.txt '^Linking  '
done_with
