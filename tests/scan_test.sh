#!/bin/bash
# quilp scan: rows in the order of the files, failures, resuming, an end by Ctrl-C. Runs in the box,
# beside the sample site.
set -u
failures=0
mkdir -p /tmp/m/b /tmp/m/.hidden /tmp/k
cd /tmp/m || exit
touch The.Paper.Lighthouse.2011.mkv 'b/Zoë, and "the" Tide.mp4' b/faultclosed-x.MKV b/nosuchfilm.avi \
  .hidden/x.mkv notes.txt $'c\t\nd.mkv'
ln -s . b/loop
touch '/tmp/k/林小雨[F]_夜航船[國][L].mp3' /tmp/k/_B.flac

fail() {
  echo "$*" >&2
  failures=$((failures + 1))
}

# expect NAME STATUS WANTED: of the scan that was run last.
expect() {
  [ "$status" = "$2" ] || fail "$1: status $status instead of $2"
  diff <(printf '%s\n' "$3") <(printf '%s\n' "$output") >&2 || fail "$1: other rows"
}

scan() {
  output=$("$QUILP_PROGRAM" scan "$@" 2>/tmp/errors)
  status=$?
}

headings=file,kind,title,year,season,episode,episode_title,match,match_year,match_episode_title,air_date,id,confidence,sure,reason
known='/tmp/m/The.Paper.Lighthouse.2011.mkv,movie,The Paper Lighthouse,2011,,,,The Paper Lighthouse,2011,,,tt9000001,99,true,the title is the same; the year fits
"/tmp/m/b/Zoë, and ""the"" Tide.mp4",movie,"Zoë, and ""the"" Tide",,,,,Zoë and the Tide,2009,,,tt9000005,87,true,the title is the same; the name has no year
/tmp/m/b/faultclosed-x.MKV,movie,faultclosed-x,,,,,,,,,,0,false,the connection to www.imdb.com ended before the whole page had come
/tmp/m/b/nosuchfilm.avi,movie,nosuchfilm,,,,,,,,,,0,false,nothing of that title was found
"/tmp/m/c	
d.mkv",movie,"c	
d",,,,,,,,,,0,false,nothing of that title was found'
scan /tmp/m --format csv -j 4 --resume /tmp/journal
expect csv 101 "$headings
$known"
grep -q 'faultclosed-x.MKV: the connection to www.imdb.com ended' /tmp/errors || fail "the failure is not told"
grep -q $'\r' /tmp/errors && fail "progress without a terminal"
# However many jobs: the pages of one file's lookup come after each other.
grep -o 'GET /find' /run/box/site.log | wc -l | grep -qx 5 || fail "not one find page a file"
awk '/q=Zo/ { second = 1 } /tt9000001/ && second { exit 1 }' /run/box/site.log ||
  fail "lookups without an add-on overlap"

# What the journal has is not asked for again; what failed, or was cut off, is.
asked() { grep -c 'GET /find' /run/box/site.log; }
before=$(asked)
printf '/tmp/m/b/fault' >>/tmp/journal
scan /tmp/m --format csv --resume /tmp/journal
expect resumed 101 "$headings
$known"
[ $(($(asked) - before)) = 1 ] || fail "resumed: asked again"
scan /tmp/m --format csv --resume /tmp/journal --type tv
expect "another journal" 1 ""
printf '{"quilp sc' >/tmp/cut
scan /tmp/m/b --resume /tmp/cut --format csv
expect "a cut heading" 101 "$(echo "$headings"; grep /b/ <<<"$known")"
"$QUILP_PROGRAM" scan /tmp/m/b --resume /tmp/closed >&- 2>&-
diff /tmp/closed /tmp/cut ||
  fail "closed outputs: $(cat /tmp/closed)"
before=$(asked)
for format in csv json; do
  "$QUILP_PROGRAM" scan /tmp/m --format $format >/dev/full 2>/tmp/errors && fail "a full disk"
  grep -qx 'quilp: cannot write' /tmp/errors || fail "a full disk: $(cat /tmp/errors)"
done
[ $(($(asked) - before)) -le 2 ] || fail "goes on without an output"
scan /tmp/m/nowhere
expect "no folder" 1 ""
output=$(printf '/tmp/m/b/nosuchfilm.avi\0/tmp/none' | "$QUILP_PROGRAM" scan -0 /tmp/m/notes.txt /tmp/none 2>/tmp/errors)
status=$?
expect "a list, names in it need not be here" 101 'file                     kind   match  year  id  sure
/tmp/m/notes.txt         movie
/tmp/m/b/nosuchfilm.avi  movie
/tmp/none                movie'
grep -q '/tmp/none: No such file' /tmp/errors || fail "a list: $(cat /tmp/errors)"
scan /tmp/m --format xml
expect format 2 ""

