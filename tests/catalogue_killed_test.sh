#!/bin/bash
# An import is killed at random moments, or finds the disk full: the catalogue before stays in use, and
# lookups meanwhile are answered by it or by the new one. Runs in the box, whose /tmp is small.
# catalogue_killed_test.sh ADD-ON GENERATOR
set -u
failures=0
kills=20
emulator=(${QUILP_EMULATOR-})
addon=("${emulator[@]}" "$1")
generate=("${emulator[@]}" "$2")
[ ${#emulator[@]} -eq 0 ] || kills=5
RANDOM=${QUILP_SEED:=$$}
export QUILP_CONFIG=/tmp/quilp.conf
printf '[catalogue]\npath=/tmp/there/catalogue.db\n' >"$QUILP_CONFIG"
mkdir /tmp/there

fail() {
  echo "$* (QUILP_SEED=$QUILP_SEED)" >&2
  failures=$((failures + 1))
}

# Its messages lie where the disk is not full.
import() {
  "$QUILP_PROGRAM" catalogue import "/tmp/$1" >/dev/null 2>"$HOME/errors"
}

# answer FILE: what the add-on says of a title that has another name in each data set.
answer() {
  rm -f "$1"
  timeout 20 "${addon[@]}" getmovieinfobyid -i tt9999999 -o "$1" 2>"$HOME/message"
}

# is N: the catalogue in use is that of data set N.
is() {
  cmp -s /tmp/there/catalogue.db "/tmp/$1.db"
}

for set in 1 2; do
  mkdir /tmp/$set
  "${generate[@]}" /tmp/$set --titles 12000 --seed $set
  printf 'tt9999999\tmovie\tSet %s\tSet\t0\t1999\t\\N\t90\t\\N\n' $set >>/tmp/$set/title.basics.tsv
  start=$(date +%s%N)
  import $set || fail "import: $(cat "$HOME/errors")"
  nanoseconds=$(($(date +%s%N) - start))
  cp /tmp/there/catalogue.db /tmp/$set.db
  answer /tmp/answer.$set || fail "lookup: $(cat "$HOME/message")"
done
cmp -s /tmp/answer.1 /tmp/answer.2 && fail "both catalogues give the same answer"

old=0
answers=0
for ((n = 0; n < kills; ++n)); do
  cp /tmp/1.db /tmp/there/catalogue.db
  "$QUILP_PROGRAM" catalogue import /tmp/2 >/dev/null 2>&1 &
  importing=$!
  end=$(($(date +%s%N) + nanoseconds / 32768 * RANDOM))
  while [ "$(date +%s%N)" -lt $end ]; do
    answer /tmp/answer || fail "no answer meanwhile: $(cat "$HOME/message")"
    cmp -s /tmp/answer /tmp/answer.1 || cmp -s /tmp/answer /tmp/answer.2 || fail "another answer"
    answers=$((answers + 1))
  done
  kill -9 $importing 2>/dev/null
  wait $importing 2>/dev/null
  if is 1; then
    old=$((old + 1))
  else
    is 2 || fail "neither the old catalogue nor the new one"
  fi
  left=$(find /tmp/there -type f ! -name catalogue.db ! -name catalogue.db.new)
  [ -z "$left" ] || fail "left: $left"
done
[ $old -gt 0 ] && [ $answers -gt $kills ] || fail "$old of $kills killed in time, $answers answers"
import 2 || fail "import after kill -9: $(cat "$HOME/errors")"
is 2 || fail "another file after kill -9"

# The disk is full at the start of the new file, in its middle, near its end.
cp /tmp/1.db /tmp/there/catalogue.db
size=$(($(stat -c %s /tmp/2.db) / 1024))
for room in 4 $((size / 2)) $((size - 16)); do
  rm -f /tmp/filler
  fallocate -l $(($(df --output=avail -k /tmp | tail -n 1) - room))k /tmp/filler
  import 2
  [ $? -eq 1 ] || fail "$room KB of room: no error"
  [ "$(wc -l <"$HOME/errors")" -eq 1 ] && grep -q ' is full$\|No space left' "$HOME/errors" ||
    fail "$room KB of room: $(cat "$HOME/errors")"
  [ "$(ls -A /tmp/there)" = catalogue.db ] || fail "$room KB of room: $(ls -A /tmp/there)"
  is 1 || fail "$room KB of room: the old catalogue is gone"
done
rm /tmp/filler
import 2 || fail "import after a full disk: $(cat "$HOME/errors")"

[ "$failures" -eq 0 ]
