#!/bin/bash
# quilp scan over the offline catalogue: what is one item, which match is sure, and why. Runs in the
# box. scan_match_test.sh ADD-ON
set -u
failures=0
mkdir -p /tmp/sets /tmp/m
export QUILP_CONFIG=/tmp/quilp.conf
printf '[catalogue]\npath=/tmp/catalogue.db\n' >"$QUILP_CONFIG"
printf "#!/bin/sh\nexec %s \"\$@\"\n" "${QUILP_EMULATOR-} $1" >/etc/config/addon
chmod +x /etc/config/addon
printf '[m]\nClass=Kestrawind\nType=Movie\nEnable=TRUE\nShell=/etc/config/addon\n[t]\nClass=Kestrawind\nType=TV\nEnable=TRUE\nShell=/etc/config/addon\n' \
  >/etc/config/zorp.conf

fail() {
  echo "$*" >&2
  failures=$((failures + 1))
}

set_of() {
  tr '|' '\t' >"/tmp/sets/$1.tsv"
}

set_of title.basics <<'END'
tconst|titleType|primaryTitle|originalTitle|isAdult|startYear|endYear|runtimeMinutes|genres
tt0000001|movie|The Salt Lamp|La lampe de sel|0|1999|\N|101|Drama
tt0000002|movie|Harbour Lights|Harbour Lights|0|2011|\N|95|Comedy
tt0000003|movie|Harbour Lights|Harbour Lights|0|1987|\N|90|Comedy
tt0000004|movie|Fig|Fig|0|1950|\N|80|Drama
tt0000005|movie|Fig|Fig|0|2004|\N|80|Drama
tt0000006|tvSeries|Signal Row|Signal Row|0|2008|2012|45|Drama
tt0000007|tvSeries|Signal Row|Signal Row|0|1994|1995|45|Drama
tt0000011|tvEpisode|The Points|The Points|0|2009|\N|45|Drama
tt0000012|tvEpisode|Night Mail|Night Mail|0|2009|\N|45|Drama
tt0000013|tvEpisode|Pilot|Pilot|0|1994|\N|45|Drama
tt0000014|tvEpisode|Down Line|Down Line|0|2009|\N|45|Drama
tt0000015|tvEpisode|Up Line|Up Line|0|1995|\N|45|Drama
END
set_of title.ratings <<'END'
tconst|averageRating|numVotes
tt0000002|7.0|5000
tt0000003|6.0|4000
tt0000004|6.0|3
tt0000005|6.0|9000
END
set_of title.akas <<'END'
titleId|ordering|title|region|language|types|attributes|isOriginalTitle
tt0000001|1|Die Salzlampe|DE|\N|imdbDisplay|\N|0
END
set_of title.episode <<'END'
tconst|parentTconst|seasonNumber|episodeNumber
tt0000011|tt0000006|2|1
tt0000012|tt0000006|2|2
tt0000013|tt0000007|1|1
tt0000014|tt0000006|3|1
tt0000015|tt0000007|3|1
END
"$QUILP_PROGRAM" catalogue import /tmp/sets 2>/tmp/errors >/tmp/output || fail "import: $(cat /tmp/errors)"

cd /tmp/m || exit
mkdir -p 'Disc (1999)/BDMV/STREAM' parts/Sample Show/'Season 2' nfo 'Artist - Album (2001)'
mkdir -p 'Harbour Lights (1987)/VIDEO_TS'
touch 'Harbour Lights (1987)/VIDEO_TS/VTS_01_1.VOB' 'Harbour Lights (1987)/VIDEO_TS/VTS_01_2.VOB'
touch parts/The.Salt.Lamp.1999.cd1.avi parts/The.Salt.Lamp.1999.cd2.avi parts/Sample/salt-sample.avi
touch 'Die.Salzlampe.1999.1080p.mkv' 'Harbor Lights 2011.mkv' 'Harbour Lights.mkv' Fig.avi 'Fig (1962).avi'
touch 'Signal.Row.S02E01-E02.mkv' 'Signal Row - S01E01.mkv' 'Signal.Row.S09E09.mkv'
touch 'nfo/whatever.mkv' 'abc {imdb-tt0000004}.mkv' 'Artist - Album (2001)/01.flac' 'Artist - Album (2001)/02.flac'
echo '<movie><uniqueid type="imdb">tt0000001</uniqueid></movie>' >nfo/whatever.nfo
touch 'wrong.mkv' 'Unheard Of 1920.mkv'
printf '# settled\nwrong.* = tt0000005\n' >/tmp/overrides

