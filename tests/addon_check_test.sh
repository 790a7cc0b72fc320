#!/bin/bash
# "quilp addon check": the examples are good, and each of many faults is found by its own clause and
# by no other. Runs in the box.
set -eu
cd "$(dirname "$0")/.."
failures=0
options=(--keyword Lamp --album Lamp --season 1 --file /songs/Lamp)

# The findings of one kind, as "request:clause".
findings() {
  awk -F'"' -v result="$1" '
    $2 == "clause" { clause = $4 }
    $2 == "request" { request = $4 }
    $2 == "result" && $4 == result { printf "%s%s:%s", separator, request, clause; separator = " " }
  ' /run/box/report
}

# expect STATUS FAILED WARNINGS PROGRAM TYPE [OPTION...]: these are all the findings of their kinds,
# and nothing stays behind.
expect() {
  local status=0 wanted="$1 $2 / $3" actual label="$4 $5 ${EARLY-}${GOOD-}${FILTER-}"
  shift 3
  "$QUILP_PROGRAM" addon check "$1" --type "${@:2}" --json >/run/box/report 2>/run/box/errors ||
    status=$?
  actual="$status $(findings fail) / $(findings warning)"
  if [ "$actual" != "$wanted" ]; then
    printf '%s\n  expected: %s\n  actual:   %s\n' "$label" "$wanted" "$actual" >&2
    failures=$((failures + 1))
  fi
  rm -f /tmp/leak.*
  nothing_left "$label"
}

# The checkout itself may stand under /tmp.
before=$(ls /tmp)
nothing_left() {
  if [ "$(ls /tmp)" != "$before" ] || grep -qsx sleep /proc/[0-9]*/comm; then
    echo "$1: left behind: $(ls /tmp) $(grep -sx sleep /proc/[0-9]*/comm)" >&2
    failures=$((failures + 1))
  fi
}

# The examples need no options.
for example in Movie:movie.sh TV:tv.py Music:music.sh KTV:karaoke.sh; do
  expect 0 '' '' "examples/addon-${example#*:}" "${example%%:*}"
done

# An add-on of every type that knows one thing each, and where it can be spoiled: $EARLY for every
# request, $GOOD for those that have an answer, $FILTER for the answer.
cat >/run/box/addon <<'END'
#!/bin/bash
verb=$1
shift
while getopts t:n:i:s:e:l:a:b:f:o: option; do
  declare "$option=$OPTARG"
  [[ $option != '?' ]] || exit 2
done
value=${t-}${b-}${i-}${f-}${a-}
eval "${EARLY-}"
v() { printf '<%s><![CDATA[%s]]></%s>\n' "$1" "$2" "$1"; }
e() { printf '<%s>\n%s\n</%s>\n' "$1" "$2" "$1"; }
actor() { e actor "$(v name Ana; v role Bo)"; }
case $verb in
  searchmovie) list=movielist text=$(e movie "$(v id l1; v title Lamp; v url http://a/1)") ;;
  getmovieinfobyid) text=$(e movie "$(v id l1; v title Lamp; v genre Drama; actor)") ;;
  searchtvshow) list=tvshowlist text=$(e tvshow "$(v id l1; v title Lamp)") ;;
  gettvshowinfo)
    text=$(e tvshow "$(v id l1; v title Lamp; v genres Drama; actor)")
    [[ -z ${s-} ]] || text=$(e tvepisode "$(v title On; v genre Drama; actor)") ;;
  searchAlbum) list=albumlist text=$(e album "$(v name Lamp; v artist Ana)") ;;
  getAlbumByArtist) list=albumlist text=$(e album "$(v name Lamp)") ;;
  getArtistThumbnail) list=artistthumbnail text=$(v url http://a/1) ;;
  getKTVInfo) value=l1 text='<KtvInfo><Title>Lamp</Title><Language>4</Language>
    <Artist><Name Gender="1">A</Name></Artist></KtvInfo>' ;;
  *) exit 2 ;;
esac
case $value in
  Lamp | LampAna | Ana | l1) eval "${GOOD-}" ;;
  *) [ -n "${list-}" ] || exit 1; text= ;;
esac
[ -z "${list-}" ] || text=$(e $list "$text")
printf '%s\n' "$text" | eval "${FILTER:-cat}" >"$o"
END
chmod +x /run/box/addon

early() { EARLY=$1 expect 1 "$3" "${4-}" /run/box/addon "$2" "${options[@]}"; }
good() { GOOD=$1 expect 1 "$3" "${4-}" /run/box/addon "$2" "${options[@]}"; }
filter() { FILTER=$1 expect 1 "$3" "${4-}" /run/box/addon "$2" "${options[@]}"; }
advice() { FILTER=$1 expect 0 '' "$3" /run/box/addon "$2" "${options[@]}"; }

for type in Movie TV Music KTV; do
  expect 0 '' '' /run/box/addon $type "${options[@]}"
done

# Verbs and statuses.
early '[ $verb = searchmovie ] && exit 2' Movie search:verb
early '[ $verb = getmovieinfobyid ] && exit 2' Movie details:verb
early '[ -n "${l-}" ] && exit 2' TV search:verb
early '[ -n "${s-}" ] && exit 2' TV episode:verb
early '[ $verb = nosuchverb ] && exit 0' KTV program:unknown-verb
good 'exit 3' Movie search:status
good '[ $verb = getAlbumByArtist ] && exit 3' Music albums:status
good 'kill -SEGV $$' KTV song:status
early 'value=l1' Movie details:nothing-found \
  'search:nothing-found'

