#!/bin/bash
# The add-ons that ask services, against a server of our own, by TLS. Runs in the box.
# services_test.sh FOLDER, where they are.
set -u
failures=0
folder=$1
top=$(cd "$(dirname "$0")" && pwd)
export QUILP_CONFIG=/tmp/quilp.conf
here=https://127.0.0.1:8395

fail() {
  echo "$*" >&2
  failures=$((failures + 1))
}

openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes -subj /CN=Services \
  -addext subjectAltName=IP:127.0.0.1 -keyout /tmp/key.pem -out /tmp/certificate.pem 2>/dev/null
python3 "$top/services_server.py" 8395 /tmp/log /tmp/certificate.pem /tmp/key.pem &
trap 'kill $!' EXIT
for ((i = 0; i < 100; ++i)); do
  { : >/dev/tcp/127.0.0.1/8395; } 2>/dev/null && break
  sleep 0.1
done

# Other settings and another cache for what follows: settings SERVICE LINE...
settings() {
  rm -rf /tmp/cache
  printf '[cache]\npath=/tmp/cache/http.db\n' >$QUILP_CONFIG
  for service in tvmaze; do
    printf '[%s]\nbase=%s/%s\ncertificates=/tmp/certificate.pem\n' $service $here $service
    [ $service != "${1-}" ] || printf '%s\n' "${@:2}"
  done >>$QUILP_CONFIG
}

# row STATUS WANTED ADD-ON VERB OPTION...: the document without its frame, in one line and without
# CDATA, or the message.
row() {
  local status=0 output wanted=$1:$2
  shift 2
  rm -f /tmp/answer
  ${QUILP_EMULATOR-} "$folder/$1" "${@:2}" -o /tmp/answer 2>/tmp/errors || status=$?
  output=$status:$(sed '1,2d; $d' /tmp/answer 2>/dev/null |
    sed 's/^\t*//; s/<!\[CDATA\[//; s/]]>//; s:</[a-z_]*>$:;:' | tr -d '\n')$(cat /tmp/errors)
  [ "$output" = "$wanted" ] || fail "$*: $output"
}

# keeps ADD-ON OPTION...: the add-on keeps its contract.
keeps() {
  [ -n "${QUILP_EMULATOR-}" ] ||
    "$QUILP_PROGRAM" addon check "$folder/$1" "${@:2}" >/tmp/out || fail "$*: $(cat /tmp/out)"
}

# works ADD-ON: quilp addon test says so.
works() {
  local output
  output=$(${QUILP_EMULATOR-} "$folder/$1" test 2>&1)
  [[ $output == "$1: "*answers ]] || fail "$1 test: $output"
}

settings
works tvmaze
row 0 '<tvshow><id>7001;<title>Salt Tide;<url>https://static.example.org/o/7001.jpg;<first_air_date>2014-03-02;<outline>A lighthouse keeper & her son. They wait.;<imdb>tt7000001;;<tvshow><id>7002;<title>Salt Tide;<first_air_date>2021;;' tvmaze searchtvshow -t 'Salt Tide' -n 5 -l en
row 0 '' tvmaze searchtvshow -t 'Salt' -n 5 -l en
show='<title>Salt Tide;<id>7001;<imdb>tt7000001;<first_air_date>2014-03-02;<last_air_date>2015-06-07;<poster>https://static.example.org/m/7001.jpg;<banner>https://static.example.org/b.jpg;<outline>A lighthouse keeper & her son. They wait for 1 < 2 ships ]] >.;<rating>7.4;<actor><name>Mira Holm;<role>Edda;;<actor><name>Tom Reed;<role>;;<genres>Drama;<genres>Mystery;<duration>47 min;<network>Tidewater;<creator>Ana Quist;'
row 0 "$show" tvmaze gettvshowinfo -i 7001 -l en
row 0 "$show" tvmaze gettvshowinfo -i imdb:tt7000001 -l en
row 0 '<title>Ebb;<id>910001;<air_date>2014-03-02;<thumbnail>https://static.example.org/m/e1.jpg;<outline>The lamp goes out.;<rating>8.0;' tvmaze gettvshowinfo -i 7001 -s 1 -e 1 -l en
row 1 'tvmaze: nothing found' tvmaze gettvshowinfo -i 7001 -s 1 -e 9 -l en
row 1 'tvmaze: nothing found' tvmaze gettvshowinfo -i ../7001 -l en
QUILP_NAME=Salt.Tide.2021.S01E01.mkv row 0 '<tvshow><id>7002;<title>Salt Tide;<first_air_date>2021;;' tvmaze searchtvshow -t 'Salt Tide' -n 1 -l en
keeps tvmaze --type TV --keyword 'Salt Tide'

[ "$failures" -eq 0 ]
