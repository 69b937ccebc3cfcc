#!/usr/bin/env bash
# Runs a test program and shows, where it fails, what its failed tests printed, and how to run each of them alone.
set -uo pipefail
log=$(mktemp)
trap 'rm -f "$log"' EXIT

"$1" >"$log" 2>&1
code=$?
if [ $code -ne 0 ]; then
  # The lines of a test are held until it is known to have passed. One that ends the program never comes to that.
  awk '/^\[ RUN / { held = ""; holds = 1 }
       { if (holds) held = held $0 "\n"; else print }
       /^\[       OK \]/ { held = ""; holds = 0 }
       /^\[  FAILED  \]/ && holds { printf "%s", held; held = ""; holds = 0 }
       END { printf "%s", held }' "$log"
  echo "One test alone: $1 --gtest_filter=NAME"
fi
exit $code
