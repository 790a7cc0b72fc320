#!/bin/bash
# The add-on that asks others: what it makes of their answers, and of those that have none. Runs in the
# box. chain_test.sh CHAIN CATALOGUE GENERATOR
set -u
failures=0
emulator=(${QUILP_EMULATOR-})
chain_program=$1
chain=("${emulator[@]}" "$1")
catalogue=$2
generate=("${emulator[@]}" "$3")
export QUILP_CONFIG=/tmp/quilp.conf

fail() {
  echo "$*" >&2
  failures=$((failures + 1))
}

# add_on NAME: an add-on of the script on standard input, in which "e NAME VALUE..." writes elements.
add_on() {
  {
    echo '#!/bin/sh'
    echo 'e() { while [ $# -gt 1 ]; do printf "<%s><![CDATA[%s]]></%s>\n" "$1" "$2" "$1"; shift 2; done; }'
    echo 'id=; verb=$1; shift; while [ $# -gt 1 ]; do case $1 in -o) file=$2 ;; -i) id=$2 ;; -s) season=$2 ;; -e) episode=$2 ;; esac; shift 2; done'
    echo 'exec >"$file"'
    cat
  } >"/tmp/$1"
  chmod +x "/tmp/$1"
}

# sources TYPE PROGRAM...
sources() {
  printf '[chain]\ntimeout=2\n%s\n[catalogue]\npath=/tmp/catalogue.db\n' "$*" |
    sed '3s/ /=/' >$QUILP_CONFIG
}

# answer VERB OPTIONS...: the document's values in one line.
answer() {
  rm -f /tmp/answer
  timeout 20 "${chain[@]}" "$@" -o /tmp/answer 2>/tmp/errors || { echo "status $?"; return; }
  xmllint --noout /tmp/answer || fail "$*: no document"
  sed '1,2d; /^\t*<\//d; s/<!\[CDATA\[//; s/\]\]>.*//; s/^\t*<//; s/>/ /; s/ $//' /tmp/answer | paste -sd ,
}

# same WANTED VERB OPTIONS...
same() {
  local wanted=$1 got
  shift
  got=$(answer "$@")
  [ "$got" = "$wanted" ] || fail "$*: $got $(cat /tmp/errors)"
}

add_on red.sh <<'END'
case $verb:$id in
  searchmovie:*) echo '<MovieList><movie>'; e id 1 title 'The Lamp' year 1994 url r1; echo '</movie><movie>'
    e id 2 title 'The Salt Lamp' year 1999; echo '</movie><movie>'
    e id 3 title 'The Lamp' year 1950; echo '</movie></MovieList>' ;;
  getmovieinfobyid:2) echo '<movie>'; e id 2 title 'The Salt Lamp' imdb tt0000001 genre Drama plot ''
    echo '<actor>'; e name Ana; echo '</actor></movie>' ;;
  *) exit 1 ;;
esac
END
add_on blue.sh <<'END'
case $verb:$id in
  searchmovie:*) echo '<movielist><movie>'; e id b5 title 'Salzlampe' original_title 'Salt Lamp, The' year 2000 outline O
    echo '</movie><movie>'; e id b6 title 'the lamp' year 1994 outline 'a & b'; echo '</movie></movielist>' ;;
  getmovieinfobyid:imdb:tt0000001) echo '<movie>'; e id b5 title Salzlampe plot P genre Krimi company C; echo '</movie>' ;;
  searchAlbum:) echo '<albumlist><album>'; e name Ember artist Ana releasedate 2001; echo '</album></albumlist>' ;;
  getArtistThumbnail:) echo '<artistthumbnail>'; e url p1 url p2; echo '</artistthumbnail>' ;;
  *) exit 1 ;;
esac
END
add_on green.sh <<'END'
case $verb in
  searchAlbum) echo '<albumlist><album>'; e name Other; echo '</album><album>'
    e name EMBER artist Ana image I; echo '</album></albumlist>' ;;
  getArtistThumbnail) echo '<artistthumbnail>'; e url p2 url p3; echo '</artistthumbnail>' ;;
  *) exit 1 ;;
esac
END

# Titles that are the same are one result; what two find comes first.
sources Movie /tmp/red.sh /tmp/blue.sh
same "movie,id red:1,title The Lamp,year 1994,url r1,outline a & b,movie,\
id red:2,title The Salt Lamp,year 1999,original_title Salt Lamp, The,outline O,movie,\
id red:3,title The Lamp,year 1950" searchmovie -t lamp -n 9
sources Movie /tmp/blue.sh /tmp/red.sh
same "movie,id blue:b5,title Salzlampe,original_title Salt Lamp, The,year 2000,outline O" \
  searchmovie -t lamp -n 1
sources Music /tmp/blue.sh /tmp/green.sh
same "album,name Ember,artist Ana,releasedate 2001,image I,album,name Other" searchAlbum -b e -a '' -n 5
same "url p2,url p1,url p3" getArtistThumbnail -a Ana -n 5

