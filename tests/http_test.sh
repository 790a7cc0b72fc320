#!/bin/bash
# How add-ons ask services: the cache, the pace, time limits, TLS, and what services do wrong. Runs in
# the box. http_test.sh PROGRAM, which makes one request.
set -u
failures=0
few=${QUILP_EMULATOR:+yes}  # an emulator takes long to start programs
get=(${QUILP_EMULATOR-} "$1")
top=$(cd "$(dirname "$0")" && pwd)
here=http://127.0.0.1:8390
export QUILP_CONFIG=/tmp/quilp.conf
cache=/tmp/cache/http.db

fail() {
  echo "$*" >&2
  failures=$((failures + 1))
}

# Another cache and other settings for what follows.
anew() {
  rm -rf /tmp/cache
  printf '[cache]\npath=%s\nsize=2M\n[x]\nkey=S3CRET\ntimeout=8\n' $cache >$QUILP_CONFIG
  printf '%s\n' "$@" >>$QUILP_CONFIG
}

# row WANTED PATH [MORE...]: what comes of a request begins so.
row() {
  local wanted=$1 output
  shift
  output=$("${get[@]}" x "${base:-$here}" "$@" 2>/tmp/errors; cat /tmp/errors)
  [[ $output == "$wanted"* ]] || fail "$1: $output"
  ! grep -aqrs S3CRET /tmp/errors /tmp/cache || fail "$1: tells the key"
}

# asked PATH: how often the server was.
asked() {
  grep -c " $1" /tmp/log
}

serve() {
  python3 "$top/http_server.py" "${1-8390}" /tmp/log "${@:2}" &
  server=$!
  for ((i = 0; i < 100; ++i)); do
    { : >/dev/tcp/127.0.0.1/"${1-8390}"; } 2>/dev/null && return
    sleep 0.1
  done
}

openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -subj /CN=Other \
  -addext subjectAltName=IP:127.0.0.1 -keyout /tmp/key.pem -out /tmp/certificate.pem 2>/dev/null
serve 8391 /tmp/certificate.pem /tmp/key.pem
serve

# The cache.
anew
row $'found 8\nanswer 1' /page/max-age=60
row $'found cached 8\nanswer 1' /page/max-age=60
row $'found 8\nanswer 1' /page/no-store
row $'found 8\nanswer 2' /page/no-store
row $'found 8\nanswer 1' '/page/no-cache,%20max-age=60'
row $'found 8\nanswer 2' '/page/no-cache,%20max-age=60'
row $'found 6\ntagged' /tag/etag
row $'found cached 6\ntagged' /tag/etag
row $'found cached 6\ntagged' /tag/etag
row $'found 5\ndated' /tag/date
row $'found cached 5\ndated' /tag/date
[ "$(asked /tag/etag) $(asked /tag/date)" = "3 2" ] || fail "confirmed: $(cat /tmp/log)"
row $'nothing 0' /none
row $'nothing cached 0' /none
row $'found 8\nunpacked' /gzip
row $'found 8\nanswer 1' /page/max-age=60/key a='b&c' key=key
[ "$(asked '/page/max-age=60/key?a=b%26c&key=S3CRET ')" = 1 ] || fail "the key is not sent"
row $'found cached 8\nanswer 1' /page/max-age=60/key a='b&c' key=key

# What services do wrong.
row 'http_get: 127.0.0.1:8390 gives no answer (status 500)' /always/500
row $'found 8\nanswer 1' /page/max-age=60/500
row 'http_get: 127.0.0.1:8390 refuses the key, or wants one (status 401)' /always/401 key=key
row 'http_get: 127.0.0.1:8390 does not let this program in (status 403)' /always/403
row 'http_get: 127.0.0.1:8390 redirects more than 5 times' /circle
[ "$(asked /circle)" = 6 ] || fail "redirects: $(asked /circle)"
row $'found 16777216\nxxx' /size/16777216
row 'http_get: 127.0.0.1:8390 sends more than 16 MB' /size/16777217
row 'http_get: 127.0.0.1:8390 sends more than 16 MB' /bomb
row $'found 4\nbody' /reset/once
row 'http_get: 127.0.0.1:8390 sends a broken answer: ' /reset/always
[ "$(asked /reset/always)" = 2 ] || fail "after a reset: $(asked /reset/always)"
start=$SECONDS
anew timeout=2
row 'http_get: 127.0.0.1:8390 cannot be reached: Timeout' /slow
[ $((SECONDS - start)) -le 20 ] || fail "a slow body: $((SECONDS - start)) s"

