# Clouds of a few units: the program finds them room, or says why it cannot.
. "$(dirname "$0")/lib.sh"

for y in 0 1 2 3 4; do for x in 0 1 2 3 4; do echo "$x $y $((x * y))"; done; done >grid.txt
"$urdimbre" --json tin grid.txt -o grid.ply >grid.json 2>/dev/null
expect "vertices of a grid of whole metres" "$(number vertices grid.json)" 25
expect "duplicates" "$(number duplicates grid.json)" 0
expect "inverted triangles" "$(fact inverted grid.ply)" 0
"$urdimbre" --json info grid.txt >info.json
expect "duplicates of info" "$(grep -c '"duplicates": 0' info.json)" 2

# Every width from 1 to 12, whole and in tenths, far from the origin too.
for width in 1 2 3 4 5 6 7 8 9 10 11 12; do
  for origin in 0 4480000; do
    for unit in 1 0.1; do
      awk -v w="$width" -v o="$origin" -v u="$unit" 'BEGIN {
        for (y = 0; y <= w; ++y) for (x = 0; x <= w; ++x) printf "%.10g %.10g %d\n", o + x * u, o + y * u, x + y }' >g.txt
      "$urdimbre" --json tin g.txt -o g.ply >g.json 2>/dev/null || fail "a grid $width wide was refused"
      expect "$width of $unit at $origin: vertices" "$(number vertices g.json)" "$(((width + 1) * (width + 1)))"
      expect "$width of $unit at $origin: duplicates" "$(number duplicates g.json)" 0
    done
  done
done

refuses 1 "within 4 by 4, which is too narrow at precision 0.*give --precision 2" "$urdimbre" tin grid.txt -o x.ply --precision 0
refuses 1 "too narrow at precision 0" "$urdimbre" contour grid.txt --interval 1 --precision 0 -o x.geojson
"$urdimbre" --quiet contour grid.txt --interval 3 -o grid.geojson

printf '5 7 1\n5 7 2\n5 7 3\n5 7 4\n' >one.txt
refuses 1 "all 4 points lie at one place in plan" "$urdimbre" tin one.txt -o x.ply
refuses 1 "all 4 points lie at one place in plan" "$urdimbre" contour one.txt --interval 1 -o x.geojson
if built_with cairo; then
  refuses 1 "too narrow at precision 0" "$urdimbre" render grid.txt --precision 0 -o x.png
  refuses 1 "all 4 points lie at one place in plan" "$urdimbre" render one.txt -o x.png
fi

# An extent that does not fit is blamed on the axes that do not.
printf '0 0 1\n9000000 5 2\n3 4 3\n' >wide.txt
refuses 1 "an extent of 9e+06 in x: --precision 2 would fit, or take a part of it with --bounds" \
  "$urdimbre" tin wide.txt -o x.ply --precision 5
if grep -q " in y\|heights" stderr; then fail "another axis is blamed: $(cat stderr)"; fi
printf '0 0 1\n5 9000000 2\n9000000 4 3\n' >both.txt
refuses 1 "in x and an extent of 9e+06 in y: " "$urdimbre" tin both.txt -o x.ply --precision 5
printf '0 0 1\n50 5 90000000\n3 40 3\n' >high.txt
refuses 1 "for heights from 1 to 9e+07: --precision 1 would fit, or mend the heights" \
  "$urdimbre" tin high.txt -o x.ply --precision 3
done_with
