# The real clouds, where they are: counts that an independent program agrees on.
. "$(dirname "$0")/lib.sh"
if [ ! -d "$data" ]; then
  echo "The folder of real clouds is not there; name it in URDIMBRE_DATA. Nothing of them was tested."
  exit 77
fi

"$urdimbre" --json tin "$data/bcts_1.las" -o a.ply --border frame >a.json 2>/dev/null
expect "bcts_1 vertices" "$(fact vertices a.ply)" 531362
expect "bcts_1 triangles" "$(fact triangles a.ply)" 1062421
expect "bcts_1 duplicates" "$(number duplicates a.json)" 300
expect "bcts_1 rings" "$(fact rings a.ply)" 1
expect "bcts_1 boundary" "$(fact boundary_sides a.ply)" 301
expect "bcts_1 Delaunay" "$(fact not_delaunay a.ply)" 0
"$urdimbre" --quiet tin "$data/bcts_1.las" -o a.ply
"$urdimbre" --quiet check --whole a.ply || fail "bcts_1 does not fill its convex hull"
"$urdimbre" --quiet tin "$data/bcts_1.las" -o file.ply --order file
expect "bcts_1 in the order of the file" "$("$facts" --same a.ply file.ply)" same
rm -f ./*.ply

# what stands above the ground there: the same points whatever the threads and the order
"$urdimbre" --json --threads 1 classify high "$data/bcts_1.las" --distance 2 --height 2 --to 5 -o a.las >a.json 2>/dev/null
expect "bcts_1 points found" "$(number reclassified a.json)" 346380
cmp -l "$data/bcts_1.las" a.las >differing || true
expect "bcts_1 differing bytes" "$(wc -l <differing)" 346380
"$urdimbre" --quiet --threads 4 classify high "$data/bcts_1.las" --distance 2 --height 2 --to 5 -o b.las --order file
expect "bcts_1 classified by 4 threads in the order of the file" "$(cmp a.las b.las && echo same)" same
rm -f ./*.las

# every other cloud alone: the points, the duplicates, and a mesh without a fault
while read -r file points vertices; do
  "$urdimbre" --json tin "$data/$file" -o m.ply >m.json 2>/dev/null
  expect "$file points" "$(number points_read m.json)" "$points"
  found=$(fact vertices m.ply)
  expect "$file vertices" "$found" "$((points - $(number duplicates m.json)))"
  [ "$vertices" = - ] || expect "$file distinct points" "$found" "$vertices"
  "$urdimbre" --quiet check --whole m.ply || fail "$file does not fill its convex hull"
  expect "$file Delaunay" "$(fact not_delaunay m.ply)" 0
  expect "$file inverted" "$(fact inverted m.ply)" 0
  expect "$file Euler" "$(fact triangles m.ply)" "$((2 * found - 2 - $(fact boundary_sides m.ply)))"
done <<'END'
autzen_trim.las 110000 109993
Megaplot.las 81590 81586
Topography.las 73403 73403
sample_c.las 14408 -
4_6_crop.las 23875 -
isprs/samp11.las 38010 -
isprs/samp12.las 52119 -
isprs/samp22.las 32706 -
isprs/samp31.las 28862 -
isprs/samp53.las 34378 -
END

# two neighbouring tiles as one cloud: one surface, and no vertex lost at the seam
"$urdimbre" --json tin "$data/bcts_1.las" "$data/bcts_2.las" -o both.ply >both.json 2>/dev/null
expect "both tiles, points" "$(number points_read both.json)" $((531662 + 823945))
expect "both tiles, rings" "$(fact rings both.ply)" 1
expect "both tiles, Delaunay" "$(fact not_delaunay both.ply)" 0
live=$(number peak_live_triangles both.json)
[ $((live * 100)) -le $((3 * $(number linked_triangles both.json))) ] || fail "both tiles: $live triangles alive at once"
pass
done_with
