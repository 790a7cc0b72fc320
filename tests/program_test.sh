#!/bin/sh
# The quilp program: documents, exit statuses, usage. Runs in the box, beside the sample site.
set -eu
failures=0

# expect STATUS PATTERN ARGUMENT...: a pattern of "" stands for no output.
expect() {
  status=$1 pattern=$2
  shift 2
  actual=0
  output=$("$QUILP_PROGRAM" "$@" 2>/tmp/errors) || actual=$?
  if [ "$actual" != "$status" ] || ! printf '%s' "$output" | tr '\n' ' ' | grep -qx "$pattern"; then
    if [ "$actual" = "$status" ] && [ -z "$pattern$output" ]; then return; fi
    echo "quilp $*: status $actual instead of $status, or not $pattern: $output" >&2
    failures=$((failures + 1))
  fi
}

expect 0 '<?xml.*<movie rank="1">.*<id>tt9000001</id>.*</movielist> *' movie search Lighthouse -n 1
expect 0 '<?xml.*<title>The Paper Lighthouse</title>.*</movie> *' movie show tt9000001
expect 18 '' movie show faultclosed-tt9000001
expect 1 '<?xml.*<title/>.*' movie show faultempty-tt9000001
expect 1 '<?xml.*<title/>.*' movie search nosuchfilm
expect 1 '' movie search faultclosed
expect 1 '' movie show tt9000009
expect 0 '<?xml.*<id><!\[CDATA\[tt8000001\]\]></id>.*</tvshowlist> *' tv search 'Signal Row' -n 1
expect 0 '<?xml.*<title><!\[CDATA\[Signal Row\]\]></title>.*</tvshow> *' tv show tt8000001 -l en
expect 0 '<?xml.*<episode_number><!\[CDATA\[10\]\]>.*</tvepisode> *' tv episode tt8000001 02 010
expect 1 '' tv episode tt8000001 2 13
expect 1 '' tv episode tt8000001 0 0
expect 2 '' tv episode tt8000001 2
expect 2 '' tv episode tt8000001 2 x
expect 0 '<?xml.*<artist>The Tin Harbour</artist>.*<name>Fog Signals</name>.*</albumlist> *' \
  music search Fog --artist 'Tin Harbour'
expect 1 '' music search Fog --artist Lanterns
expect 0 '<?xml.*<album rank="2">.*</albumlist> *' music albums Lanterns -n 2
expect 0 '<?xml.*<url>[^<]*/3.jpg</url>.</artistthumbnail> *' music art 'Tin Harbour' -n 3
expect 1 '' music art Nobody
expect 0 '\[ *{ *"id" : "tt9000001",.*"rank" : 1,.*} *, *{ *"id" : "tt9000008", *"outline" : null,.*} *\]' \
  movie search Lighthouse -n 2 --format json
expect 1 '\[\]' movie search nosuchfilm --format json
expect 0 '{ *"actor" : *\[ *{ *"name" : "Hedda Lund", *"role" : "Jane Doe" *},.*"networks" : \[\],.*' \
  tv show tt8000001 --format json
expect 0 '\[ *"https[^ ]*/1.jpg", *"https[^ ]*/2.jpg" *\]' music art 'Tin Harbour' -n 2 --format json
expect 0 'rank  id         title                        year 1     tt9000001  The .* 2011 2 .*Keeper *' \
  movie search Lighthouse -n 2 --format table
expect 1 '' movie search nosuchfilm --format table
expect 0 'title            The Paper .* actor            Jørn Vale as Postman .*' \
  movie show tt9000001 --format table
expect 0 'Up	Up a b	a%20b' keyword 'Up (2009' a_b.2010
expect 0 '/s/A\[F\]_Song\[E\]\[0\]     title        Song     language     English     vocal track  0 .*'\
'    artist       A, female B?     title        B? *' karaoke '/s/A[F]_Song[E][0]' 'B
'
expect 0 '.*"file" : "\[M,a\]Song\[L\]",.*"title" : "M,a\]Song".*' karaoke --format json '[M,a]Song[L]'
expect 0 'a_b     kind         song     artist       a     title        b *' name --kind song a_b
expect 0 'Anna Lane & Tom Reed - Harbour Lights \[en\] \[instrumental\]' karaoke --name 'Harbour Lights' \
  --artist 'Anna Lane' --artist 'Tom Reed' --language en --track instrumental
