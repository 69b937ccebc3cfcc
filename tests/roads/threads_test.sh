# Every output of tin has the same bytes whether one thread inserts or two do, in either order of the points.
. "$(dirname "$0")/lib.sh"

"$urdimbre" --quiet generate scan.las --points 60000 --seed 3

# The cloud is one that two threads take: along the curve, its points come from either half of the extents in turns.
"$urdimbre" --quiet --threads 1 tin scan.las -o turns.obj
turns() {
  awk -v axis="$1" '$1 == "v" { v[n++] = $axis; if (n == 1 || $axis < low) low = $axis; if (n == 1 || $axis > high) high = $axis }
    END { middle = (low + high) / 2; for (i = 1; i < n; ++i) count += (v[i] < middle) != (v[i - 1] < middle); print count + 0 }' turns.obj
}
[ "$(turns 2)" -gt 800 ] || [ "$(turns 3)" -gt 800 ] || fail "the halves are not taken in turns: $(turns 2), $(turns 3)"
pass

# outputs ORDER THREADS FOLDER: a model in every format, without an outline and with one in each that holds no time of day
outputs() {
  mkdir -p "$3"
  local made
  for made in ply: ply:geojson obj:dxf 2dm:shp xml:fgb urd:; do
    local model=${made%:*} outline=${made#*:}
    "$urdimbre" --quiet --threads "$2" tin scan.las --order "$1" -o "$3/$model$outline.$model" \
      ${outline:+--outline "$3/outline.$outline"}
  done
}
for order in hilbert file; do
  outputs "$order" 1 "$order/1"
  expect "files of the order $order" "$(find "$order/1" -type f -size +0 | wc -l)" "$(find "$order/1" -type f | wc -l)"
  for threads in 2 4; do
    outputs "$order" "$threads" "$order/$threads"
    differ=$(diff -rq "$order/1" "$order/$threads") || fail "order $order, $threads threads: $differ"
    pass
  done
done
cmp -s hilbert/1/ply.ply file/1/ply.ply && fail "the two orders are one"
no_debris "tin by two threads"
done_with
