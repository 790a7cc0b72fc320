#!/bin/bash
# quilp catalogue fetch: terms, what is asked for, broken downloads, errors. Runs in the box, beside the
# sample site. fetch_test.sh SERVER
set -u
[ -d /run/box ] || exit 77 # it replaces curl
failures=0
fail() {
  echo "$*" >&2
  failures=$((failures + 1))
}
port=8187
python3 "$1" $port /tmp/served.log &
server=$!
trap 'kill $server' EXIT
for _ in {1..100}; do
  (exec 3<>/dev/tcp/127.0.0.1/$port) 2>/dev/null && break
  sleep 0.1
done
export QUILP_CONFIG=/tmp/quilp.conf
export CURL_HOME=/none HOME=/none

# What curl is asked, word by word. The box's own curl is a link.
cat >/tmp/curl <<'END'
#!/bin/sh
printf '[%s] ' "$@" >>/tmp/asked
echo >>/tmp/asked
exec /usr/bin/curl "$@"
END
chmod +x /tmp/curl
ln -sf /tmp/curl /sbin/curl

names=(title.basics title.akas title.episode title.ratings title.crew title.principals name.basics)
mkdir -p /tmp/served
for name in "${names[@]}"; do
  { echo "$name"; head -c 200000 /dev/urandom; } | gzip >"/tmp/served/$name.tsv.gz"
  touch -d 2015-11-22 "/tmp/served/$name.tsv.gz"
done

way() { printf '[catalogue]\nbase=http://127.0.0.1:%s/sets/%s\n' $port "$1" >"$QUILP_CONFIG"; }
# fetch STATUS WAY: the server answers in that way.
fetch() {
  local status=0
  way "$2"
  : >/tmp/asked
  : >/tmp/served.log
  "$QUILP_PROGRAM" catalogue fetch /tmp/new/sets --accept-terms >/tmp/out 2>/tmp/errors || status=$?
  [ $status -eq "$1" ] || fail "fetch $2: status $status instead of $1: $(cat /tmp/out /tmp/errors)"
}
same() {
  local name
  for name in "${names[@]}"; do
    cmp "/tmp/served/$name.tsv.gz" "/tmp/new/sets/$name.tsv.gz" || fail "$name is another"
  done
  [ "$(find /tmp/new/sets -name '*.part*')" = "" ] || fail "left over: $(ls /tmp/new/sets)"
}
# served STATUS COUNT
served() { [ "$(grep -c " $1$" /tmp/served.log)" -eq "$2" ] || fail "not $2 of $1: $(cat /tmp/served.log)"; }

# Without the terms nothing is asked for.
"$QUILP_PROGRAM" catalogue fetch /tmp/new/sets >/tmp/out 2>/tmp/errors && fail "fetched without the terms"
grep -q 'courtesy of IMDb' /tmp/out && grep -q -- '--accept-terms' /tmp/errors || fail "no terms"
[ -e /tmp/new/sets ] && fail "a folder without the terms"

fetch 0 whole
same
grep -q 'courtesy of IMDb' /tmp/out || fail "the terms are not printed"
[ "$(date -r /tmp/new/sets/title.akas.tsv.gz +%F)" = 2015-11-22 ] || fail "not of the day of the data"
file=/tmp/new/sets/title.basics.tsv.gz
head -n 1 /tmp/asked | grep -qxF "[--silent] [--globoff] [--location] [--fail] [--remote-time] [--proto]\
 [=http,https] [--connect-timeout] [15] [--speed-limit] [1000] [--speed-time] [60] [--user-agent]\
 $(grep -o '\[libquilp/[^]]*]' /tmp/asked | head -n 1) [--dump-header] [$file.part.headers] [--output]\
 [$file.part] [--url] [http://127.0.0.1:$port/sets/whole/title.basics.tsv.gz] " ||
  fail "asked: $(head -n 1 /tmp/asked)"

# Again: only what has changed, there or here.
fetch 0 whole
served 304 7
[ "$(grep -c unchanged /tmp/out)" -eq 7 ] || fail "unchanged: $(cat /tmp/out)"
echo more | gzip >>/tmp/served/title.crew.tsv.gz
echo >>/tmp/new/sets/title.akas.tsv.gz
fetch 0 whole
served 304 5
served 200 2
same

# The connection breaks after each piece: the rest is asked for. Without any progress it is an error.
rm -r /tmp/new/sets
fetch 0 pieces
served 200 7
[ "$(grep -c ' 206$' /tmp/served.log)" -ge 14 ] || fail "pieces: $(cat /tmp/served.log)"
same
rm -r /tmp/new/sets
fetch 56 nothing
served 200 0