"$QUILP_PROGRAM" scan . --format csv --overrides /tmp/overrides 2>/tmp/errors >/tmp/rows
# file|kind|match|match year|episode's title|id|sure
cut -d , -f 1,2,8-10,12,14 /tmp/rows | tail -n +2 | LC_ALL=C sort >/tmp/short
diff /tmp/short - <<'END' >&2 || fail "other rows"
./Artist - Album (2001),album,,,,,false
./Die.Salzlampe.1999.1080p.mkv,movie,The Salt Lamp,1999,,tt0000001,true
./Fig (1962).avi,movie,Fig,2004,,tt0000005,false
./Fig.avi,movie,Fig,2004,,tt0000005,true
./Harbor Lights 2011.mkv,movie,Harbour Lights,2011,,tt0000002,true
./Harbour Lights (1987),movie,Harbour Lights,1987,,tt0000003,true
./Harbour Lights.mkv,movie,Harbour Lights,2011,,tt0000002,false
./Signal Row - S01E01.mkv,episode,Signal Row,1994,Pilot,tt0000007,true
./Signal.Row.S02E01-E02.mkv,episode,Signal Row,2008,The Points,tt0000006,true
./Signal.Row.S09E09.mkv,episode,Signal Row,2008,,tt0000006,false
./Unheard Of 1920.mkv,movie,,,,,false
./abc {imdb-tt0000004}.mkv,movie,Fig,1950,,tt0000004,true
./nfo/whatever.mkv,movie,The Salt Lamp,1999,,tt0000001,true
./parts/The.Salt.Lamp.1999.cd1.avi,movie,The Salt Lamp,1999,,tt0000001,true
./wrong.mkv,movie,Fig,2004,,tt0000005,true
END
cat /tmp/errors

# Explained one by one, each file comes to what the scan made of it, and the points add up.
mkdir -p 'Signal Row/Season 3'
touch 'Signal Row/Season 3/Signal Row S03E01.mkv' 'Signal Row/Season 3/Signal Row S02E01.mkv'
"$QUILP_PROGRAM" scan . --format json --overrides /tmp/overrides >/tmp/rows.json 2>/dev/null
python3 - <<'END' || fail "explain decides otherwise than scan"
import json, os, subprocess
kept = ("kind", "title", "year", "match", "id", "match_episode_title", "confidence", "sure", "reason")
for row in json.load(open("/tmp/rows.json")):
    command = [os.environ["QUILP_PROGRAM"], "explain", row["file"], "--format", "json"]
    done = subprocess.run(command + ["--overrides", "/tmp/overrides"], stdout=subprocess.PIPE)
    assert done.returncode == (0 if row["match"] else 1), (row["file"], done)
    told = json.loads(done.stdout)
    assert [told[key] for key in kept] == [row[key] for key in kept], (row, told)
    assert len(told["candidates"]) == len(row["candidates"]), row["file"]
    for one in told["candidates"]:
        assert sum(part["points"] for part in one["parts"]) == one["confidence"], one
    for part in sum((field["from"] for field in told["read"]), []):
        assert row["file"].encode()[part["begin"]:part["end"]].decode() == part["text"], part
END
rm -r 'Signal Row'
"$QUILP_PROGRAM" explain 'Gone 1920 {imdb-tt0000099}.mkv' >/tmp/output 2>&1
grep -q 'set aside .*tt0000099: the name has the identifier, but' /tmp/output ||
  fail "explain: $(cat /tmp/output)"
