#!/bin/bash
# Who follows quilp-addon(7) to the letter gets an add-on that works: its example is written down,
# and its commands are run, as the rendered page shows them. Runs in the box.
set -eu
pages=$(cd "$(dirname "$0")/../docs/man" && pwd)
mkdir /run/box/bin /run/box/new
ln -s "$QUILP_PROGRAM" /run/box/bin/quilp
PATH=/run/box/bin:$PATH
cd /run/box/new

fail() {
  printf '%s\n' "$@" >&2
  exit 1
}

for page in "$pages"/*.[1-9] "$QUILP_MANUAL"/*.3; do
  mandoc -T lint -W warning "$page"
  # The box has no macros of the site's own.
  warnings=$(groff -man -ww -K utf8 -T utf8 -z "$page" 2>&1 | grep -v "'man.local'") || true
  [ -z "$warnings" ] || fail "$warnings"
done

# Example lines as they are typed; a block ends with an empty line.
groff -man -K utf8 -T utf8 -P -cbou -rLL=130n "$pages/quilp-addon.7" >../page 2>../warnings
sed -n '/^ *#!/,/^$/s/^       //p' ../page >lamp.sh
sed -n '/^ *\$ /,/^$/{s/^       //; s/^\$ //; p}' ../page >../commands
[ "$(wc -l <lamp.sh)" -ge 20 ] && [ "$(grep -c '^[a-z]' ../commands)" -eq 5 ] ||
  fail "no example:" "$(cat lamp.sh ../commands)"
sh -eux ../commands >../output 2>&1 || fail "$(cat ../output)"
for wanted in ' 0 failed, 0 with a warning, 0 skipped' '<movie rank="1">' '<year>1999</year>' \
  '<role>Keeper</role>'; do
  grep -q "$wanted" ../output || fail "no $wanted" "$(cat ../output)"
done

# It explains every clause.
sed -n 's/.* = {"\([a-z0-9-]*\)",.*/\1/p; s/^ *{{"\([a-z0-9-]*\)",.*/\1/p' \
  "$pages"/../../tools/quilp/check/{clauses.h,hostile.cc} >../clauses
[ "$(wc -l <../clauses)" -gt 30 ] || fail "where are the clauses?"
while read -r clause; do
  grep -q "\<$clause\>" ../page || fail "not in the page: $clause"
done <../clauses