# busy SECONDS WANTED PATH: a service without time, asked by all processes from then on.
busy() {
  local start least=$1 status
  shift
  anew
  start=$(date +%s%3N)
  row "$@"
  [ $(($(date +%s%3N) - start)) -ge $((least * 1000)) ] || fail "$2: asked again too soon"
}
busy 2 $'found 4\nbody' /status/429/2
busy 1 $'found 4\nbody' "/status/503/$(LC_ALL=C date -u -d '+2 seconds' '+%a,%%20%d%%20%b%%20%Y%%20%T%%20GMT')"
busy 0 $'found 4\nbody' /status/503
busy 0 'http_get: 127.0.0.1:8390 has no time for this request (status 429)' /always/429/100
row 'http_get: 127.0.0.1:8390 must not be asked so soon again' /page/max-age=60/after
[ "$(asked /page/max-age=60/after)" = 0 ] || fail "asked within a pause"
anew
row 'http_get: 127.0.0.1:8390 has no time for this request (status 503)' /always/503
[ "$(asked /always/503)" = 3 ] || fail "asked $(asked /always/503) times"

anew
sed -i /^key=/d $QUILP_CONFIG
row 'http_get: there is no key: [x] of /tmp/quilp.conf wants key= or key_file=' /size/4 key=key

# TLS.
base=https://127.0.0.1:8391
anew certificates=/tmp/certificate.pem
row $'found 4\nxxxx' /size/4
row 'http_get: 127.0.0.1:8391 redirects to an unprotected address' /to/http/127.0.0.1:8390/size/4
base=https://localhost:8391 row 'http_get: localhost:8391 is not trusted: ' /size/4
base=http://127.0.0.1:8390 row $'found 4\nxxxx' /to/https/127.0.0.1:8391/size/4
base=http://127.0.0.1:8390 row 'http_get: 127.0.0.1:8390 redirects to ' /to/file/etc/passwd
anew
row 'http_get: 127.0.0.1:8391 is not trusted: ' /size/4
base=
row 'http_get: 127.0.0.1:9 cannot be reached: ' /to/https/127.0.0.1:9/

# No network: an old copy and a note, but no old "not found" and none to a question of its own.
anew
row $'found 8\nanswer 1' /page/max-age=0/old
row 'nothing 0' /none/old
kill $server
wait $server 2>/dev/null
row $'found cached stale 8\nanswer 1\nx: 127.0.0.1:8390 cannot be reached: ' /page/max-age=0/old
row 'http_get: 127.0.0.1:8390 cannot be reached: ' /page/max-age=0/never
row 'http_get: 127.0.0.1:8390 cannot be reached: ' /page/max-age=0/old a=b
serve

# The cache's file is missing, another's, read-only, no database, or somebody else's database.
uncached() {
  row $'found 4\nxxxx' /size/4 case="$1"
  row $'found 4\nxxxx' /size/4 case="$1"
}
for path in /proc/none/http.db /dev/null /tmp/log/http.db /tmp; do
  printf '[cache]\npath=%s\n' $path >$QUILP_CONFIG
  uncached $path
done
anew
row $'found 8\nanswer 1' /page/max-age=60/locked
chmod -R a-w /tmp/cache
row $'found cached 8\nanswer 1' /page/max-age=60/locked
uncached locked
[ -s "/dev/shm/quilp-$(id -u)/pace-127.0.0.1_8390" ] || fail "no pace without a folder"
chmod -R u+w /tmp/cache
rm -r /tmp/cache
mkdir /tmp/cache
echo 'Letters of mine' >$cache
uncached letters
[ "$(cat $cache)" = 'Letters of mine' ] || fail "a file that is no cache was written"
rm $cache
python3 -c "import sqlite3; sqlite3.connect('$cache').execute('CREATE TABLE mine (x)')"
uncached database
ln -sf /tmp/elsewhere.db $cache
uncached link
[ ! -e /tmp/elsewhere.db ] || fail "a link was followed"