printf 'KTV/A - \377\001"é.kar\n' >/tmp/list
expect 0 '{"artist":\["A"\],.*,"name":"KTV/A - �\\u0001\\"é.kar","title":"�\\u0001\\"é"}' \
  name --format json - </tmp/list
expect 0 'quilp [0-9.]*' --version
expect 0 'quilp [0-9.]*' movie -V
expect 0 '.*movie.*keyword.*' --help
expect 0 'Usage: quilp tv episode ID SEASON EPISODE .*--catalogue-id.*' help tv episode
expect 0 '\[ *{.*' --format JSON -n 1 movie search Lighthouse

# Every word reaches the library as it is.
expect 0 '\[a,b\] .*++ .*{} .*" .* -n .*-- .*' karaoke '[a,b]' ++ '{}' '"' -- -n --
printf 'a.2010\n\nb c' >/tmp/list
expect 0 'x	x a	a 	 b c	b%20c y	y' keyword x - y </tmp/list
printf 'A_B\nC.mkv\0D.mkv' >/tmp/list
expect 0 '.*"file" : "A_B\\nC.mkv",.*"file" : "D.mkv",.*' karaoke -0 --format json </tmp/list

# refused PATTERN ARGUMENT...: wrong usage, and what is said of it.
refused() {
  pattern=$1
  shift
  actual=0
  "$QUILP_PROGRAM" "$@" >/tmp/output 2>/tmp/errors </dev/null || actual=$?
  [ "$actual" = 2 ] && [ ! -s /tmp/output ] && grep -qe "$pattern" /tmp/errors && return
  echo "quilp $*: status $actual instead of 2, or not $pattern: $(cat /tmp/errors)" >&2
  failures=$((failures + 1))
}
refused 'there are movie, tv,'
refused 'there are search, show' movie
refused 'KEYWORD is missing' movie search
refused 'help movie search' movie search
refused '"b" is one word too many' movie search a b
refused '"moive"; did you mean "movie"' moive
refused '"serach"; did you mean "search"' movie serach x
refused '"serach"; did you mean "search"' help tv serach
refused '"--formt"; did you mean "--format"' --formt json movie search x
refused '"--colour"; there are -n, --format,' movie search x --colour=yes
refused '"--artist"; there are' movie search x --artist y
refused '"-é"' movie search x -é
refused '"jsn"; did you mean "json"' movie search x --format jsn
refused '"xml"; there are table, json' karaoke --format xml x
refused '-n: 0 is not from 1' movie search x -n 0
refused '"-n" needs a value' movie search x -n
refused '"--json" takes no value' addon check x --type movie --json=1
refused '"Moive"; did you mean "Movie"' addon check x --type Moive
refused '--type is missing' addon check x
refused '"katalogue"; did you mean "catalogue"' addon enable katalogue
refused 'NAME is missing' addon disable
refused 'DIR is missing' catalogue fetch --accept-terms
refused 'FILE is missing' karaoke
refused 'no file name reads as this song' karaoke --name A/B
refused 'no file name reads as this song' karaoke --name A --track loud
refused 'go with --name' karaoke --artist A a.mkv
refused 'go with --name' karaoke --name A a.mkv
refused 'SEASON: "" is no number' tv episode tt9500001 '' 1

