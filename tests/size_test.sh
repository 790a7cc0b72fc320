#!/bin/sh
# The library is small enough for an appliance, and loading it runs nothing: size_test LIBRARY STRIP
# BYTES_OF_A_POINTER. The limit is for 32 bits; twice as long words make it half as large again.
set -eu
stripped=$(mktemp)
trap 'rm -f "$stripped"' EXIT
"$2" -o "$stripped" "$1"
size=$(wc -c <"$stripped")
echo "$size bytes without symbols"
[ "$size" -le $((200000 * (4 + $3) / 8)) ]

# One entry is the compiler's own; a static constructor would be another one.
entries=$(readelf -SW "$1" | sed -n 's/.*\.init_array *INIT_ARRAY *[^ ]* *[^ ]* *\([^ ]*\).*/\1/p')
[ "$((0x$entries))" -eq "$3" ]
