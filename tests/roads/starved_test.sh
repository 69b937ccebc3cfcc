# Memory that gives out on the way, and standard streams that refuse what is written: one line that says so, exit 1, and
# nothing left behind or lost.
. "$(dirname "$0")/lib.sh"

"$urdimbre" --quiet generate scan.las --points 60000 --seed 3
"$urdimbre" --quiet generate small.las --points 500 --seed 3
"$urdimbre" --quiet tin scan.las -o model.ply

# The least address space in which the program can be loaded, in KB, and a little more: how libraries lie differs from run to run.
least=20000
until (ulimit -v "$least" && exec "$urdimbre" --version) >/dev/null 2>&1; do least=$((least + 10000)); done
least=$((least + 2000))

# starves STEP OUTPUT COMMAND...: the command with more address space each time, by STEP KB, until it is enough
starves() {
  local step=$1 output=$2 limit=$least found failed=0
  shift 2
  for (( ; ; limit += step)); do
    found=0
    echo precious >"$output"
    (ulimit -v "$limit" && exec "$@") >stdout 2>stderr || found=$?
    no_debris "$* within $limit KB"
    [ "$found" -eq 0 ] && break
    expect "$* within $limit KB: $(cat stderr)" "$found" 1
    expect "lines on stderr of $* within $limit KB: $(cat stderr)" "$(grep -c '^urdimbre: .*\(memory\|Memory\)' stderr)" 1
    expect "$output before $* was done" "$(cat "$output")" precious
    failed=$((failed + 1))
  done
  [ "$failed" -gt 0 ] || fail "$*: never short of memory"
  ! grep -qx precious "$output" || fail "$*: nothing was written"
  echo "$*: $failed runs out of memory"
}

starves 6000 o.ply "$urdimbre" --quiet --threads 4 tin scan.las -o o.ply
starves 6000 o.urd "$urdimbre" --quiet tin scan.las -o o.urd
starves 6000 o.las "$urdimbre" --quiet classify high scan.las -o o.las
starves 6000 o.png "$urdimbre" --quiet render model.ply -o o.png

# cramped STEP OUTPUT COMMAND...: the command with larger files allowed each time, by STEP KB, until they are large enough
cramped() {
  local step=$1 output=$2 limit=0 found failed=0
  shift 2
  for (( ; ; limit += step)); do
    found=0
    echo precious >"$output"
    (ulimit -f "$limit" && exec "$@") 2>&1 >/dev/null | cat >stderr || found=${PIPESTATUS[0]}
    no_debris "$* with files of $limit KB"
    [ "$found" -eq 0 ] && break
    expect "$* with files of $limit KB: $(cat stderr)" "$found" 1
    expect "lines on stderr of $* with files of $limit KB: $(cat stderr)" "$(grep -c '^urdimbre: ' stderr)" 1
    expect "$output before $* was done" "$(cat "$output")" precious
    failed=$((failed + 1))
  done
  [ "$failed" -gt 0 ] || fail "$*: never short of room"
  ! grep -qx precious "$output" || fail "$*: nothing was written"
  echo "$*: $failed refusals of the disk"
}

for format in ply obj 2dm xml urd; do
  cramped 1000 "o.$format" "$urdimbre" --quiet tin scan.las -o "o.$format"
done
for format in gpkg geojson fgb dxf; do
  cramped 100 "c.$format" "$urdimbre" --quiet contour scan.las --class 2,9 --interval 1 -o "c.$format"
done
cramped 40 outline.gpkg "$urdimbre" --quiet tin small.las -o s.ply --outline outline.gpkg
cramped 400 o.las "$urdimbre" --quiet classify high scan.las -o o.las
cramped 300 o.png "$urdimbre" --quiet render model.ply -o o.png

# A summary that nobody gets is a failure, and progress that nobody sees is none.
refuses 1 "standard output" bash -c "exec \"$urdimbre\" --json tin scan.las -o full.ply >/dev/full"
"$urdimbre" tin scan.las -o blind.ply >/dev/null 2>/dev/full || fail "a full stderr ends the run"
"$urdimbre" --quiet check --whole blind.ply
pass
"$urdimbre" --quiet tin scan.las -o closed.ply >&- 2>&- || fail "closed streams end a quiet run"
cmp model.ply closed.ply || fail "other bytes with closed streams"
pass
found=0
"$urdimbre" tin missing.las -o x.ply 2>/dev/full || found=$?
expect "the code of a failure that cannot be told" "$found" 1
done_with
