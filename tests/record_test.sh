#!/bin/bash
# quilp --record, --replay and drift: with a site that changes and ends, and an add-on. Runs in the box.
set -u
failures=0
conf=/etc/config/zorp.conf
kept=/tmp/kept

fail() {
  printf 'FAILED: %s\n' "$*" >&2
  failures=$((failures + 1))
}

run() {
  actual=0
  "$QUILP_PROGRAM" "$@" >/tmp/output 2>/tmp/errors || actual=$?
}

start_site() {
  python3 "${0%/*}/changing_site.py" 8444 /run/box/site.pem /run/box/site.key 2>/tmp/site-errors &
  site=$!
  for _ in $(seq 100); do
    { : >/dev/tcp/127.0.0.1/8444; } 2>/dev/null && return
    sleep 0.1
  done
  fail "no site: $(cat /tmp/site-errors)"
}

stop_site() {
  kill "$site"
  wait "$site" 2>/dev/null
}

# repeats ARGUMENT...: a recording repeats status, output and messages after $away took the sources away.
repeats() {
  run --record $kept "$@"
  before=$actual
  cmp -s /dev/null /tmp/output && [ "$before" = 0 ] && fail "$*: no output"
  mv /tmp/output /tmp/output.before
  mv /tmp/errors /tmp/errors.before
  $away
  run --replay $kept
  $back
  [ "$actual" = "$before" ] || fail "$*: status $before, repeated $actual"
  diff -a /tmp/output.before /tmp/output >&2 || fail "$*: another output"
  diff -a /tmp/errors.before /tmp/errors >&2 || fail "$*: other messages"
}

# drifts STATUS PATTERN: the pattern is one of the lines; "" stands for no lines.
drifts() {
  run drift $kept
  [ "$actual" = "$1" ] || fail "drift: status $actual instead of $1: $(cat /tmp/errors)"
  if [ -z "$2" ]; then
    [ ! -s /tmp/output ] || fail "drift: $(cat /tmp/output)"
  else
    grep -Eqx "$2" /tmp/output || fail "drift: no line $2: $(cat /tmp/output)"
  fi
}

# Pages. The bytes must survive a file of text.
sed -i 's/:8443/:8444/' /run/box/.curlrc
printf '[other]\nClass=Kestrawind\nType=Nothing\nEnable=TRUE\nShell=/x\napi_key = S3TTINGKEY\n' >$conf
start_site
away=stop_site back=start_site
printf '</body>\t\377\1\n' >/tmp/changes
repeats movie search Lighthouse -n 2
grep -aq $'^\377\001$' $kept || fail 'a page lost bytes'
grep -aqx 'HTTP/1.. 200 OK.*' $kept || fail 'no headers'
repeats tv show tt8000001 --format json
repeats tv episode tt8000001 2 10 --format table
if [ -z "${QUILP_NO_GUARD-}" ]; then
  repeats tv show tt8000001 --timeout 20
  repeats movie search everything -n 5 --timeout 20
fi
repeats music art 'Tin Harbour' -n 3
repeats music search fault503-Fog
repeats movie search faultclosed
repeats movie show 'nosuch?api_key=S3CRETKEY&access_token=S3CRETTOKEN'
[ "$(grep -ac 'nosuch.*api_key=KEY_REMOVED&access_token=KEY_REMOVED' $kept)" -ge 2 ] ||
  fail "keys or address: $(cat $kept)"
! grep -aE 'S3CRET|C00KIE|S3TTING' $kept || fail 'a recording has a key'

# What became different.
repeats movie show tt9000001
drifts 0 ''
printf '%s\n' 'plotSummary	about' '2011	2012' >/tmp/changes
drifts 1 'field outline: vanished, was ".*"'
grep -qx 'marker "class="plotSummary">": vanished' /tmp/output || fail "no marker: $(cat /tmp/output)"
grep -Eqx 'field title: .*' /tmp/output && fail 'the title is the same'
drifts 1 'field year: changed from "2011" to "2012"'
stop_site
drifts 1 "page https://akas.imdb.com/title/tt9000001/combined: HTTP 200, now no HTTP status, curl's exit status 7"
grep -Eqx 'exit status: 0, now 7' /tmp/output || fail "no exit status: $(cat /tmp/output)"
rm /tmp/changes
start_site