# Details: what the first does not say comes from others, which know the title's identifier.
sources Movie /tmp/green.sh /tmp/blue.sh /tmp/red.sh
same "id red:2,title The Salt Lamp,imdb tt0000001,genre Drama,actor,name Ana,role,plot P,company C" \
  getmovieinfobyid -i red:2
same "id blue:b5,title Salzlampe,plot P,genre Krimi,company C" getmovieinfobyid -i imdb:tt0000001
for id in red:9 other:1 2 : '' red: -n; do
  same "status 1" getmovieinfobyid -i "$id"
done

# The episode of a show: the show's identifier leads the others to it.
add_on lamp.sh <<'END'
case $verb:$id in
  gettvshowinfo:7) if [ -n "$season" ]; then echo '<tvepisode>'; e title Ebb id 71 rating 8; echo '</tvepisode>'
    else echo '<tvshow>'; e id 7 title 'Salt Lamp' imdb tt0000007; echo '</tvshow>'; fi ;;
  *) exit 1 ;;
esac
END
add_on rope.sh <<'END'
case $verb:$id:$season:$episode in
  gettvshowinfo:imdb:tt0000007:2:3) echo '<tvepisode>'; e title Flut id r9 outline O; echo '</tvepisode>' ;;
  *) exit 1 ;;
esac
END
sources TV /tmp/rope.sh /tmp/lamp.sh
same "title Ebb,id lamp:71,rating 8,outline O" gettvshowinfo -i lamp:7 -s 2 -e 3 -l en

# One that hangs, dies, or writes rubbish costs its part only.
spoiled() {
  add_on "$1.sh"
  sources Movie "/tmp/$1.sh" /tmp/blue.sh
  case $(answer searchmovie -t lamp -n 1) in
    movie,id\ blue:b5,*) grep -q "^chain: $1: $2" /tmp/errors || fail "$1: $(cat /tmp/errors)" ;;
    *) fail "$1: no answer: $(cat /tmp/errors)" ;;
  esac
}
start=$SECONDS
spoiled hangs 'no answer in time' <<<'sleep 60 & wait'
[ $((SECONDS - start)) -le 4 ] || fail "waited for one that hangs"
# What was killed is collected by the box.
for ((i = 0; i < 20; ++i)); do
  pgrep -x sleep >/dev/null || break
  sleep 0.1
done
[ $i -lt 20 ] || fail "processes are left"
spoiled dies 'ended by signal 9' <<<'kill -9 $$'
spoiled fails 'exit status 3' <<<'echo "<movielist/>"; exit 3'
spoiled silent 'no document' <<<'rm "$file"'
spoiled rubbish 'no document' <<<'head -c 100000 /dev/urandom'
spoiled cut 'no document' <<<'printf "<movielist><movie>"'
spoiled other 'no document' <<<'echo "<tvshowlist/>"'
spoiled endless '' <<<'yes "<movielist>"'
sources Movie /tmp/none /tmp/blue.sh
case $(answer searchmovie -t lamp -n 1) in
  movie,*) grep -q '^chain: none: cannot be started' /tmp/errors || fail "$(cat /tmp/errors)" ;;
  *) fail "one that does not exist" ;;
esac
add_on strange.sh <<<'echo "<movielist>text<movie/><movie><![CDATA[x]]></movie><b><id>1</id></b></movielist>"'
sources Movie /tmp/strange.sh
same "" searchmovie -t lamp -n 3
sources Movie /tmp/hangs.sh /tmp/dies.sh
same "status 1" searchmovie -t lamp -n 3
sources Movie /tmp/chain
printf '#!/bin/sh\nexec %s "$@"\n' "${chain[*]}" >/tmp/chain
chmod +x /tmp/chain
same "status 1" searchmovie -t lamp -n 3
grep -q 'a chain cannot be part of a chain' /tmp/errors || fail "a chain of chains: $(cat /tmp/errors)"
ls -d /tmp/quilp-chain.* 2>/dev/null && fail "folders are left"

# With the offline catalogue, as add-ons are checked.
mkdir /tmp/sets
"${generate[@]}" /tmp/sets --titles 400
sources Movie "$catalogue" /tmp/blue.sh
"$QUILP_PROGRAM" catalogue import /tmp/sets --to /tmp/catalogue.db >/dev/null 2>&1 || fail "import"
# checked TYPE KIND: of a title of that kind.
checked() {
  local title
  title=$(awk -F'\t' -v kind="$2" '$2 == kind { print $3; exit }' /tmp/sets/title.basics.tsv)
  sources "$1" "$catalogue"
  "$QUILP_PROGRAM" addon check "$chain_program" --type "$1" --keyword "$title" >/tmp/report 2>&1 ||
    fail "$1: $(grep -A 3 FAIL /tmp/report)"
  tail -n 2 /tmp/report | grep -q '0 failed, 0 with a warning, 0 skipped' || fail "$1: $(tail -n 2 /tmp/report)"
}
if [ ${#emulator[@]} -eq 0 ]; then
  checked Movie movie
  checked TV tvSeries
fi

[ "$failures" -eq 0 ]
