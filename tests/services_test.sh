#!/bin/bash
# The add-ons that ask services, against a server of our own, by TLS. Runs in the box.
# services_test.sh FOLDER, where they are; with "check", whether they keep their contract, for which one
# of them needs a minute, as it asks once a second.
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
server=$!
trap 'kill $server' EXIT
for ((i = 0; i < 100; ++i)); do
  { : >/dev/tcp/127.0.0.1/8395; } 2>/dev/null && break
  sleep 0.1
done

# Other settings and another cache for what follows: settings SERVICE LINE...
settings() {
  rm -rf /tmp/cache
  mkdir /tmp/cache
  printf '[cache]\npath=/tmp/cache/http.db\n' >$QUILP_CONFIG
  for service in coverartarchive fanart musicbrainz tmdb tvmaze wikidata wikipedia; do
    printf '[%s]\nbase=%s/%s\ncertificates=/tmp/certificate.pem\n' $service $here $service
    [ $service != tmdb ] || echo key=k3y
    [ $service != wikipedia ] || echo "base=$here/wikipedia/{language}"
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
  "$QUILP_PROGRAM" addon check "$folder/$1" "${@:2}" >/tmp/out || fail "$*: $(cat /tmp/out)"
}

# works ADD-ON: quilp addon test says so.
works() {
  local output
  output=$(${QUILP_EMULATOR-} "$folder/$1" test 2>&1)
  [[ $output == "$1: "*answers ]] || fail "$1 test: $output"
}

settings
if [ "${2-}" = check ]; then
  keeps tvmaze --type TV --keyword 'Salt Tide'
  keeps tmdb --type Movie --keyword 'Paper Boat'
  keeps tmdb --type TV --keyword Flutlicht --episode 2
  keeps musicbrainz --type Music --album 'Breakwater "Live"' --artist 'Mira Holm'
  keeps wikidata --type Movie --keyword 'Copper Gate'
  keeps wikidata --type TV --keyword Mooring
  exit $((failures > 0))
fi

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