# says STATUS PATTERN ARGUMENT...: one line on standard error tells why there is nothing.
says() {
  wanted=$1 pattern=$2
  shift 2
  actual=0
  "$QUILP_PROGRAM" "$@" >/tmp/output 2>/tmp/errors || actual=$?
  [ "$actual" = "$wanted" ] && grep -q "^quilp: $pattern" /tmp/errors &&
    [ "$(wc -l </tmp/errors)" = 1 ] && return
  echo "quilp $*: status $actual instead of $wanted, or not $pattern: $(cat /tmp/errors)" >&2
  failures=$((failures + 1))
}
: >/etc/config/zorp.conf
browsers='the site answers only browsers (HTTP 202 with a challenge): use an add-on, see quilp-addon(7)$'
says 1 'nothing found$' movie search nosuchfilm
says 1 'nothing found$' tv search nosuchshow
says 1 'nothing found$' music search nosuchalbum
says 1 'nothing found$' music art Nobody
says 1 'the site answered HTTP 403$' movie search 'fault403 Paper'
says 1 'the site answered HTTP 403$' music search 'fault403 Fog'
says 1 'the site answered HTTP 404$' movie show tt8999999
says 1 'the page of akas.imdb.com has nothing in a known form$' movie show tt9000009
says 0 'the site answered HTTP 404$' tv show tt8999999
says 1 "$browsers" movie show fault202-tt9000001
says 1 "$browsers" tv search 'fault202 Row'
says 18 'the connection to akas.imdb.com ended' movie show faultclosed-tt9000001
says 1 'the show has no season 9$' tv episode tt8000001 9 1
says 1 'the season has no episode 13$' tv episode tt8000001 2 13
CURL_HOME=/none HOME=/none says 1 'could not resolve host www.imdb.com$' movie search x
"$QUILP_PROGRAM" karaoke x.mkv 2>&1 >/dev/null | grep . && failures=$((failures + 1))

printf '[a]\nClass=Kestrawind\nType=Movie\nEnable=TRUE\nShell=/etc/config/shell\n' \
  >/etc/config/zorp.conf
printf '#!/bin/sh\nexit 42\n' >/etc/config/shell
chmod +x /etc/config/shell
says 42 'the add-on of \[a\] ended with status 42$' movie search x
says 42 'the add-on of \[a\] ended with status 42$' movie show x
printf '#!/bin/sh\nkill $$\n' >/etc/config/shell
says 1 'the add-on of \[a\] was ended by signal 15' movie show x
# shellcheck disable=SC2016  # for the add-on
printf '#!/bin/sh\ncp /tmp/written "$5"\n' >/etc/config/shell
echo '<movie><title>' >/tmp/written
says 1 'the document of the add-on of \[a\] is not well-formed$' movie show x
echo '<movie><actor><name><![CDATA[A]]></name></actor></movie>' >/tmp/written
says 1 'the document of the add-on of \[a\] has an actor without a role$' movie show x
# What a search printed is what the add-on gets.
# shellcheck disable=SC2016  # for the add-on
printf '#!/bin/sh\necho "$3" >/tmp/asked\nexit 1\n' >/etc/config/shell
for asked in "movie show x" "movie show --catalogue-id abcdex"; do
  # shellcheck disable=SC2086  # the command is words
  expect 1 '' $asked
  [ "$(cat /tmp/asked)" = x ] || { echo "$asked: $(cat /tmp/asked)" >&2; failures=$((failures + 1)); }
done
sed -i s/Movie/KTV/ /etc/config/zorp.conf
expect 1 'x y' karaoke x y
says 1 'x: the add-on of \[a\] ' karaoke x
expect 1 '.*{ *"file" : "x" *}.*' karaoke --format json x

printf '#!/bin/sh\necho "<?xml version=\\"1.0\\" encoding=\\"latin1\\"?><KtvInfo><Artist><Name Gender=\\"3\\">\351\235\222\355\240\200</Name></Artist></KtvInfo>" >"$5"\n' \
  >/etc/config/shell
printf '[M,\377\340\200\257' >/tmp/list
expect 0 '.*"gender" : "group", *"name" : "青���".*"file" : "\[M,����".*' \
  karaoke --format json - </tmp/list

# Nothing that others wrote reaches a terminal as it is.
printf '[s\033[2J]\nType=TV\n' >/etc/config/zorp.conf
evil=$(printf '\033[2J')
for command in 'addon list' "movie search a -n $evil" "scan /tmp --resume /none/$evil"; do
  # shellcheck disable=SC2086  # the command is words
  "$QUILP_PROGRAM" $command 2>&1 | grep -q "$(printf '\033')" || continue
  echo "an escape sequence of: $command" >&2
  failures=$((failures + 1))
done

# A table is as wide as the terminal, and decoded.
rm /etc/config/zorp.conf
says 1 'the show has no season 9$' tv episode tt8000001 9 1
script -qec "stty cols 40; '$QUILP_PROGRAM' movie search Lighthouse -n 1 --format table" /dev/null \
  >/tmp/output
