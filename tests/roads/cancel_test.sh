# Ctrl-C in each phase: exit 130, one line, no temporary file, no .part, no output.
. "$(dirname "$0")/lib.sh"

"$urdimbre" --quiet generate scan.las --points 1500000 --seed 5

# cancels PHASE OUTPUT: interrupts the run as soon as it announces the phase
cancels() {
  local phase=$1 output=$2 found=0
  rm -f stderr
  : >stderr
  "$urdimbre" tin scan.las -o "$output" >/dev/null 2>stderr &
  local run=$!
  until grep -q "^$phase" stderr; do
    kill -0 "$run" 2>/dev/null || fail "$phase: the run ended before: $(cat stderr)"
  done
  kill -INT "$run" 2>/dev/null || fail "$phase: the run ended before it could be interrupted"
  wait "$run" || found=$?
  expect "$phase: exit" "$found" 130
  grep -q '^urdimbre: cancelled' stderr || fail "$phase: $(cat stderr)"
  [ ! -e "$output" ] || fail "$phase: an output was written"
  no_debris "$phase"
}

for phase in Reading Ordering Filling Linking "Generating the surface"; do cancels "$phase" o.ply; done
cancels Writing o.obj
done_with
