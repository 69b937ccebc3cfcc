# Surfaces, contours and outlines to the convex hull of their points: small surveys, whatever their shape.
. "$(dirname "$0")/lib.sh"

# survey COUNT SEED: a total station's points, x y z, in no order
survey() {
  awk -v n="$1" -v seed="$2" 'BEGIN { srand(seed); for (i = 0; i < n; ++i)
    printf "%.3f %.3f %.3f\n", 450000 + 200 * rand(), 4480000 + 150 * rand(), 800 + 5 * rand() }'
}

for count in 3 4 5 10 20 50 500; do
  for seed in 1 2; do
    survey "$count" "$seed" >survey.txt
    "$urdimbre" --json tin survey.txt -o whole.urd >whole.json 2>/dev/null
    "$urdimbre" --quiet check --whole whole.urd || fail "$count points, seed $seed: not whole"
    "$urdimbre" --quiet tin survey.txt -o whole.ply
    "$urdimbre" --quiet check --whole whole.ply || fail "$count points, seed $seed: not whole as PLY"
    expect "$count points: vertices" "$(fact vertices whole.ply)" "$count"
    expect "$count points: Delaunay" "$(fact not_delaunay whole.ply)" 0
    expect "$count points: Euler" "$(number triangles whole.json)" "$((2 * count - 2 - $(fact boundary_sides whole.ply)))"
    expect "$count points: rings" "$(number rings whole.json)" 1
    for threads in 1 2 4; do
      "$urdimbre" --quiet --threads "$threads" tin survey.txt -o threads.urd
      cmp whole.urd threads.urd || fail "$count points: $threads threads give other bytes"
    done
    sort -r survey.txt >other.txt
    "$urdimbre" --quiet tin other.txt -o other.urd --order file
    cmp whole.urd other.urd || fail "$count points: another order gives other bytes"
  done
done
pass

# With the frame, the rim is eaten: fewer triangles, which the check tells as dents or lost points.
survey 50 1 >survey.txt
"$urdimbre" --json tin survey.txt -o whole.ply >whole.json 2>/dev/null
"$urdimbre" --json tin survey.txt -o framed.ply --border frame >framed.json 2>/dev/null
[ "$(number hull_triangles whole.json)" -gt 0 ] || fail "nothing was completed"
expect "completed" "$(($(number triangles framed.json) + $(number hull_triangles whole.json)))" "$(number triangles whole.json)"
expect "completed with the frame" "$(number hull_triangles framed.json)" 0
"$urdimbre" --quiet check framed.ply || fail "a framed surface is sound"
found=0
"$urdimbre" --quiet check --whole framed.ply 2>stderr || found=$?
expect "check of a surface with dents" "$found" 1
grep -q "convex hull" stderr || fail "no dent: $(cat stderr)"

# Four points that lie nearly on a line: a surface, an outline and contours. With the frame there is none, and it is said why.
printf '0 0 0.5\n3000 200 10\n10000 0 20\n6000 -250 30\n' >kite.txt
"$urdimbre" --quiet tin kite.txt -o kite.ply --outline kite.geojson
"$urdimbre" --quiet check --whole kite.ply || fail "the kite is not whole"
expect "triangles of the kite" "$(fact triangles kite.ply)" 2
expect "corners of its outline" "$(grep -o '\[ *[0-9.-]*, *[0-9.-]* *\(, *[0-9.-]* *\)\?\]' kite.geojson | sort -u | wc -l)" 4
refuses 1 "without --border frame" "$urdimbre" tin kite.txt -o none.ply --border frame
"$urdimbre" --json contour kite.txt -o contours.geojson --interval 1 >kite.json 2>/dev/null
expect "levels of the kite" "$(number levels kite.json)" 29
refuses 1 "" "$urdimbre" contour kite.txt -o none.geojson --interval 1 --border frame
printf '0 0 0\n1000 100 1\n3000 300 2\n2000 200 9\n' >line.txt
refuses 1 "all points lie on one line in plan; there is no surface" "$urdimbre" tin line.txt -o none.ply

# A grid keeps the points of its border, and has no flat triangle there.
awk 'BEGIN { for (x = 0; x < 30; ++x) for (y = 0; y < 20; ++y) print 10 * x, 10 * y, (x * y) % 7 }' >grid.txt
"$urdimbre" --quiet tin grid.txt -o grid.ply
"$urdimbre" --quiet check --whole grid.ply || fail "the grid is not whole"
expect "sides of its border" "$(fact boundary_sides grid.ply)" 96
expect "flat triangles" "$(fact flat grid.ply)" 0
expect "triangles of the grid" "$(fact triangles grid.ply)" 1102

# Filters come after: with a longest side, what is left and what is rejected are the whole.
"$urdimbre" --json tin survey.txt -o short.ply --max-side 40 >short.json 2>/dev/null
expect "what is left and what is rejected" \
  "$(($(number triangles short.json) + $(number max_side short.json)))" "$(number triangles whole.json)"
done_with
