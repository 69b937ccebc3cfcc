# What the program says to a word that it does not know, an option that says nothing, and a device that takes nothing.
. "$(dirname "$0")/lib.sh"

"$urdimbre" --quiet generate good.las --points 2000 --seed 1

# A subcommand that there is not: named, with the nearest one.
refuses 2 'there is no subcommand "tinn": did you mean "tin"?' "$urdimbre" tinn good.las -o x.ply
refuses 2 'there is no subcommand "contuor": did you mean "contour"?' "$urdimbre" --threads 2 contuor good.las
refuses 2 'there is no subcommand "hgih": did you mean "high"?' "$urdimbre" classify hgih good.las
refuses 2 'there is no subcommand "good.las": there are tin, ' "$urdimbre" good.las -o x.ply
refuses 2 "subcommand is required" "$urdimbre"

# Every option that wants a text wants one that is there.
for option in --class --exclude-class --a-srs --bounds --z --slope --update --outline --order --columns --code --height-difference; do
  refuses 2 "$option" "$urdimbre" tin good.las -o x.ply "$option" ""
done
refuses 2 "output" "$urdimbre" tin good.las -o ""
refuses 2 "temp-dir" "$urdimbre" --temp-dir "" tin good.las -o x.ply
refuses 2 "empty" "$urdimbre" info ""

# Limits that nothing can have.
refuses 2 "give numbers from 0 to 90" "$urdimbre" tin good.las -o x.ply --slope -1:60
refuses 2 "give numbers from 0 to 90" "$urdimbre" tin good.las -o x.ply --slope 0:91
refuses 2 "give numbers from 0" "$urdimbre" tin good.las -o x.ply --height-difference -3:5
"$urdimbre" --json --quiet tin good.las -o x.ply --slope :60 >slope.json
"$urdimbre" --json --quiet tin good.las -o x.ply --slope 0:60 >zero.json
expect "a slope without a least one" "$(number triangles slope.json)" "$(number triangles zero.json)"

# Extensions may be written in capitals, whatever is written.
for output in e.PLY e.OBJ e.2DM e.XML e.URD; do
  "$urdimbre" --quiet tin good.las -o "$output"
  [ -s "$output" ] || fail "no $output"
  pass
done
if built_with cairo; then "$urdimbre" --quiet render good.las -o e.PNG; fi
if built_with gdal; then "$urdimbre" --quiet contour good.las --interval 1 -o e.GPKG; fi
"$urdimbre" --quiet contour good.las --interval 1 -o e.GEOJSON
"$urdimbre" --quiet classify high good.las --distance 5 --height 2 --to 6 -o e.LAS
"$urdimbre" --quiet tin e.URD -o again.ply

# A device that is full fails what is printed, be it help.
if [ -c /dev/full ]; then
  for what in "--help" "--version" "tin --help" "--json info good.las"; do
    found=0
    # shellcheck disable=SC2086
    "$urdimbre" $what >/dev/full 2>errors || found=$?
    expect "$what to a full device" "$found" 1
    grep -q 'standard output' errors || fail "$what to a full device says: $(cat errors)"
  done
fi

# Names that are no UTF-8 leave the JSON sound. On Windows no file has such a name.
if ! on_windows; then
  name=$(printf 'gr\374n.txt')
  printf '0 0 1\n90 0 2\n0 90 3\n91 92 3\n' >"$name"
  "$urdimbre" --json info "$name" >name.json 2>/dev/null || fail "a name that is no UTF-8 ends info"
  iconv -f UTF-8 -t UTF-8 name.json >/dev/null || fail "the JSON is no UTF-8"
  "$urdimbre" --json tin "$name" -o t.ply >name.json 2>/dev/null || fail "a name that is no UTF-8 ends tin"
  iconv -f UTF-8 -t UTF-8 name.json >/dev/null || fail "the JSON is no UTF-8"
  pass
fi
done_with
