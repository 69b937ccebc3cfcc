# What a run does to the files around it: two runs with one output, outputs that are inputs, links, pipes, permissions, and
# what a run that is killed leaves.
. "$(dirname "$0")/lib.sh"

"$urdimbre" --quiet generate scan.las --points 20000 --seed 3
"$urdimbre" --quiet generate other.las --points 6000 --seed 9
"$urdimbre" --quiet generate large.las --points 400000 --seed 5

# same A B: the same bytes
same() { cmp -s "$1" "$2" || fail "$1 and $2 differ"; pass; }

# meets OUTPUT ONE OTHER: two commands, each given an output's name, write one at the same time, again and again; what
# stands there in the end is what one of them writes alone, to the last byte of the last file.
family() { (cd "$1" && sha256sum "${2%.*}".* | sha256sum); }
meets() {
  local output=$1 one=$2 other=$3 first turn alone found
  mkdir -p alone both
  eval "$one alone/$output"
  alone=$(family alone "$output")
  rm alone/*
  eval "$other alone/$output"
  alone="$alone $(family alone "$output")"
  for turn in 1 2 3; do
    eval "$one both/$output" &
    first=$!
    eval "$other both/$output" || fail "$other $output, beside $one"
    wait "$first" || fail "$one $output, beside $other"
    found=$(family both "$output")
    case "$alone" in *"${found%% *}"*) ;; *) fail "$output is neither what $one nor what $other writes, turn $turn" ;; esac
    no_debris "$output, written twice at once"
  done
  rm -r alone both
  pass
}
tin="$urdimbre --quiet tin" contour="$urdimbre --quiet contour"
for format in ply urd xml; do
  meets "two.$format" "$tin scan.las -o" "$tin other.las -o"
done
for format in gpkg shp geojson fgb dxf; do
  meets "two.$format" "$contour scan.las --interval 2 -o" "$contour other.las --interval 1 -o"
done
meets two.png "$urdimbre --quiet render scan.las --size 200 -o" "$urdimbre --quiet render other.las --size 200 -o"
meets two.tin3d "$urdimbre --quiet tetra other.las -o" "$urdimbre --quiet tetra other.las --remove-class 3 -o"
meets two.gltf "$urdimbre --quiet surface other.las --max-side 6 -o" "$urdimbre --quiet surface other.las --max-side 4 -o"
meets two.las "$urdimbre --quiet generate --points 30000 --seed 1" "$urdimbre --quiet generate --points 9000 --seed 2"
# Six runs that keep parameters in one file of profiles keep all of them, also where that file is a link.
mkdir settings
ln -s real.ini settings/urdimbre.ini
"$urdimbre" --quiet generate few.las --points 500 --seed 3
for n in 1 2 3 4 5 6; do
  "$urdimbre" --quiet classify high few.las -o "few$n.las" --profile "n$n" --distance "$n" &
done
wait
expect "profiles" "$(grep -c 'DistanciaMax=' settings/real.ini)" 6
[ -L settings/urdimbre.ini ] || fail "the link to the profiles was replaced"
no_debris "profiles"

# An output that cannot be made is told before the work, not after it.
for verb in "tin large.las -o none/m.ply" "contour large.las --interval 1 -o none/c.gpkg" "render large.las -o none/p.png" \
  "classify high large.las -o none/o.las"; do
  # shellcheck disable=SC2086
  refuses 1 "^urdimbre: none/[a-z]*.[a-z]*: cannot be written: .*No such file" "$urdimbre" $verb
  ! grep -q '^Reading' stderr || fail "$verb: read before it was told: $(cat stderr)"
done

# What a run reads it does not write.
mkdir -p sub
for format in gpkg shp geojson dxf fgb; do
  $contour scan.las --interval 5 -o "breaks.$format"
  ln -s "breaks.$format" "link.$format"
  ln "breaks.$format" "hard.$format"
  for name in "breaks.$format" "./breaks.$format" "sub/../breaks.$format" "link.$format" "hard.$format"; do
    cp "breaks.$format" before
    refuses 1 "$name: would replace .*breaks.$format.*reads" "$urdimbre" contour scan.las "breaks.$format" --interval 2 -o "$name"
    refuses 1 "$name: would replace .*breaks.$format.*reads" \
      "$urdimbre" tin scan.las "breaks.$format" -o m.ply --outline "$name"
    same before "breaks.$format"
  done
  [ ! -e m.ply ] || fail "a model was written beside an outline that was refused"
done
cp breaks.dbf before
ln breaks.dbf x.dbf
refuses 1 "which belongs to breaks.shp" "$urdimbre" contour scan.las breaks.shp --interval 2 -o x.shp
same before breaks.dbf
"$urdimbre" --quiet tin scan.las -o base.urd
cp base.urd before
cp scan.las base.png
refuses 1 "base.png: would replace" "$urdimbre" render base.png -o base.png
refuses 1 "n.xml: would replace .*reads" bash -c "cp other.las u.las; ln u.las n.xml; exec $urdimbre tin scan.las --update u.las -o n.xml"
refuses 1 "writes too" bash -c "ln -s m.xml o.gpkg; exec $urdimbre tin scan.las -o m.xml --outline o.gpkg"
same before base.urd

# The same LAS file with new classes may be its own place, under every name.
"$urdimbre" --quiet classify high scan.las -o wanted.las --distance 5 --height 2 --to 6
for name in c.las ./c.las sub/../c.las link.las hard.las; do
  rm -f c.las link.las hard.las
  cp scan.las c.las
  ln -s c.las link.las
  ln c.las hard.las
  "$urdimbre" --quiet classify high c.las -o "$name" --distance 5 --height 2 --to 6 || fail "classify to $name"
  same wanted.las "$name"
  no_debris "classify to $name"
done
same scan.las c.las  # the last was a hard link: the other name keeps the old file

# A database with other layers is not replaced unasked.
ogr2ogr -f GPKG -nln roads town.gpkg breaks.geojson
cp town.gpkg before
refuses 1 'town.gpkg: holds the layer "roads" too.*--overwrite' "$urdimbre" contour scan.las --interval 5 -o town.gpkg
refuses 1 'town.gpkg: holds the layer "roads" too' "$urdimbre" tin scan.las -o m.ply --outline town.gpkg
same before town.gpkg
$contour scan.las --interval 5 -o town.gpkg --overwrite
$contour scan.las --interval 5 -o town.gpkg || fail "its own layer is no other one"
pass

# Links, pipes and folders where the file in the making would stand, and links as outputs.
echo precious >precious
ln -s precious p.ply.part
$tin scan.las -o base.ply
mkfifo q.ply.part
mkdir r.ply.part
for name in p q r; do
  timeout 300 "$urdimbre" --quiet tin scan.las -o "$name.ply" || fail "$name.ply"
  same base.ply "$name.ply"
done
expect "what a link pointed to" "$(cat precious)" precious
rm -r ./*.part
mkdir far
ln -s far/real.shp near.shp
$contour scan.las --interval 5 -o near.shp
expect "files beside where the link leads" "$(ls far | tr '\n' ' ')" "real.cpg real.dbf real.prj real.shp real.shx "
expect "files beside the link" "$(echo near.*)" near.shp
ln -s ring.ply ring2.ply
ln -s ring2.ply ring.ply
refuses 1 "ring.ply: .*symbolic links" "$urdimbre" tin scan.las -o ring.ply
long=$(printf 'n%.0s' $(seq 251)).ply
"$urdimbre" --quiet tin scan.las -o "$long" || fail "a name of 255 bytes"
same base.ply "$long"

# A file keeps its permissions.
for mode in 600 640 444; do
  for output in k.ply k.gpkg k.las k.png k.xml k.tin3d; do
    rm -f "$output"
    echo old >"$output"
    chmod "$mode" "$output"
    case "$output" in
      *.gpkg) $contour scan.las --interval 5 -o "$output" ;;
      *.las) "$urdimbre" --quiet classify high scan.las -o "$output" ;;
      *.tin3d) "$urdimbre" --quiet tetra other.las -o "$output" ;;
      *.png) "$urdimbre" --quiet render scan.las --size 100 -o "$output" ;;
      *) $tin scan.las -o "$output" ;;
    esac
    expect "permissions of $output" "$(stat -c %a "$output")" "$mode"
  done
done

# A run that is killed leaves nothing in the folder for temporary files, whatever it is at; and what it leaves beside its
# output goes with the next run.
for pause in 0.05 0.15 0.25 0.35 0.5 0.8; do
  for verb in "tin large.las -o killed.ply" "contour large.las --interval 1 -o killed.gpkg" \
    "classify high large.las -o killed.las --distance 2 --height 2" "surface large.las -o killed.stl --max-side 4"; do
    # shellcheck disable=SC2086
    "$urdimbre" --quiet $verb &
    run=$!
    sleep "$pause"
    kill -KILL "$run" 2>/dev/null || true
    wait "$run" 2>/dev/null || true
    expect "in the folder for temporary files" "$(ls -A tmp)" ""
  done
done
# shellcheck disable=SC2043
for verb in "tin scan.las -o killed.ply" "contour scan.las --interval 5 -o killed.gpkg" "classify high scan.las -o killed.las" \
  "surface other.las -o killed.stl --max-side 6"; do
  # shellcheck disable=SC2086
  "$urdimbre" --quiet $verb || fail "$verb, after one that was killed"
done
no_debris "runs after those that were killed"

# A quit from the keyboard is a request to end like any other.
"$urdimbre" --quiet generate huge.las --points 1500000 --seed 5
signal=QUIT cancels Linking 1 quit.ply "$urdimbre" tin huge.las -o quit.ply
done_with
