#!/bin/sh
# What quilp scan --write nfo writes, read by another reader. Runs in the box. Skipped without Python.
set -eu
command -v python3 >/dev/null || {
  echo "nfo_test: skipped: there is no python3"
  exit 77
}
exec python3 -W error "$(dirname "$0")/nfo_test.py"
