#!/bin/sh
# The exported symbols are the listed ones, no more and no fewer.
set -eu
export LC_ALL=C
nm -DC --defined-only "$QUILP_LIBRARY" | sed -n 's/^[0-9a-f]* [BDRTVW] \(.*\)@@LIBQUILP_1$/\1/p' |
  sort >/tmp/exported
sort "$(dirname "$0")/exports.txt" | diff - /tmp/exported
# Nothing leaves unversioned either.
! nm -D --defined-only "$QUILP_LIBRARY" | grep -v '@@LIBQUILP_1$' | grep -v ' A LIBQUILP_1$'