# An add-on.
add_on() {
  printf '#!/bin/sh\n[ -z "${QUILP_NAME-}" ] || [ "$QUILP_NAME" = A.b_2009 ] || exit 9\nfor file; do :; done\n%s\n' "$1" \
    >/etc/config/movie
  chmod +x /etc/config/movie
}
printf '[tmdb]\nkey = S3TTINGSKEY\n' >/etc/config/quilp.conf  # an add-on's document may tell it
document="echo '<movielist><!-- S3TTINGSKEY https://x/?api_key=S3CRETOFADDRESS --><movie><title><![CDATA[A]]></title><id><![CDATA[1]]></id></movie></movielist>' >\"\$file\""
printf '[movie]\nClass=Kestrawind\nType=Movie\nEnable=TRUE\nShell=/etc/config/movie\n' >$conf
away='mv /etc/config/movie /tmp/movie' back='mv /tmp/movie /etc/config/movie'
add_on "$document"
repeats movie search A.b_2009
[ "$(grep -aA1 '^variable ' $kept | tail -n 1)" = QUILP_NAME=A.b_2009 ] || fail 'no variable'
! grep -aE "S3TTINGSKEY|S3CRETOF" $kept || fail "an add-on's key was kept"
drifts 0 ''
add_on "${document/A]/B]}"
drifts 1 'field result 1 title: changed from "A" to "B"'
add_on "${document//id>/year>}"
drifts 1 'field result 1 id: vanished, was "1"'
grep -Eqx 'field result 1 year: came, is "1"' /tmp/output || fail "no year: $(cat /tmp/output)"
add_on 'exit 5'
drifts 1 'add-on /etc/config/movie searchmovie -t A b -n 10: exit status 0, now exit status 5, no document'
repeats movie search A.b_2009
away=: back=:
add_on 'kill -9 $$'
repeats movie search A.b_2009
add_on 'sleep 60'
[ -n "${QUILP_NO_GUARD-}" ] || repeats movie search A.b_2009 --timeout 1
rm /etc/config/movie
repeats movie search A.b_2009
rm $conf
add_on "$document"
repeats karaoke '/s/A[F]_Song[E][0]'
stop_site

# A damaged file is no lookup that finds nothing.
damaged() {
  run --replay /tmp/damaged
  [ "$actual" = 2 ] && grep -Eq "$1" /tmp/errors || fail "not $1: $actual $(cat /tmp/errors)"
  run drift /tmp/damaged
  [ "$actual" = 2 ] && grep -Eq "$1" /tmp/errors || fail "drift: not $1: $actual $(cat /tmp/errors)"
}
run --record $kept movie search x
for size in 40 100 $(($(wc -c <$kept) - 1)); do
  head -c "$size" $kept >/tmp/damaged
  damaged 'quilp: /tmp/damaged is damaged near byte [0-9]+$'
done
sed '2s/[0-9]*$/999999999/' $kept >/tmp/damaged
damaged 'is damaged'
sed '1s/1/2/' $kept >/tmp/damaged
damaged 'another version'
echo x >/tmp/damaged
damaged 'no recording'
rm /tmp/damaged
damaged 'cannot read /tmp/damaged'

# Usage.
for wrong in '--record' "--record $kept" "--record $kept keyword x" "--record $kept karaoke -" \
  "movie search x --record $kept" "--replay $kept --nonsense"; do
  # shellcheck disable=SC2086  # the arguments are words
  run $wrong
  [ "$actual" = 2 ] || fail "$wrong: status $actual"
done
run --record /nowhere/file movie search x
[ "$actual" = 2 ] && grep -q 'cannot write /nowhere/file' /tmp/errors || fail "/nowhere: $actual"

ls /tmp/libquilp.* 2>/dev/null && fail 'temporary files are left'
exit "$failures"