works tmdb
export QUILP_LANGUAGE=de-AT
row 0 '<movie><id>8001;<title>Das Papierboot;<url>https://image.tmdb.org/t/p/w500/p8001.jpg;<year>2011;<outline>A boat of paper.;<original_title>The Paper Boat;<votes>1200;;<movie><id>8002;<title>The Barge;<url>https://image.tmdb.org/t/p/w500/p8002.jpg;<year>2012;<outline>Eine Fähre.;<original_title>La Barque;;<movie><id>8003;<title>Boot;<outline>Ein Boot.;<original_title>Boot;;' tmdb searchmovie -t 'Paper Boat' -n 5
QUILP_YEAR=2012 row 0 '<movie><id>8002;<title>The Barge;<url>https://image.tmdb.org/t/p/w500/p8002.jpg;<year>2012;<outline>Eine Fähre.;<original_title>La Barque;;' tmdb searchmovie -t 'Paper Boat' -n 1
row 0 '<title>Das Papierschiff;<year>2011;<rating>7.3;<id>8001;<imdb>tt8000001;<director>Ana Quist;<mpaa>12;<company>Quay Films;<country>Norway;<genre>Drama;<actor><name>Mira Holm;<role>Edda;;<actor><name>Tom Reed;<role>;;<outline>Ein Boot aus Papier.;<plot>Ein Boot aus Papier.;<poster>https://image.tmdb.org/t/p/w500/en.jpg;' tmdb getmovieinfobyid -i 8001
QUILP_LANGUAGE=de row 0 '<title>Das Papierboot;<year>2011;<rating>7.3;<id>8001;<imdb>tt8000001;<director>Ana Quist;<mpaa>PG;<company>Quay Films;<country>Norway;<genre>Drama;<actor><name>Mira Holm;<role>Edda;;<actor><name>Tom Reed;<role>;;<outline>Ein Boot aus Papier.;<plot>Ein Boot aus Papier.;<poster>https://image.tmdb.org/t/p/w500/en.jpg;' tmdb getmovieinfobyid -i imdb:tt8000001
row 0 '<title>Floodlight;<id>8101;<imdb>tt8100001;<first_air_date>2017-09-01;<last_air_date>2019-10-04;<poster>https://image.tmdb.org/t/p/w500/p8101.jpg;<banner>https://image.tmdb.org/t/p/w1280/b8101.jpg;<outline>A harbour at night.;<rating>8.0;<actor><name>Olaf Berg;<role>Kern;;<genres>Crime;<duration>52 min;<content_rating>TV-MA;<network>Hafen TV;<creator>Ana Quist;' tmdb gettvshowinfo -i 8101 -l en
row 0 '<title>Flutlicht;<id>8101;<imdb>tt8100001;<first_air_date>2017-09-01;<last_air_date>2019-10-04;<poster>https://image.tmdb.org/t/p/w500/p8101.jpg;<banner>https://image.tmdb.org/t/p/w1280/b8101.jpg;<outline>A harbour at night.;<rating>8.0;<actor><name>Olaf Berg;<role>Kern;;<genres>Crime;<duration>52 min;<content_rating>16;<network>Hafen TV;<creator>Ana Quist;' tmdb gettvshowinfo -i 8101 -l de-DE
row 0 '<title>The Dyke;<id>8150;<air_date>2017-09-08;<thumbnail>https://image.tmdb.org/t/p/w300/s8150.jpg;<outline>La digue cède.;<actor><name>Olaf Berg;<role>Kern;;<actor><name>Ida Falk;<role>Pilot;;<director>Ana Quist;<rating>8.0;' tmdb gettvshowinfo -i 8101 -s 1 -e 2 -l fr-CA
row 1 'tmdb: nothing found' tmdb getmovieinfobyid -i 9
unset QUILP_LANGUAGE
settings tmdb key=eyJ.t0ken poster_size=w92
row 0 '<title>The Paper Boat;<year>2011;<rating>7.3;<id>8001;<imdb>tt8000001;<director>Ana Quist;<mpaa>PG;<company>Quay Films;<country>Norway;<genre>Drama;<actor><name>Mira Holm;<role>Edda;;<actor><name>Tom Reed;<role>;;<outline>A boat of paper.;<plot>A boat of paper.;<poster>https://image.tmdb.org/t/p/w92/en.jpg;' tmdb getmovieinfobyid -i 8001
grep -q '^/tmdb/movie/8001?.* Bearer eyJ.t0ken ' /tmp/log || fail "the token is not sent"
! grep -aqr 'k3y\|t0ken' /tmp/cache || fail "the cache has a key"
settings tmdb key= poster_size=w500
row 1 'tmdb: there is no key: [tmdb] of /tmp/quilp.conf wants key= or key_file=' tmdb getmovieinfobyid -i 8001

# crowd ADD-ON REQUESTS SECONDS VERB OPTION...: of many processes that ask for something else each, the service
# hears no more than it allows; the others say why they have no answer.
crowd() {
  local addOn=$1 requests=$2 seconds=$3 i many=200 lookups=()
  shift 3
  settings "$addOn" timeout=3
  : >/tmp/log
  for ((i = 0; i < many; ++i)); do
    "$folder/$addOn" "$@" "crowd $i" -o /tmp/crowd.$i >/dev/null 2>/tmp/crowd.$i.error &
    lookups[i]=$!
  done
  for i in "${!lookups[@]}"; do
    wait "${lookups[i]}" || grep -q "so soon again$\|cannot be reached" /tmp/crowd.$i.error || fail "$addOn: $(cat /tmp/crowd.$i.error)"
  done
  awk '{ print $NF }' /tmp/log | sort -n | awk -v requests="$requests" -v seconds="$seconds" '
    { at[NR] = $1 }
    NR > requests && $1 - at[NR - requests] < seconds { ++fast }
    END { if (fast || NR < requests) { print NR " requests, " fast " too fast"; exit 1 } }' >&2 || fail "$addOn: pace"
}
if [ -z "${QUILP_EMULATOR-}" ]; then  # which takes long to start programs
  crowd tvmaze 20 10 searchtvshow -n 1 -l en -t
  crowd musicbrainz 1 1 searchAlbum -n 1 -a "" -b
fi

