#!/usr/bin/env bash
# Runs a program for Windows under Wine, as if it were one of this system: wine.sh PROGRAM.exe [ARGUMENTS]
# Ctrl-C and SIGINT reach it as the console's Ctrl-C. WINEPREFIX names the world that it lives in.
set -euo pipefail
export LC_ALL=C.UTF-8 WINEDEBUG=-all WINEARCH=win64 WINEDLLOVERRIDES="mscoree,mshtml="
if [ -n "${TMPDIR:-}" ]; then  # the program's folder for temporary files; Wine keeps files of its own in TMPDIR
  export TMP="Z:${TMPDIR//\//\\}"
  export TEMP=$TMP
  unset TMPDIR
fi
trap '' XFSZ  # a file over the allowed size is a failed write, not the end of Wine
wine=$(command -v wine64 || echo /usr/lib/wine/wine64)
exec "$wine" "$@"