scan /tmp/k --type karaoke
expect karaoke 0 'file                         kind  match            year  id  sure
_B.flac                      song  B                          50?
林小雨[F]_夜航船[國][L].mp3  song  林小雨 - 夜航船            90'
scan /tmp/k --type karaoke --format json
grep -q '"file":"/tmp/k/_B.flac","id":null,"kind":"song","match":"B"' <<<"$output" ||
  fail "json: $output"

# Add-ons may run at a time. Ctrl-C lets those under way end; what they found is kept.
printf '[a]\nClass=Kestrawind\nType=Movie\nEnable=TRUE\nShell=/etc/config/shell\n' >/etc/config/zorp.conf
cat >/etc/config/shell <<'ADDON'
#!/bin/sh
echo start >>/tmp/runs
sleep 0.4
echo "<movielist><movie><title><![CDATA[$3]]></title><id><![CDATA[9]]></id></movie></movielist>" >"$7"
echo end >>/tmp/runs
ADDON
chmod +x /etc/config/shell
mkdir /tmp/many
touch /tmp/many/{1,2,3,4,5,6,7,8,9}.mkv
"$QUILP_PROGRAM" scan /tmp/many -j 2 --format csv >/tmp/rows 2>/tmp/errors &
scanner=$!
while ! grep -qs end /tmp/runs; do sleep 0.05; done
kill -INT $scanner
wait $scanner
status=$? output=$(cat /tmp/rows)
[ "$status" = 130 ] || fail "Ctrl-C: status $status"
[ "$(head -n 2 /tmp/runs | tr -d '\n')" = startstart ] || fail "-j 2: add-ons did not overlap"
[ "$(grep -c start /tmp/runs)" = "$(grep -c end /tmp/runs)" ] || fail "Ctrl-C: an add-on was cut off"
[ "$(grep -c ',9,' <<<"$output")" = "$(grep -c end /tmp/runs)" ] || fail "Ctrl-C: rows are missing"
[ "$(grep -c ',9,' <<<"$output")" -lt 9 ] || fail "Ctrl-C: nothing was left out"

# What finds nothing at all says why.
chmod -x /etc/config/shell
scan /tmp/many
[ "$status" = 109 ] && [ "$(grep -c 'add-on of \[a\] cannot be started: Permission denied' /tmp/errors)" = 6 ] ||
  fail "nothing found: $(cat /tmp/errors)"
chmod +x /etc/config/shell

# --timeout limits each lookup; a scan goes on after it.
printf '#!/bin/sh\n[ "$3" != 1 ] || sleep 62\n' >/etc/config/shell
printf '%s\n' "for file; do :; done" \
  "echo '<movielist><movie><title><![CDATA[2]]></title><id>9</id></movie></movielist>' >\"\$file\"" >>/etc/config/shell
touch /tmp/{1,2}.mkv
if [ -z "${QUILP_NO_GUARD-}" ]; then
  scan /tmp/1.mkv /tmp/2.mkv --type movie --timeout 1 --resume /tmp/limited
  [ "$status" = 101 ] && grep -q '1.mkv: the add-on of \[a\] did not answer in time$' /tmp/errors ||
    fail "--timeout: status $status: $(cat /tmp/errors)"
  grep -q '2.mkv' /tmp/limited && ! grep -q '1.mkv' /tmp/limited || fail "--timeout: $(cat /tmp/limited)"
  ! grep -sqx sleep /proc/[0-9]*/comm || fail '--timeout: an add-on runs on'
fi

# The second Ctrl-C ends what never would, and all that it started; what was kept is whole.
for limit in '' 1000; do
  [ -z "$limit" ] || [ -z "${QUILP_NO_GUARD-}" ] || break
  printf '#!/bin/sh\ntrap "" TERM\nsetsid sleep 61 &\n: >/tmp/hangs\nsleep 61\n' >/etc/config/shell
  rm -f /tmp/hangs /tmp/kept
  "$QUILP_PROGRAM" scan /tmp/many -j 2 --resume /tmp/kept ${limit:+--timeout $limit} >/tmp/rows 2>/tmp/errors &
  scanner=$!
  while ! [ -e /tmp/hangs ]; do sleep 0.05; done
  kill -INT $scanner
  while ! grep -q 'once more' /tmp/errors; do sleep 0.05; done
  kill -INT $scanner
  wait $scanner
  status=$?
  [ "$status" = 130 ] && grep -q '^1.mkv' /tmp/rows || fail "Ctrl-C twice: status $status"
  ! grep -sqx sleep /proc/[0-9]*/comm || fail "Ctrl-C twice: an add-on runs on"
  ! ls /tmp/libquilp.* 2>/dev/null || fail "Ctrl-C twice: a document is left behind"
  [ "$(wc -l </tmp/kept)" = 1 ] || fail "Ctrl-C twice: what failed was kept: $(cat /tmp/kept)"
done

exit "$failures"