"$QUILP_PROGRAM" explain './Die.Salzlampe.1999.1080p.mkv' >/tmp/output 2>&1
diff /tmp/output - <<'END' >&2 || fail "another explanation"
file             ./Die.Salzlampe.1999.1080p.mkv
kind             movie
title            Die Salzlampe
                   read from "Die.Salzlampe" at byte 2
year             1999
                   read from "1999" at byte 16
resolution       1080p
container        mkv
candidate        The Salt Lamp (1999), tt0000001: 99
                   by its other title "die salzlampe"
                   +99 the title is the same
                   +0 the year fits
match            The Salt Lamp (1999), tt0000001
decision         sure: confidence 99, sure from 80 on
reason           the title is the same; the year fits
END
for wrong in . parts/Sample/salt-sample.avi; do
  ! "$QUILP_PROGRAM" explain "$wrong" >/dev/null 2>&1 || fail "explain $wrong is no error"
done

# A scan that was interrupted anywhere ends with the same rows.
cd /
"$QUILP_PROGRAM" scan /tmp/m --format json 2>/dev/null | sort >/tmp/whole
for cut in 1 40 700 2500; do
  rm -f /tmp/memory
  "$QUILP_PROGRAM" scan /tmp/m --format json --resume /tmp/memory >/dev/null 2>&1
  head -c $cut /tmp/memory >/tmp/cut
  (cd /tmp/m && "$QUILP_PROGRAM" scan ../m --format json --resume /tmp/cut >/dev/null 2>&1)
  "$QUILP_PROGRAM" scan /tmp/m --format json --resume /tmp/cut 2>/dev/null | sort |
    diff - /tmp/whole >&2 || fail "resumed after $cut bytes: other rows"
done

# A report is one page that asks nothing, and no title of it is markup.
mkdir /tmp/evil
touch '/tmp/evil/<img src=x onerror=alert(1)>.mkv'
"$QUILP_PROGRAM" scan /tmp/m /tmp/evil --report /tmp/report.html >/dev/null 2>/tmp/errors ||
  fail "report: $(cat /tmp/errors)"
(cd /tmp && "$QUILP_PROGRAM" scan /tmp/m /tmp/evil --format html 2>/dev/null) | diff -q - /tmp/report.html ||
  fail "--format html is another page"
"$QUILP_PROGRAM" scan /tmp/m --format html >/dev/full 2>/tmp/errors && fail "a page on a full disk"
! grep -qE 'https?://|<img' /tmp/report.html || fail "report: markup of a name, or an address"
python3 - <<'END' || fail "report: other rows"
import json, re
rows = json.loads(re.search('id="rows">(.*?)</script>', open("/tmp/report.html").read(), re.S)[1])
assert sum(row["sure"] for row in rows) == 9
assert any(row["file"].startswith("/tmp/evil/<img") for row in rows)
END

