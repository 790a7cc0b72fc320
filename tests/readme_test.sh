#!/bin/sh
# The README's program is the one that is built and run here, and its commands exist.
set -eu
top=$(dirname "$0")/..
sed -n '/^```cpp$/,/^```$/p' "$top/README.md" | sed '1d;$d' | diff - "$top/examples/search.cc"
grep -q 'tt9000001 The Paper Lighthouse' <<END
$("$@" 2>/dev/null)
END
for tool in demo test box; do
  [ -x "$top/tools/$tool" ]
done