# A part of a file that has changed since, and one of which nothing is known.
for tag in 'ETag: "old"' 'Server: none'; do
  for name in "${names[@]}"; do
    head -c 1000 /dev/zero >"/tmp/new/sets/$name.tsv.gz.part"
    printf 'HTTP/1.1 200 OK\r\n%s\r\n\r\n' "$tag" >"/tmp/new/sets/$name.tsv.gz.part.headers"
  done
  fetch 0 pieces
  same
  rm /tmp/new/sets/*
done

# Killed, or interrupted, in the middle: what came is kept, and curl ends.
part=$file.part
for signal in KILL INT TERM; do
  way slow
  before=$(stat -c %s $part 2>/dev/null || echo 0)
  # A job in the background would ignore SIGINT.
  python3 -c 'import os, signal, sys
signal.signal(signal.SIGINT, signal.SIG_DFL)
os.execv(sys.argv[1], sys.argv[1:])' "$QUILP_PROGRAM" catalogue fetch /tmp/new/sets --accept-terms >/tmp/out 2>/tmp/first &
  fetching=$!
  for _ in {1..100}; do
    [ "$(stat -c %s $part 2>/dev/null || echo 0)" -gt $((before + 10000)) ] && break
    sleep 0.05
  done
  fetch 1 slow
  grep -q 'another fetch' /tmp/errors || fail "two at a time: $(cat /tmp/errors)"
  kill -$signal $fetching
  wait $fetching 2>/dev/null
  status=$?
  [ $status -eq $((128 + $(kill -l $signal))) ] || fail "SIG$signal: status $status"
  [ "$(stat -c %s $part)" -gt $((before + 10000)) ] || fail "SIG$signal: nothing is kept"
  sleep 0.3
  ! grep -lzF -- "$part" /proc/[0-9]*/cmdline 2>/dev/null || fail "SIG$signal: curl runs on"
done
grep -q 'goes on where this one ended' /tmp/first || fail "interrupted: $(cat /tmp/first)"
fetch 0 whole
served 206 1
same

# Errors. What was there stays.
fetch 22 gone
grep -q 'title.akas.tsv.gz: 127.0.0.1:[0-9]* answered HTTP 404' /tmp/errors || fail "404: $(cat /tmp/errors)"
[ "$(wc -l </tmp/asked)" -eq 7 ] || fail "404: the others were not asked for"
same
rm /tmp/new/sets/*.headers
fetch 1 page
grep -q 'title.basics.tsv.gz is no gzip file' /tmp/errors || fail "a page: $(cat /tmp/errors)"
same
if [ -z "${QUILP_EMULATOR-}" ]; then # which keeps files of its own there
  rm $file
  cat /dev/zero >/tmp/fill 2>/dev/null
  truncate -s -100K /tmp/fill
  way whole
  errors=$("$QUILP_PROGRAM" catalogue fetch /tmp/new/sets --accept-terms 2>&1 >/dev/null)
  [ $? -eq 23 ] && [[ $errors == *"No space left on device"* ]] || fail "a full disk: $errors"
  rm /tmp/fill
  fetch 0 whole
  same
fi
kill $server
wait $server 2>/dev/null
trap - EXIT
fetch 7 whole
grep -q 'could not connect to 127.0.0.1' /tmp/errors || fail "no server: $(cat /tmp/errors)"
[ "$(wc -l </tmp/asked)" -eq 1 ] || fail "no server: asked on"

# A certificate that nobody has signed who is trusted here, and an address of this machine's files.
printf '[catalogue]\nbase=https://www.imdb.com/\n' >"$QUILP_CONFIG"
grep connect-to /run/box/.curlrc >/tmp/.curlrc
CURL_HOME=/tmp "$QUILP_PROGRAM" catalogue fetch /tmp/new/sets --accept-terms >/tmp/out 2>/tmp/errors
[ $? -eq 60 ] && grep -q 'is not trusted' /tmp/errors || fail "certificate: $(cat /tmp/errors)"
printf '[catalogue]\nbase=file:///tmp/served\n' >"$QUILP_CONFIG"
"$QUILP_PROGRAM" catalogue fetch /tmp/new/sets --accept-terms >/tmp/out 2>/tmp/errors
[ $? -eq 1 ] && grep -q 'does not begin with https' /tmp/errors || fail "file: $(cat /tmp/errors)"

[ "$failures" -eq 0 ]