# What is written is whole, lies where media centres look, and can be taken back.
tree() {
  (cd /tmp/m && find . -type f -exec sha1sum {} + | sort -k 2)
}
dressed() {
  "$QUILP_PROGRAM" scan /tmp/m --write nfo --journal "${journal-/tmp/journal}" "$@" >/dev/null 2>/tmp/errors
}
rm -rf '/tmp/m/Artist - Album (2001)'
mkdir '/tmp/m/Signal Row' '/tmp/m/Signal Row/Season 2'
touch '/tmp/m/Signal Row/Season 2/S02E01-E02 - The Points.mkv'
# Two shows of that name have it; the other episode of the folder tells which one.
touch '/tmp/m/Signal Row/Season 2/Signal Row S03E01.mkv'
echo kept >'/tmp/m/Harbor Lights 2011.nfo'
tree >/tmp/before
dressed --dry-run && tree | diff /tmp/before - >&2 || fail "a dry run writes: $(cat /tmp/errors)"
dressed || fail "write: $(cat /tmp/errors)"
tree >/tmp/after
diff <(grep -vxFf /tmp/before /tmp/after | cut -c 43- | LC_ALL=C sort) - <<'END' >&2 || fail "other files"
./Die.Salzlampe.1999.1080p.nfo
./Fig.nfo
./Harbour Lights (1987)/movie.nfo
./Signal Row - S01E01.nfo
./Signal Row/Season 2/S02E01-E02 - The Points.nfo
./Signal Row/Season 2/Signal Row S03E01.nfo
./Signal Row/tvshow.nfo
./Signal.Row.S02E01-E02.nfo
./abc {imdb-tt0000004}.nfo
./parts/The.Salt.Lamp.1999.cd1.nfo
END
[ "$(cat '/tmp/m/Harbor Lights 2011.nfo')" = kept ] || fail "a file that was there is replaced"
diff '/tmp/m/Fig.nfo' - <<'END' >&2 || fail "other NFO of a film"
<?xml version="1.0" encoding="UTF-8" standalone="yes"?>
<movie>
  <title>Fig</title>
  <ratings>
    <rating name="default" max="10" default="true">
      <value>6.0</value>
    </rating>
  </ratings>
  <uniqueid type="imdb" default="true">tt0000005</uniqueid>
  <genre>Drama</genre>
  <year>2004</year>
</movie>
END
[ "$(grep -c '<episodedetails>' '/tmp/m/Signal Row/Season 2/S02E01-E02 - The Points.nfo')" = 2 ] ||
  fail "not one root an episode"
journal=/tmp/journal2 dressed && tree | diff /tmp/after - >&2 && [ ! -e /tmp/journal2 ] ||
  fail "a second run writes: $(cat /tmp/errors)"
dressed --replace || fail "replace: $(cat /tmp/errors)"
grep -q '<movie>' '/tmp/m/Harbor Lights 2011.nfo' || fail "--replace keeps a file"
echo mine >>/tmp/m/Fig.nfo
"$QUILP_PROGRAM" scan --undo /tmp/journal 2>/tmp/errors && fail "a changed file is not told"
grep -q 'left as it is: /tmp/m/Fig.nfo' /tmp/errors || fail "undo: $(cat /tmp/errors)"
rm /tmp/m/Fig.nfo
"$QUILP_PROGRAM" scan --undo /tmp/journal 2>/tmp/errors || fail "undo: $(cat /tmp/errors)"
tree | diff /tmp/before - >&2 || fail "undo leaves another tree"
! ls /tmp/journal* 2>/dev/null || fail "undo leaves its journal"

# Renamed files keep what belongs to them; nothing is overwritten.
touch '/tmp/m/Die.Salzlampe.1999.1080p.en.srt' '/tmp/m/Fig (2004).avi'
tree >/tmp/before
"$QUILP_PROGRAM" scan /tmp/m --rename '{title} ({year}) [{resolution}]' --journal /tmp/journal \
  >/dev/null 2>/tmp/errors || fail "rename: $(cat /tmp/errors)"
for name in 'The Salt Lamp (1999) [1080p].mkv' 'The Salt Lamp (1999) [1080p].en.srt' 'Fig.avi' \
  'parts/The Salt Lamp (1999) - cd2.avi' 'Harbour Lights (2011).mkv'; do
  [ -e "/tmp/m/$name" ] || fail "rename: no $name: $(cat /tmp/errors)"
done
grep -q 'Fig.avi: there is a' /tmp/errors || fail "rename: a collision is not told"
"$QUILP_PROGRAM" scan --undo /tmp/journal 2>/tmp/errors || fail "undo: $(cat /tmp/errors)"
tree | diff /tmp/before - >&2 || fail "undo of names leaves another tree"

