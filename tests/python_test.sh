#!/bin/sh
# The Python binding and its example. Skipped without Python.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
command -v python3 >/dev/null || {
  echo "python_test: there is no python3"
  exit 77
}
mkdir /tmp/lib
ln -s "$QUILP_LIBRARY" /tmp/lib/libquilp.so.1
export LD_LIBRARY_PATH=/tmp/lib PYTHONPATH="$top/bindings/python" PYTHONDONTWRITEBYTECODE=1
"$top/tests/lookup_example_test.sh" python3 "$top/examples/lookup.py"
python3 -W error "$top/tests/python_test.py"
