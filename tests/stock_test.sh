#!/bin/bash
# The stock add-ons in the registry: addon enable, disable and list. Runs in the box.
set -u
failures=0
fail() {
  echo "$*" >&2
  failures=$((failures + 1))
}
registry=/etc/config/zorp.conf

# addon STATUS ARGUMENT...: its output in /tmp/out and /tmp/errors.
addon() {
  local wanted=$1 status=0
  shift
  "$QUILP_PROGRAM" addon "$@" >/tmp/out 2>/tmp/errors || status=$?
  [ $status -eq "$wanted" ] || fail "addon $*: status $status: $(cat /tmp/out /tmp/errors)"
}
# asked TYPE PATTERN: which section's add-on lookups ask.
asked() {
  "$QUILP_PROGRAM" addon list | grep -q "^$1  *\[*$2" || fail "$1: not $2: $("$QUILP_PROGRAM" addon list)"
}

# Without a registry.
addon 0 enable catalogue
asked Movie catalogue-movie
asked TV catalogue-tv
asked Music built-in
grep -q 'catalogue cannot answer yet: .*catalogue.db is missing' /tmp/errors || fail "$(cat /tmp/errors)"
grep -q 'courtesy of IMDb' /tmp/out || fail "enable: no attribution: $(cat /tmp/out)"
[ "$(stat -c %a "$registry")" = 644 ] || fail "the mode of a new registry"
cp "$registry" /tmp/once
addon 0 enable catalogue
cmp "$registry" /tmp/once || fail "enabled twice"
addon 0 disable catalogue
asked Movie built-in
addon 0 enable catalogue
cmp "$registry" /tmp/once || fail "disabled and enabled"


# What is wrong, in a sentence.
export QUILP_CONFIG=/tmp/quilp.conf
printf '[catalogue]\npath=/tmp/none.db\n[chain]\nMovie=catalogue\nTV=catalogue /tmp/none\nMusic=/bin/true\n' >$QUILP_CONFIG
addon 1 test catalogue chain
grep -q '^quilp: catalogue: /tmp/none.db: No such file' /tmp/errors || fail "test: $(cat /tmp/errors)"
grep -q '^quilp: chain: \[chain\] TV: /tmp/none cannot be started' /tmp/errors || fail "test: $(cat /tmp/errors)"
sed -i 's| /tmp/none$||' $QUILP_CONFIG
addon 0 test chain
grep -qx 'chain: asks catalogue true' /tmp/out || fail "test: $(cat /tmp/out)"

# A registry of others: what others wrote stays, and the new ones are asked first.
rm "$registry"*
printf '%s\n' '; mine: no end of "[" here' '[Other]' 'Type=Movie' 'Class=Kestrawind' 'Enable = TRUE ; yes' \
  'Shell=/opt/a \' '  b' '' '# [not a section]' '# above' '[ Last One ]' 'Type=Music' 'Enable=TRUE' \
  'Class=Elsewhere' >"$registry"
printf 'Shell="/opt/#2"' >>"$registry" # and no end of line
chmod 640 "$registry"
cp "$registry" /tmp/before
addon 0 enable catalogue
asked Movie catalogue-movie
asked TV catalogue-tv
grep -q '\[other\] is enabled, too' /tmp/out || fail "no word of the other one: $(cat /tmp/out)"
[ "$(stat -c %a "$registry")" = 640 ] || fail "the mode of the registry changed"
cmp /tmp/before "$registry.bak" || fail "no backup"
diff /tmp/before "$registry" | grep '^<' | grep -v '^< Shell="/opt/#2"$' && fail "lines were lost"
[ "$(ls /etc/config)" = $'zorp.conf\nzorp.conf.bak' ] || fail "left over: $(ls /etc/config)"
addon 0 disable catalogue
asked Movie other

# A section that is there already is used: its comments stay, it moves to the front.
program=$("$QUILP_PROGRAM" addon list --format json | sed -n 's/.*"program" : "\(.*\)".*/\1/p' | head -n 1)
printf '[Other]\r\nType=Movie\r\nClass=Kestrawind\r\nEnable=TRUE\r\n; about mine\r\n[Mine]\r\nType=Movie\r\nenable="no" # why\r\nShell=%s\r\n' \
  "$program" >"$registry"
addon 0 enable catalogue
asked Movie mine
[ "$(tr -d '\r' <"$registry" | head -n 7)" = "; about mine
[Mine]
Class=Kestrawind
Type=Movie
enable=TRUE # why
Shell=$program" ] || fail "the section was rewritten: $(cat "$registry")"
grep -qv $'\r$' "$registry" && fail "line ends of two kinds"

# Through a link, and to a program that is not there.
mv "$registry" /etc/config/real.conf
ln -s real.conf "$registry"
addon 0 disable catalogue
[ -L "$registry" ] && grep -q '^enable=FALSE' /etc/config/real.conf || fail "the link was replaced"

# Refused: nothing changes.
cp "$registry" /tmp/before
addon 2 enable catalog
grep -q 'did you mean "catalogue"' /tmp/errors || fail "$(cat /tmp/errors)"
addon 2 enable
# A sanitizer's program is too large for /tmp.
if [ -z "${QUILP_EMULATOR-}" ] && cp "$QUILP_PROGRAM" /tmp/quilp 2>/dev/null; then
  /tmp/quilp addon enable catalogue 2>/tmp/errors && fail "enabled what is not installed"
  grep -q 'catalogue is not installed: /libexec/quilp/catalogue' /tmp/errors || fail "$(cat /tmp/errors)"
fi
rm -f /tmp/quilp
chmod 555 /etc/config
addon 1 enable catalogue
grep -q 'cannot be changed: Permission denied; only its owner' /tmp/errors || fail "$(cat /tmp/errors)"
chmod 755 /etc/config
cmp "$registry" /tmp/before || fail "changed without permission"
printf 'no section\n' >>/etc/config/real.conf
cp /etc/config/real.conf /tmp/before
addon 1 enable catalogue
grep -q 'malformed at line' /tmp/errors || fail "$(cat /tmp/errors)"
cmp /tmp/before /etc/config/real.conf || fail "a malformed registry was changed"

# Many at a time.
rm /etc/config/*
for _ in 1 2 3 4 5 6; do
  "$QUILP_PROGRAM" addon enable catalogue >/dev/null 2>>/tmp/many &
  "$QUILP_PROGRAM" addon disable catalogue >/dev/null 2>>/tmp/many &
done
wait
addon 0 enable catalogue
asked Movie catalogue-movie
[ "$(grep -c '^\[' "$registry")" -eq 2 ] || fail "sections twice: $(cat "$registry")"

"$QUILP_PROGRAM" addon list --format json | tr -d ' \n' |
  grep -q '"enabled":true,"installed":true,.*"name":"catalogue",.*"types":\["Movie","TV"\]' ||
  fail "addon list --format json: $("$QUILP_PROGRAM" addon list --format json)"

[ "$failures" -eq 0 ]