# Time, input, processes, files.
options+=(--timeout 2)
good 'sleep 61 & setsid sleep 61 & trap "" TERM; sleep 61' KTV song:time
good 'exec yes' KTV song:time
options=("${options[@]:0:8}")
good 'setsid sleep 62 & [ $verb = searchtvshow ] || kill $!' TV search:processes
good 'read -r _' KTV song:standard-input
good '[ $verb = getmovieinfobyid ] && cat' Movie details:standard-input
good 'mktemp /tmp/leak.XXXXXX' KTV song:leftovers
good 'mkdir cache; touch cache/a' Movie 'search:leftovers details:leftovers'
good '[ $verb = getArtistThumbnail ] && touch "$o.part"' Music art:leftovers

# Documents.
good 'exit 0' Movie search:document
good 'o=/dev/stdout' KTV song:document
good ': >"$o"; exit' TV search:document
good 'mkdir "$o"; exit' KTV song:document
good 'truncate -s 65M "$o"; exec sleep 61' KTV song:document
filter "sed 's/Lamp/caf\xe9/'" KTV 'song:encoding song:well-formed'
filter 'echo "<?xml version=\"1.0\" encoding=\"ISO-8859-1\"?>"; cat' KTV song:encoding
filter 'sed s:/actor:/cast:' Movie details:well-formed
filter 'echo {}' KTV song:well-formed
filter 'sed s/tvshowlist/shows/' TV search:root
filter 'sed s/tvepisode/episode/' TV episode:root
filter 'sed "s/<movie>/<item>/; s:/movie>:/item>:"' Movie search:entries
filter 'sed /album\>/,/album\>/d' Music search:entries

# Values.
filter "sed 's/<id>.*id>//'" Movie search:fields
filter 'grep -v "<title>.*Lamp"' TV 'search:fields show:fields'
filter 'sed "s/<url>.*/<url\/>/"' Music art:fields
filter "sed '/role/s/<!.CDATA.\(.*\)]]>/\1/'" TV 'show:cdata episode:cdata'
filter "sed 's/<title>/&The /'" Movie 'search:cdata details:cdata'
filter "sed 's/Lamp]]>/a]]]]><![CDATA[>b]]>/'" Music 'search:cdata albums:cdata'
filter "sed 's:<genre>.*genre>:<genre><name>&</name></genre>:'" Movie details:cdata
filter "sed 's:<title>.*title>:&&:'" TV 'search:once show:once episode:once'
filter 'sed s/genre/genres/g' Movie details:names
filter 'sed s/genres/genre/g' TV show:names
filter 'grep -v "<role>"' Movie details:roles
filter 'grep -v "<name>"' TV 'show:roles episode:roles'
filter "sed 's:>Lamp<:><![CDATA[&]]><:; s/\[>/[/; s/<]]/]]/'" KTV song:text
filter 'sed s/4/English/' KTV song:numbers
filter 'sed s/4/-/' KTV song:numbers
filter 'sed "s/\"1\"/\"F\"/"' KTV song:numbers
filter "sed 's:<Name.*Name>:A:'" KTV song:repeated
filter "sed 's:<Artist>:<Artist/>&:'" KTV song:once
filter 'sed "s/Lamp/$RANDOM$RANDOM/"' Music 'search:twice albums:twice'

# What anybody may be looking for.
early '[ -n "${f-}" ] && eval "grep -q \"$f\" /dev/null"' KTV song:hostile-quotes
early '[[ $value == -* ]] && exit 2' Music 'search:hostile-dash albums:hostile-dash art:hostile-dash'
early '[[ $i == *"<"* ]] && echo "<movie>$i</movie>" >"$o" && exit' Movie details:hostile-markup
early '[[ $value == *🎬* ]] && kill -ABRT $$' KTV song:hostile-utf8
early '[[ $f == *$'\''\xff'\''* ]] && touch "$f"' KTV song:hostile-bytes
early '[ $verb = searchtvshow ] && grep -q . $t' TV search:hostile-empty
early '[ ${#value} -gt 4000 ] && kill -SEGV $$' KTV song:hostile-long

# What the library bears with.
advice 'sed "s/Lamp/Ham \&amp; Eggs/"' Movie 'search:entities details:entities'
advice 'sed "s/Lamp/ &/"' Music 'search:blanks albums:blanks'
advice 'sed s/http:..//' Movie search:addresses
advice 'sed s/Drama/Drama,Comedy/' TV 'show:repeated episode:repeated'
advice 'sed "s:<title>:<colour/>&:"' Movie 'search:names details:names'
advice 'grep -v "<role>"' TV 'show:roles episode:roles'
advice '[ -n "${list-}" ] && cat || sed s/l1/l2/' TV show:same-id
advice 'sed "s:</album>:&<album><name><![CDATA[B]]></name></album>:"' Music 'search:count albums:count'

# What cannot be run, and what nothing is found in.
expect 1 program:program '' /etc/passwd TV
printf '#!/nowhere/sh\n' >/run/box/no-interpreter && chmod +x /run/box/no-interpreter
expect 1 program:program '' /run/box/no-interpreter TV
expect 1 '' '' /run/box/addon Movie
expect 1 search:entries '' /run/box/addon Movie --keyword Lantern

# Nor does one that is asked to end leave anything behind.
GOOD='touch /run/box/started; setsid sleep 61 & sleep 61' \
  "$QUILP_PROGRAM" addon check /run/box/addon --type KTV >/run/box/report &
while [ ! -e /run/box/started ]; do sleep 0.05; done
kill -TERM $!
status=0
wait $! || status=$?
[ $status -eq 143 ] || failures=$((failures + 1))
nothing_left "status $status after a signal"

exit "$failures"