# It is bounded, and what was used last stays.
anew
for i in {1..12}; do
  row $'found 300000' /random/300000/$i
done
row $'found cached 300000' /random/300000/12
row $'found 300000' /random/300000/1
[ "$(stat -c %s $cache)" -le 2097152 ] || fail "size: $(stat -c %s $cache)"
anew
head -c 80M /dev/zero >/tmp/full 2>/dev/null
row 'found 400000' /random/400000/full
row 'found 400000' /random/400000/full
rm /tmp/full
row 'found 400000' /random/400000/full
row 'found cached 400000' /random/400000/full

# A folder that a group shares, which is root's: so are the cache, its log, and the pace.
if [ "$(id -u)" = 0 ]; then
  anew
  mkdir -m 2775 /tmp/cache
  row 'found' /random/20000/1
  [ "$(cd /tmp/cache && stat -c '%a %n' ./* | grep -cv '^664')" = 0 ] || fail "not shared: $(ls -l /tmp/cache)"
fi
# A file that has another name elsewhere stays as it is.
for name in pace-127.0.0.1_8390 http.db; do
  anew
  mkdir -m 2775 /tmp/cache
  echo precious >/tmp/other
  ln /tmp/other /tmp/cache/$name
  row 'found' /random/20000/1
  [ "$(stat -c %a /tmp/other):$(cat /tmp/other)" = 644:precious ] || fail "$name: a linked file was changed"
  rm /tmp/other
done

# Damaged anywhere: an answer all the same, and soon a cache again.
anew
for i in 1 2 3 4 5; do row 'found 20000' /random/20000/$i; done
python3 -c "import sqlite3; sqlite3.connect('$cache').execute('PRAGMA wal_checkpoint(TRUNCATE)')"
row 'found cached' /random/20000/1
cp -r /tmp/cache /tmp/whole
for ((i = 0; i < 40; i += ${few:+4} + 1)); do
  cp /tmp/whole/* /tmp/cache
  size=$(stat -c %s $cache)
  head -c 600 /dev/urandom | dd of=$cache bs=1 seek=$((size * i / 40)) conv=notrunc status=none
  row 'found' /random/20000/$((i % 5 + 1))
  row 'found' /random/20000/$((i % 5 + 1))
  row 'found cached' /random/20000/$((i % 5 + 1))
done

# intact: nothing is wrong with the file.
intact() {
  [ "$(python3 -c "import sqlite3
print(sqlite3.connect('$cache').execute('PRAGMA integrity_check').fetchone()[0])")" = ok ] ||
    fail "$1: the cache is damaged"
}

# Killed at any moment.
anew
for ((i = 0; i < 60; ++i)); do
  "${get[@]}" x $here /random/100000/$((i % 7)) >/dev/null 2>&1 &
  sleep 0.0$((RANDOM % 60))
  kill -9 $! 2>/dev/null
  wait $! 2>/dev/null
done
intact killed
row 'found' /random/100000/1

# Many processes at once: never more than ten requests arrive within a second, most answers come from
# the cache, and each process has one.
anew timeout=60
processes=$((${few:+-140} + 200))
for ((i = 0; i < processes; ++i)); do
  "${get[@]}" x $here /page/max-age=60/crowd/$((i % 20)) >/tmp/crowd.$i 2>&1 &
  crowd[i]=$!
done
wait "${crowd[@]}"
[ "$(cat /tmp/crowd.* | grep -c '^answer [1-9]$')" = $processes ] || fail "$(sort /tmp/crowd.* | uniq -c | sort -n | tail)"
intact crowd
grep /crowd/ /tmp/log | sort -n | awk '
  { at[NR] = $1 }
  NR > 10 && $1 - at[NR - 10] < 1 { ++fast }
  END { if (fast || NR < 20 || NR > 100) { print NR " requests, " fast " too fast"; exit 1 } }' >&2 || fail "pace"

[ "$failures" -eq 0 ]