grep -q '^1     tt9000001  The Pape…ghthouse  2011' /tmp/output || {
  echo "a table of 40 columns: $(cat /tmp/output)" >&2
  failures=$((failures + 1))
}

# A time limit and Ctrl-C end what an add-on started, and leave nothing. An emulator cannot share the
# memory of a process with the guard that ends them.
interrupt() { # slow|page ARGUMENT...: an add-on, or a page that does not come
  [ "$1" = slow ] || sed -i 's/:8443/:8555/' /run/box/.curlrc
  shift
  rm -f /tmp/started
  (
    while [ ! -e /tmp/started ]; do sleep 0.01; done
    sleep 0.1
    kill -INT "$(cat /tmp/pid)"
  ) &
  actual=0
  # sh ignores SIGINT for what it starts in the background; this is in the foreground.
  sh -c 'echo $$ >/tmp/pid; exec "$@"' sh "$QUILP_PROGRAM" "$@" >/tmp/output 2>/tmp/errors ||
    actual=$?
  wait $!
  sed -i 's/:8555/:8443/' /run/box/.curlrc
  left=$(cat /proc/[0-9]*/comm 2>/dev/null | grep -cEx 'sleep|curl'; ls /tmp/libquilp.* 2>/dev/null) || true
  if [ "$actual" != 130 ] || ! grep -q 'cancelled$' /tmp/errors /tmp/output || [ "$left" != 0 ]; then
    echo "Ctrl-C: $*: status $actual, left $left: $(cat /tmp/errors)" >&2
    failures=$((failures + 1))
  fi
}

expect_limits() {
  # Accepts and says nothing.
  python3 -c '
import socket
server = socket.create_server(("127.0.0.1", 8555))
kept = []
while True:
    kept.append(server.accept())
    open("/tmp/started", "w").close()' &
  silent=$!
  expect 2 '' movie search x --timeout 0
  expect 2 '' keyword x --timeout 1
  printf '#!/bin/sh\n: >/tmp/started\nsleep 60 & sleep 60\n' >/etc/config/slow
  chmod +x /etc/config/slow
  for type in Movie TV Music KTV; do
    printf '[%s]\nClass=Kestrawind\nType=%s\nEnable=TRUE\nShell=/etc/config/slow\n' $type $type
  done >/etc/config/zorp.conf
  for command in 'movie search x' 'tv episode x 1 1' 'music art x' 'karaoke x'; do
    # shellcheck disable=SC2086  # the command is words
    says 1 '.*did not answer in time$' $command --timeout 1
  done
  # Add-ons, then pages, with and without a limit.
  for seconds in 50 ''; do
    interrupt slow movie search x ${seconds:+--timeout $seconds}
    interrupt slow karaoke x y ${seconds:+--timeout $seconds}
    mv /etc/config/zorp.conf /tmp/zorp.conf
    interrupt page movie search Lighthouse ${seconds:+--timeout $seconds}
    interrupt page movie show tt9000001 ${seconds:+--timeout $seconds}
    interrupt page music search Fog ${seconds:+--timeout $seconds}
    interrupt page explain tv 'Signal Row' ${seconds:+--timeout $seconds}
    interrupt page --record /tmp/interrupted music search Fog ${seconds:+--timeout $seconds}
    mv /tmp/zorp.conf /etc/config/zorp.conf
  done
  if [ -e /tmp/interrupted ]; then
    echo 'half a lookup was recorded' >&2
    failures=$((failures + 1))
  fi
  kill $silent
  rm /etc/config/zorp.conf
}
[ -n "${QUILP_NO_GUARD-}" ] || expect_limits

# A full disk and a closed output are no success.
for tt in tt9000001 faultempty-tt9000001; do
  actual=0
  "$QUILP_PROGRAM" movie show $tt >&- 2>/tmp/errors || actual=$?
  [ "$actual" = 1 ] && grep -q '^quilp: cannot write' /tmp/errors || failures=$((failures + 1))
done
actual=0
"$QUILP_PROGRAM" movie show tt9000001 >/dev/full 2>/tmp/errors || actual=$?
[ "$actual" = 1 ] && grep -q '^quilp: cannot write' /tmp/errors || failures=$((failures + 1))

exit "$failures"