settings
works musicbrainz
row 0 '<album><name>Breakwater "Live";<artist>Mira Holm & Tom Reed;<releasedate>1999-04;<image>https://covers.example.org/12-500.jpg;;<album><name>Breakwater;<artist>Mira Holm;;' musicbrainz searchAlbum -b 'Breakwater "Live"' -a 'Mira Holm' -n 5
row 0 '<album><name>Breakwater "Live";<artist>Mira Holm & Tom Reed;<releasedate>1999-04;<image>https://covers.example.org/12-500.jpg;;' musicbrainz searchAlbum -b 'Breakwater -- Live' -a '' -n 1
row 0 '<album><name>Neap;<releasedate>1997;;<album><name>Slack Water;<releasedate>2004-01-01;;<album><name>Breakwater (live);<releasedate>1998;<image>https://covers.example.org/12-500.jpg;;' musicbrainz getAlbumByArtist -a 'mira holm' -n 5
row 0 '' musicbrainz getArtistThumbnail -a 'ミラ・ホルム: Mira Holm' -n 5
row 0 '<url>https://upload.example.org/thumb/960px-mira.jpg;<url>https://upload.example.org/band.png;' musicbrainz getArtistThumbnail -a 'Mira Holm' -n 5
row 0 '' musicbrainz getArtistThumbnail -a 'Nobody' -n 5
settings fanart key=fk3y
row 0 '<url>https://assets.example.org/thumb3.jpg;<url>https://assets.example.org/thumb2.jpg;' musicbrainz getArtistThumbnail -a 'Mira Holm' -n 2
works wikidata
export QUILP_LANGUAGE=de-AT
row 0 '<movie><id>Q910001;<title>Das Kupfertor;<year>1987;<outline>1987 film by Ana Quist;<alternative_title>Kupfertor;<imdb>tt9100001;;<movie><id>Q910009;<title>Gate II;;' wikidata searchmovie -t 'Copper: -Gate' -n 5
row 0 '<title>Das Kupfertor;<year>1987;<id>Q910001;<imdb>tt9100001;<director>Ana Quist;<country>Norwegen;<genre>Filmdrama;<actor><name>Mira Holm;<role>Gatekeeper;;<actor><name>Ana Quist;<role>The Smith;;<outline>The Copper Gate is a 1987 film about a smith. (Wikipedia, https://en.wikipedia.org/wiki/The_Copper_Gate_(film), CC BY-SA 4.0);<plot>The Copper Gate is a 1987 film about a smith. (Wikipedia, https://en.wikipedia.org/wiki/The_Copper_Gate_(film), CC BY-SA 4.0);<poster>https://upload.example.org/960px-gate.jpg;' wikidata getmovieinfobyid -i Q910001
row 0 '<title>Das Kupfertor;<year>1987;<id>Q910001;<imdb>tt9100001;<director>Ana Quist;<country>Norwegen;<genre>Filmdrama;<actor><name>Mira Holm;<role>Gatekeeper;;<actor><name>Ana Quist;<role>The Smith;;<outline>The Copper Gate is a 1987 film about a smith. (Wikipedia, https://en.wikipedia.org/wiki/The_Copper_Gate_(film), CC BY-SA 4.0);<plot>The Copper Gate is a 1987 film about a smith. (Wikipedia, https://en.wikipedia.org/wiki/The_Copper_Gate_(film), CC BY-SA 4.0);<poster>https://upload.example.org/960px-gate.jpg;' wikidata getmovieinfobyid -i imdb:tt9100001
row 0 '<title>Gate II;<id>Q910009;' wikidata getmovieinfobyid -i Q910002
row 1 'wikidata: nothing found' wikidata getmovieinfobyid -i Q910003
row 1 'wikidata: nothing found' wikidata getmovieinfobyid -i 'Q1|Q2'
unset QUILP_LANGUAGE
row 0 '<title>Mooring;<id>Q930001;<first_air_date>2001-09;<last_air_date>2003-05-04;<outline>television series;<duration>45 min;<network>Harbour One;' wikidata gettvshowinfo -i Q930001 -l en
row 0 '<title>Cast Off;<id>Q930003;<air_date>2001-09-17;<director>Ana Quist;' wikidata gettvshowinfo -i Q930001 -s 1 -e 1 -l en
row 1 'wikidata: nothing found' wikidata gettvshowinfo -i Q930001 -s 1 -e 2 -l en

[ "$failures" -eq 0 ]
