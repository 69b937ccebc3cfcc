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

# number KEY FILE: a number of a JSON summary
number() { sed -nE "s/^ *\"$1\": ([0-9.]+),?$/\1/p" "$2"; }

# fact KEY FILE.ply: a fact of a mesh file, found by a program of its own
fact() { "$facts" "$2" | sed -n "s/^$1 //p"; }

done_with() {
  echo "$passed passed, 0 failed"
}
