#!/bin/bash
# Every open, read, write, sync and rename of an import fails in turn; then the disk is full.
# Runs in the box. import_test.sh LIBRARY GENERATOR
set -u
failures=0
mkdir -p /tmp/sets /tmp/fault
"$2" /tmp/sets --titles 60
gzip /tmp/sets/title.akas.tsv

fail() {
  echo "$*" >&2
  failures=$((failures + 1))
}

import() {
  "$QUILP_PROGRAM" catalogue import "$1" --to /tmp/fault/catalogue.db >/tmp/out 2>/tmp/errors
}

# stayed WHAT: the catalogue is the one before, and alone.
stayed() {
  [ "$(ls -A /tmp/fault)" = catalogue.db ] || fail "$1: $(ls -A /tmp/fault)"
  cmp -s /tmp/fault/catalogue.db /tmp/old.db || fail "$1: the old catalogue is gone"
  [ "$(wc -l </tmp/errors)" -eq 1 ] || fail "$1: $(cat /tmp/errors)"
}

import /tmp/sets || fail "import: $(cat /tmp/errors)"
mv /tmp/fault/catalogue.db /tmp/new.db
cp -r /tmp/sets /tmp/fault/sets
"$2" /tmp/sets --titles 30 --seed 2
rm /tmp/sets/title.akas.tsv.gz
import /tmp/sets
mv /tmp/fault/sets /tmp/more
cp /tmp/fault/catalogue.db /tmp/old.db
cmp -s /tmp/old.db /tmp/new.db && fail "both catalogues are the same"

seen=
for ((n = 1; n < 5000; ++n)); do
  rm -f /tmp/reached
  # The data sets are below the folder, too, so that reading them fails.
  mv /tmp/more /tmp/fault/sets
  QUILP_FAULT=$n QUILP_FAULT_REACHED=/tmp/reached LD_PRELOAD=$1 import /tmp/fault/sets
  status=$?
  mv /tmp/fault/sets /tmp/more
  [ -e /tmp/reached ] || break
  call=$(cat /tmp/reached)
  seen+=" $call"
  [ $status -eq 1 ] || fail "call $n, $call: status $status"
  if cmp -s /tmp/fault/catalogue.db /tmp/new.db; then
    # Only the folder's sync comes after the rename.
    [ "$call" = open ] || [ "$call" = fsync ] || fail "call $n, $call: the catalogue was replaced"
    cp /tmp/old.db /tmp/fault/catalogue.db
  fi
  stayed "call $n, $call"
done
for call in open read pwrite fsync rename ftruncate; do
  [[ $seen == *" $call"* ]] || fail "no $call failed"
done
[ $status -eq 0 ] || fail "the last import: $(cat /tmp/errors)"
cmp -s /tmp/fault/catalogue.db /tmp/new.db || fail "the last import made another file"

# A disk that is full shows the same way as a limit on the size of files.
cp /tmp/old.db /tmp/fault/catalogue.db
for blocks in 1 30 60; do
  (trap '' XFSZ && ulimit -f $blocks && import /tmp/more)
  [ $? -eq 1 ] || fail "$blocks blocks: status"
  stayed "$blocks blocks"
done

[ "$failures" -eq 0 ]