# An album is known by its files' tags, also in a folder that says little; who made it counts.
tagged() {  # FILE ARTIST ALBUM YEAR
  printf 'TAG%-30s%-30s%-30s%-4s%-31s' 'A title' "$2" "$3" "$4" '' >"$1"
}
mkdir -p '/tmp/albums/CD 1' '/tmp/albums/Tom Reed - Low Water' '/tmp/albums/Many'
tagged '/tmp/albums/CD 1/01.mp3' 'Anna Lane' 'Low Water' 2003
tagged '/tmp/albums/CD 1/02.mp3' 'Anna Lane' 'Low Water' 2003
printf 'no sound' >'/tmp/albums/CD 1/03.mp3'
touch '/tmp/albums/Tom Reed - Low Water/01.flac'
tagged /tmp/albums/Many/01.mp3 'Anna Lane' 'Low Water' 2003
tagged /tmp/albums/Many/02.mp3 'Tom Reed' 'High Water' 2004
cat >/etc/config/music <<'END'
#!/bin/sh
for file; do :; done
{
  echo '<albumlist>'
  for artist in 'Tom Reed' 'Anna Lane'; do
    echo "<album><name><![CDATA[Low Water]]></name><artist><![CDATA[$artist]]></artist>"
    echo '<releasedate><![CDATA[2003-05-01]]></releasedate></album>'
  done
  echo '</albumlist>'
} >"$file"
END
chmod +x /etc/config/music
printf '[a]\nClass=Kestrawind\nType=Music\nEnable=TRUE\nShell=/etc/config/music\n' >>/etc/config/zorp.conf
"$QUILP_PROGRAM" scan /tmp/albums --format json >/tmp/rows 2>/tmp/errors
diff <(python3 - /tmp/rows <<'END'
import json, sys
for row in json.load(open(sys.argv[1], encoding="utf-8")):
    print(row["file"], row["title"], row["year"], row["match"], row["candidates"][0]["reason"] if row["match"] else "", row["sure"], sep="|")
END
) - <<'END' >&2 || fail "albums: $(cat /tmp/errors)"
/tmp/albums/CD 1|Anna Lane - Low Water|2003|Anna Lane - Low Water|the title is the same; the year fits|True
/tmp/albums/Many|Many|None|Tom Reed - Low Water|the title differs; the name has no year|False
/tmp/albums/Tom Reed - Low Water|Tom Reed - Low Water|None|Tom Reed - Low Water|the title is the same; the name has no year|True
END

# A song's new name tells the same.
mkdir /tmp/KTV
touch '/tmp/KTV/林小雨-夜航船-國語-流行.mkv' '/tmp/KTV/Anna Lane - Tide (Instrumental).MKV'
said() {
  "$QUILP_PROGRAM" name --kind song --format json /tmp/KTV/* | sed 's/"name":"[^"]*",//' | sort
}
said >/tmp/before_songs
"$QUILP_PROGRAM" scan /tmp/KTV --rename '{song}' --journal /tmp/songs >/dev/null 2>/tmp/errors
[ -e '/tmp/KTV/林小雨 - 夜航船 [zh] [style=流行].mkv' ] && [ -e '/tmp/KTV/Anna Lane - Tide [instrumental].MKV' ] ||
  fail "rename of songs: $(cat /tmp/errors)"
said | diff /tmp/before_songs - >&2 || fail "a song's new name tells something else"

# kill -9 in the middle of it: undo takes back what was done.
for delay in 0.01 0.02 0.04 0.08; do
  "$QUILP_PROGRAM" scan /tmp/m --write nfo --rename '{title} {year}' --journal /tmp/journal \
    >/dev/null 2>&1 &
  program=$!
  sleep $delay
  kill -9 $program 2>/dev/null
  wait $program 2>/dev/null
  [ ! -e /tmp/journal ] || "$QUILP_PROGRAM" scan --undo /tmp/journal 2>/tmp/errors ||
    fail "undo after kill -9: $(cat /tmp/errors)"
  tree | diff /tmp/before - >&2 || fail "undo after kill -9 leaves another tree"
done

exit "$failures"
