#!/bin/bash
# quilp doctor: what it finds on appliances that lack one thing or another. Runs in the box:
# doctor_test.sh CATALOGUE_DATA
set -u
failures=0
fail() {
  echo "$*" >&2
  failures=$((failures + 1))
}
quilp=$QUILP_PROGRAM data=$1
export QUILP_CONFIG=/tmp/quilp.conf

# doctor STATUS ROW...: the exit status, and rows that are printed: "SUBJECT STATE PATTERN".
doctor() {
  local wanted=$1 status=0 row subject state
  shift
  "$quilp" doctor >/tmp/out 2>/tmp/errors || status=$?
  [ $status -eq "$wanted" ] || fail "status $status, not $wanted"
  for row; do
    read -r subject state row <<<"$row"
    grep -qE "^$subject +$state +.*$row" /tmp/out || fail "no $subject $state $row: $(cat /tmp/out /tmp/errors)"
  done
}

doctor 0 'registry warning missing.*addon enable' 'Movie warning built-in.*addon enable catalogue' \
  'KTV ok ' 'settings ok not there' 'cache warning No such file' 'curl ok curl ' 'documents ok /tmp$'

mkdir -p /tmp/cache /tmp/data
printf '[cache]\npath=/tmp/cache/http.db\n[catalogue]\npath=/tmp/catalogue.db\n[tmdb]\nkey_file=/tmp/key\n[tmbd]\nkey=x\n[chain]\nmovies=tmdb\nTV=tmdb\n' \
  >"$QUILP_CONFIG"
"$quilp" addon enable catalogue tmdb musicbrainz >/dev/null 2>&1
doctor 1 'registry ok zorp.conf' 'Movie ok \[catalogue-movie\]' 'cache ok /tmp/cache$' \
  'settings warning nothing reads \[tmbd\]' 'settings warning every user.*\[tmbd\]' 'settings warning nothing reads movies= of \[chain\]' \
  'catalogue fault .*import' 'tmdb fault .*/tmp/key cannot be read'
"$quilp" doctor --format json | grep -q '"state" : "fault"' || fail "no fault in JSON"

! grep -q 'tv=\|path=' /tmp/out || fail "a key that is read: $(cat /tmp/out)"
echo secret >/tmp/key
chmod 600 "$QUILP_CONFIG"
"$data" /tmp/data --titles 500 >/dev/null
touch -d '100 days ago' /tmp/data/*
"$quilp" catalogue import /tmp/data --to /tmp/catalogue.db >/dev/null 2>&1 || fail "no catalogue"
doctor 0 'catalogue warning .*catalogue.db, .*catalogue fetch' 'settings warning every user can read /tmp/key'
chmod 600 /tmp/key
doctor 0
grep -q 'tmdb\|every user\|secret' /tmp/out && fail "too much: $(cat /tmp/out)"
mv /sbin/curl /sbin/other
"$quilp" addon disable musicbrainz >/dev/null
printf '[a]\nClass=Kestrawind\nType=Music\nEnable=TRUE\nShell=/etc/config/none\n' >>/etc/config/zorp.conf
doctor 1 'curl warning cannot be run.*install curl' 'Music fault \[a\] .*install it'
[ ! -s /tmp/errors ] || fail "errors: $(cat /tmp/errors)"
mv /sbin/other /sbin/curl
head -c 3000 /tmp/catalogue.db >/tmp/cut
cp /tmp/cut /tmp/catalogue.db
doctor 1 'catalogue fault damaged.*import'

printf '[a\n' >/etc/config/zorp.conf
printf '[a\n' >"$QUILP_CONFIG"
doctor 1 'registry fault malformed' 'settings fault cannot be read'
[ $failures -eq 0 ]
