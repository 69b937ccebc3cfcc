# Ctrl-C in each phase: exit 130, one line, no temporary file, no .part, no output.
. "$(dirname "$0")/lib.sh"

"$urdimbre" --quiet generate scan.las --points 1500000 --seed 5

for phase in Reading Ordering Filling Linking "Generating the surface"; do
  cancels "$phase" 1 o.ply "$urdimbre" tin scan.las -o o.ply
done
cancels Writing 1 o.obj "$urdimbre" tin scan.las -o o.obj

# Contours are written while the cloud is linked, all files of a format at once.
outputs=(o.geojson o.dxf)
if built_with gdal; then outputs+=(o.gpkg o.fgb o.shp); fi
for output in "${outputs[@]}"; do
  cancels Linking 1 "$output" "$urdimbre" contour scan.las --interval 1 -o "$output"
  cancels Writing 1 "$output" "$urdimbre" contour scan.las --interval 1 -o "$output"
done
expect "what contours left" "$(echo o.*)" "o.*"

# A search fills and links twice: the cloud, and what was found of it for its outline.
classify=("$urdimbre" classify high scan.las --distance 2 --height 2 -o o.las)
cp scan.las before.las
for phase in Reading Ordering Filling Linking Searching "Generating the surface"; do
  cancels "$phase" 1 o.las "${classify[@]}"
done
cancels Filling 2 o.las "${classify[@]}"
cancels Linking 2 o.las "${classify[@]}"
# A small search over a large file, so that the writing lasts.
cancels Writing 1 o.las "${classify[@]}" --bounds 449990,4479990,450010,4480010
# A proof and a picture are long work, too. A proof has no output that could be left.
"$urdimbre" --quiet tin scan.las -o model.ply
cancels Checking 1 none "$urdimbre" check model.ply
if built_with cairo; then cancels Painting 1 o.png "$urdimbre" render model.ply --contours 0.5 --size 200 -o o.png; fi
expect "the input of cancelled searches" "$(cmp before.las scan.las && echo same)" same
done_with
