# What the road tests share. Each test script is run as: SCRIPT URDIMBRE MESH_FACTS, in a folder of its own.
set -euo pipefail
urdimbre=$1
facts=$2
tools=$(cd "$(dirname "${BASH_SOURCE[0]}")" && pwd)
data=${URDIMBRE_DATA:-$tools/../../../shared/data}
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
cd "$work"
mkdir tmp
export TMPDIR=$work/tmp
passed=0

# What depends on the system: where profiles are kept, and what a file over the allowed size is called. $URDIMBRE_WINE tells that
# the program is one for Windows under Wine, which keeps them in its user's folder and has no word of its own for such a file.
settings=$work/settings
too_large="File too large"
export XDG_CONFIG_HOME=$settings
on_windows() { [ -n "${URDIMBRE_WINE:-}" ]; }
if on_windows; then
  settings=$WINEPREFIX/drive_c/users/$(id -un)/AppData/Roaming
  too_large="Input/output error"
  rm -rf "$settings/urdimbre.ini"
fi

# built_with gdal|cairo: whether the program has that library. One without says so itself. grep -q goes at its first match, and at
# the end of a pipeline would now and then fail the program that still prints; so here and elsewhere.
built_with() {
  case $1 in
    gdal) set -- tin none.las -o none.ply --a-srs EPSG:25830 ;;
    cairo) set -- render none.ply -o none.png ;;
  esac
  ! grep -q 'built without it' < <("$urdimbre" "$@" 2>&1)
}

fail() {
  echo "FAILED: $*" >&2
  exit 1
}
pass() { passed=$((passed + 1)); }

# expect WHAT FOUND WANTED
expect() {
  [ "$2" = "$3" ] || fail "$1: found '$2', wanted '$3'"
  pass
}

# refuses CODE TEXT COMMAND...: ends with that code and one line on stderr that holds the text; leaves no temporary file, no
# .part and no output behind.
refuses() {
  local code=$1 text=$2 found=0
  shift 2
  "$@" >stdout 2>stderr || found=$?
  [ "$found" -eq "$code" ] || fail "$*: exit $found, wanted $code: $(cat stderr)"
  grep -q -- "$text" <(grep '^urdimbre: ' stderr) || fail "$*: stderr lacks '$text': $(cat stderr)"
  [ "$(grep -c '^urdimbre: ' stderr)" -eq 1 ] || fail "$*: more than one line: $(cat stderr)"
  no_debris "$*"
  pass
}

no_debris() {
  local left
  left=$(find "$work" -name '*.part' -o -path "$work/tmp/*" -type f)
  [ -z "$left" ] || fail "$1: left behind: $left"
}

# hears PATTERN: appends what the running command says to stderr, up to a line that matches. False when it ends before.
hears() {
  local line
  for (( ; ; )); do
    if IFS= read -r -t 5 line <&3; then
      printf '%s\n' "$line" >>stderr
      # shellcheck disable=SC2053
      [[ $line != $1 ]] || return 0
    elif ! kill -0 "$run" 2>/dev/null; then
      return 1
    fi
  done
}

# cancels PHASE NTH OUTPUT COMMAND...: interrupts the command as soon as it announces the phase for the NTH time; it leaves
# nothing. Another signal may be named in $signal. A run that is through before the signal reaches it shows nothing, and is tried
# again. Who waits at a pipe is woken at once, however busy the machine is; who looks again and again waits for its turn.
cancels() {
  local phase=$1 nth=$2 output=$3 found attempt run announced
  shift 3
  [ -p said ] || mkfifo said
  for attempt in {1..12}; do
    found=0
    rm -f "${output%.*}".*  # of some formats an output is several files
    : >stderr
    "$@" >/dev/null 2>said &
    run=$!
    exec 3<said
    for (( announced = 0; announced < nth; ++announced )); do hears "$phase ...*" || break; done
    kill -"${signal:-INT}" "$run" 2>/dev/null || true
    wait "$run" || found=$?
    [ "$found" -eq 0 ] || hears "urdimbre: cancelled*" || true
    exec 3<&-
    [ "$found" -ne 0 ] && break
  done
  [ "$found" -ne 0 ] || fail "$phase: $attempt runs were through before they could be interrupted: $(cat stderr)"
  expect "$phase: exit" "$found" 130
  grep -q '^urdimbre: cancelled' stderr || fail "$phase: $(cat stderr)"
  [ -z "$(find . -maxdepth 1 -name "${output%.*}.*")" ] || fail "$phase: an output was written"
  no_debris "$phase"
}

# number KEY FILE: a number of a JSON summary
number() { sed -nE "s/^ *\"$1\": ([0-9.]+),?$/\1/p" "$2"; }

# fact KEY FILE.ply: a fact of a mesh file, found by a program of its own
fact() { "$facts" "$2" | sed -n "s/^$1 //p"; }

done_with() {
  echo "$passed passed, 0 failed"
}
