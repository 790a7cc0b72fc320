#!/bin/sh
# The exported symbols are the listed ones, no more and no fewer.
set -eu
export LC_ALL=C
nm -DC --defined-only "$QUILP_LIBRARY" | sed -n 's/^[0-9a-f]* [BDRTVW] \(.*\)@@LIBQUILP_1\(\.1\)\{0,1\}$/\1/p' |
  sort >/tmp/exported
sort "$(dirname "$0")/exports.txt" | diff - /tmp/exported
# Nothing leaves unversioned either.
! nm -D --defined-only "$QUILP_LIBRARY" | grep -vE '@@LIBQUILP_1(\.1)?$' | grep -vE ' A LIBQUILP_1(\.1)?$'
