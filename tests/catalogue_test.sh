#!/bin/bash
# The offline catalogue: import, search, details, and the add-on. Runs in the box.
# catalogue_test.sh ADD-ON GENERATOR
set -u
failures=0
emulator=(${QUILP_EMULATOR-})
addon=("${emulator[@]}" "$1")
generate=("${emulator[@]}" "$2")
mkdir -p /tmp/sets /tmp/etc
export QUILP_CONFIG=/tmp/etc/quilp.conf
printf '[catalogue]\npath=/tmp/catalogue.db\n' >"$QUILP_CONFIG"

fail() {
  echo "$*" >&2
  failures=$((failures + 1))
}

catalogue() {
  "$QUILP_PROGRAM" catalogue "$@" 2>/tmp/errors
}

# set NAME: writes a data set of the lines on standard input, with tabs for "|".
set_of() {
  tr '|' '\t' >"/tmp/sets/$1.tsv"
}

set_of title.basics <<'END'
tconst|titleType|primaryTitle|originalTitle|isAdult|startYear|endYear|runtimeMinutes|genres
tt0000001|movie|The Salt Lamp|La lampe de sel|0|1999|\N|101|Drama,Mystery
tt0000002|movie|Harbour Lights II|Harbour Lights II|0|2011|\N|95|Comedy
tt0000003|tvSeries|Signal Row|Signal Row|0|2008|2012|45|Drama
tt0000004|tvEpisode|The Points|The Points|0|2009|\N|45|Drama
tt0000005|movie|Salt & "Ember" ]]>|Salt & "Ember" ]]>|1|2020|\N|\N|\N
tt0000006|movie|七日之海|七日之海|0|2001|\N|90|Drama
tt0000007|movie|The Lamp|The Lamp|0|1950|\N|\N|\N
tt0000008|movie|The Lamp|The Lamp|0|1994|\N|\N|\N
tt0000009|movie|Über Ærø|Fig|0|1990|\N|\N|\N
tt0000010|videoGame|Salt Lamp Racing|Salt Lamp Racing|0|1990|\N|\N|\N
tt10000001|movie|Fig|Fig|0|1990|\N|\N|\N
END
set_of title.ratings <<'END'
tconst|averageRating|numVotes
tt0000001|7.8|12000
tt0000003|8.1|5000
tt0000008|6.0|90000
END
set_of title.akas <<'END'
titleId|ordering|title|region|language|types|attributes|isOriginalTitle
tt0000001|1|Die Salzlampe|DE|\N|imdbDisplay|\N|0
tt0000003|1|Ligne des signaux|\N|fr|imdbDisplay|\N|0
END
set_of title.episode <<'END'
tconst|parentTconst|seasonNumber|episodeNumber
tt0000004|tt0000003|2|1
END
set_of title.crew <<'END'
tconst|directors|writers
tt0000001|nm0000001,nm0000003|\N
END
set_of title.principals <<'END'
tconst|ordering|nconst|category|job|characters
tt0000001|1|nm0000002|actress|\N|["Keeper","Self \"Kit\""]
tt0000001|2|nm0000003|actor|\N|\N
END
set_of name.basics <<'END'
nconst|primaryName|birthYear|deathYear|primaryProfession|knownForTitles
nm0000001|Ana Quist|1950|\N|director|\N
nm0000002|Mira Solen|\N|\N|actress|\N
nm0000003|Tor Vale|\N|\N|\N|\N
END

catalogue info >/dev/null && fail "info without a catalogue"
catalogue import /tmp/sets >/tmp/out || fail "import: $(cat /tmp/errors)"
grep -q '^9 titles and 1 episodes' /tmp/out || fail "import: $(cat /tmp/out)"
grep -q 'courtesy of IMDb' /tmp/out || fail "import: no attribution"
catalogue info | grep -q 'titles  *9$' || fail "info"

# first WANTED WORDS...: the identifier of the best result.
first() {
  local wanted=$1 found
  shift
  found=$(catalogue search -n 3 --format json "$@" | sed -n 's/.*"id" : "\(.*\)".*/\1/p' | head -n 1)
  [ "$found" = "$wanted" ] || fail "search $*: $found instead of $wanted"
}
first tt0000001 "The Salt Lamp"
first tt0000001 lamp salt the
first tt0000001 slat lmap
first tt0000001 "Salt Lamp, The"
first tt0000001 die salzlampe
first tt0000001 LAMPE DE SEL
first tt0000001 salt la
first tt0000002 "harbor ligths 2"
first tt0000002 "II Lights Harbour"
first tt0000003 --type tv signal
first "" --type movie signal
first tt0000005 'salt and ember'
first tt0000006 七日海
first tt0000008 the lamp
first tt0000007 the lamp --year 1951
first tt0000009 uber aero
first tt10000001 fig
first tt0000008 "THE ĹAḾṔ"
first "" zzzzqqq
first "" '!!!'

catalogue show tt0000001 >/tmp/out
for line in 'director  *Tor Vale' 'actor  *Mira Solen as Keeper / Self "Kit"' 'runtime  *101 min' \
  'rating  *7.8'; do
  grep -q "^$line\$" /tmp/out || fail "show: no $line"
done
catalogue show tt0000004 | grep -q 'season  *2' || fail "show of an episode"
catalogue show tt9999999 && fail "show of nothing"
catalogue show lamp && fail "show of no identifier"

# The add-on, as a catalogue program runs it, and with the user's own words.
ask() {
  rm -f /tmp/answer
  "${addon[@]}" "$@" -o /tmp/answer 2>/tmp/errors
}
ask gettvshowinfo -i tt0000003 -s 2 -e 1 -l en && grep -q 'CDATA\[The Points\]' /tmp/answer ||
  fail "episode"
ask gettvshowinfo -i tt0000003 -s 2 -e 9 -l en && fail "an episode that is not there"
ask searchtvshow -t "signal row" -n 1 -l fr && grep -q 'CDATA\[Ligne des signaux\]' /tmp/answer ||
  fail "the title in French"
QUILP_NAME="The.Lamp.1950.DVDRip.mkv" ask searchmovie -t "The Lamp" -n 1 &&
  grep -q tt0000007 /tmp/answer || fail "the year of the name"
ask getmovieinfobyid -i tt0000005 && grep -q 'Ember" \]\] >\]\]>' /tmp/answer || fail "end of CDATA"
ask searchmovie -t a -n && fail "an option without a value"
[ -e /tmp/answer ] && fail "a document of a wrong call"
if [ ${#emulator[@]} -eq 0 ]; then
  "$QUILP_PROGRAM" addon check "$1" --type Movie --keyword "The Salt Lamp" >/tmp/out ||
    fail "addon check Movie: $(cat /tmp/out)"
  grep 'passed' /tmp/out | grep -q ' 0 failed, 0 with a warning' || fail "Movie: $(cat /tmp/out)"
  "$QUILP_PROGRAM" addon check "$1" --type TV --keyword "Signal Row" --season 2 --episode 1 \
    >/tmp/out || fail "addon check TV: $(cat /tmp/out)"
  grep 'passed' /tmp/out | grep -q ' 0 failed, 0 with a warning' || fail "TV: $(cat /tmp/out)"
fi

echo "no section and no value" >/tmp/etc/broken.conf
QUILP_CONFIG=/tmp/etc/broken.conf ask getmovieinfobyid -i tt0000001 && fail "settings that cannot be read"
grep -q 'settings cannot be read' /tmp/errors || fail "settings: $(cat /tmp/errors)"
ask $'a\nb' && fail "a verb of two lines"
[ "$(wc -l </tmp/errors)" -eq 1 ] || fail "a message of two lines"

# Broken files: the catalogue stays as it is.
cp /tmp/catalogue.db /tmp/before.db
mkdir /tmp/bad
cp /tmp/sets/*.tsv /tmp/bad
gzip -c /tmp/sets/title.basics.tsv >/tmp/whole.gz
rm /tmp/bad/title.basics.tsv
head -c 200 /tmp/whole.gz >/tmp/bad/title.basics.tsv.gz
catalogue import /tmp/bad >/dev/null && fail "a gzip file that ends early"
grep -q 'title.basics.tsv.gz: the gzip file ends early' /tmp/errors || fail "$(cat /tmp/errors)"
rm /tmp/bad/title.basics.tsv.gz
catalogue import /tmp/bad >/dev/null && fail "no title.basics"
for i in {1..20}; do echo "tt000010$i"; done >>/tmp/bad/title.basics.tsv
cat /tmp/sets/title.basics.tsv >>/tmp/bad/title.basics.tsv
catalogue import /tmp/bad >/dev/null && fail "a file without a header"
cmp /tmp/catalogue.db /tmp/before.db || fail "a failed import changed the catalogue"
[ -e /tmp/catalogue.db.new ] && fail "a failed import left a file"
(cat /tmp/sets/title.basics.tsv; printf 'tt0000011\tmovie\nttx\tmovie\tA\tA\t0\t1\t1\t1\tD\n') |
  sort -s -t $'\t' -k 1,1 | gzip >/tmp/bad/title.basics.tsv.gz
{ head -n 1 /tmp/sets/title.basics.tsv; zcat /tmp/bad/title.basics.tsv.gz | grep -v ^tconst; } |
  gzip >/tmp/bad/sorted.gz
mv /tmp/bad/sorted.gz /tmp/bad/title.basics.tsv.gz
catalogue import /tmp/bad --to /tmp/bad.db >/dev/null || fail "a few broken rows"
grep -q 'title.basics.tsv.gz:1[0-9]*: not 9 columns' /tmp/errors || fail "the row is not named"
grep -q 'broken rows, .*: 2$' /tmp/errors || fail "broken rows: $(cat /tmp/errors)"

# Odd rows: line ends of two bytes, zero bytes, numbers too large, a title twice, text of 300 KB.
mkdir /tmp/odd
{
  head -n 1 /tmp/sets/title.basics.tsv
  printf 'tt0000001\tmovie\tSalt\0Lamp\tSalt\0Lamp\t0\t99999999999\t-1\t1e9\tDrama\n'
  printf 'tt0000002\tmovie\tHarbour\t\\N\t0\t2011\t\\N\t\\N\t\\N\n'
  printf 'tt0000002\tmovie\tHarbour\t\\N\t0\t2012\t\\N\t\\N\t\\N\n'
  printf 'tt0000003\tmovie\t%0300000d\t\\N\t0\t2012\t\\N\t\\N\t\\N\n' 7
} | sed 's/$/\r/' >/tmp/odd/title.basics.tsv
printf 'tconst\taverageRating\tnumVotes\r\ntt0000002\t99.99\t99999999999\r\n' >/tmp/odd/title.ratings.tsv
catalogue import /tmp/odd --to /tmp/odd.db >/tmp/out || fail "odd rows: $(cat /tmp/errors)"
grep -q '^3 titles' /tmp/out || fail "odd rows: $(cat /tmp/out)"
grep -q 'basics.tsv:4: the identifier of the row before' /tmp/errors || fail "a title twice"
printf '[catalogue]\npath=/tmp/odd.db\n' >/tmp/etc/odd.conf
QUILP_CONFIG=/tmp/etc/odd.conf catalogue show tt0000001 | grep -q '^year' && fail "a year too large"
QUILP_CONFIG=/tmp/etc/odd.conf first tt0000001 "salt lamp"
QUILP_CONFIG=/tmp/etc/odd.conf catalogue show tt0000002 | grep -q $'\r' && fail "a line end in a value"
: >/tmp/odd/title.akas.tsv
catalogue import /tmp/odd --to /tmp/odd.db >/dev/null && fail "an empty data set"
head -c 2000000 /dev/zero | tr '\0' x >>/tmp/odd/title.ratings.tsv
rm /tmp/odd/title.akas.tsv
catalogue import /tmp/odd --to /tmp/odd.db >/dev/null && fail "a row of 2 MB"
grep -q 'a line is longer than 1 MB' /tmp/errors || fail "a row of 2 MB: $(cat /tmp/errors)"

# Rows in another order, less memory: the same file.
mkdir /tmp/many /tmp/other
"${generate[@]}" /tmp/many --titles 12000
for file in /tmp/many/*.tsv; do
  { head -n 1 "$file"; tail -n +2 "$file" | tac; } >"/tmp/other/${file##*/}"
  touch -r "$file" "/tmp/other/${file##*/}"
done
for file in akas principals; do  # of which the order counts
  cp -p /tmp/many/title.$file.tsv /tmp/other
done
catalogue import /tmp/many --to /tmp/many.db >/dev/null || fail "$(cat /tmp/errors)"
catalogue import /tmp/other --to /tmp/other.db --memory 64M >/dev/null || fail "$(cat /tmp/errors)"
cmp /tmp/many.db /tmp/other.db || fail "another order, another file"
printf '[catalogue]\npath=/tmp/many.db\n' >/tmp/etc/many.conf
# Of many words that are meant, that of the best known title counts.
QUILP_CONFIG=/tmp/etc/many.conf first tt0032866 "the flo"
QUILP_CONFIG=/tmp/etc/many.conf first tt0032866 "the flutro"

# A file that the host's own build made: the same bytes, the same answers.
same() {
  QUILP_CONFIG=/tmp/etc/host.conf ask "$@"
  echo "$?" >>/tmp/answer
  QUILP_CONFIG=/tmp/etc/host.conf "$QUILP_HOST/tools/libexec/quilp/catalogue" "$@" -o /tmp/answer.host 2>/dev/null
  echo "$?" >>/tmp/answer.host
  cmp -s /tmp/answer /tmp/answer.host || fail "another answer than the host's: $*"
  rm /tmp/answer.host
}
if [ ${#emulator[@]} -gt 0 ]; then
  printf '[catalogue]\npath=/tmp/host.db\n' >/tmp/etc/host.conf
  "$QUILP_HOST/tools/quilp/quilp" catalogue import /tmp/many --to /tmp/host.db >/dev/null || fail "the host's import"
  cmp /tmp/many.db /tmp/host.db || fail "the host's file is another one"
  while IFS=$'\t' read -r id title misspelt; do
    same searchmovie -t "$title"
    same searchmovie -t "$misspelt"
    same searchtvshow -t "$misspelt"
    same getmovieinfobyid -i "$id"
    same gettvshowinfo -i "$id"
  done < <(awk -F '\t' 'NR % 500 == 2 { print $1 FS $3 FS substr($3, 1, 3) substr($3, 5) }' /tmp/many/title.basics.tsv)
fi

# What is no file is neither read nor replaced.
mkfifo /tmp/pipe
mkdir -p /tmp/folder
for path in /tmp/pipe /tmp/folder; do
  printf '[catalogue]\npath=%s\n' $path >/tmp/special.conf
  for command in 'info' 'search salt' 'import /tmp/sets'; do
    QUILP_CONFIG=/tmp/special.conf timeout 10 "$QUILP_PROGRAM" catalogue $command >/tmp/out 2>/tmp/errors
    [ $? -eq 1 ] && grep -q "$path: no regular file" /tmp/errors || fail "$command of $path: $(cat /tmp/errors)"
  done
done
mkfifo /tmp/folder/title.basics.tsv
timeout 10 "$QUILP_PROGRAM" catalogue import /tmp/folder --to /tmp/none.db 2>/tmp/errors
[ $? -eq 1 ] && grep -q 'basics.tsv: no regular file' /tmp/errors || fail "a FIFO: $(cat /tmp/errors)"
[ -p /tmp/pipe ] && [ -d /tmp/folder ] || fail "replaced by a catalogue"

# A damaged file gives an answer or an error.
size=$(stat -c %s /tmp/before.db)
for ((i = 0; i < 60; ++i)); do
  cp /tmp/before.db /tmp/catalogue.db
  printf '\xA5' | dd of=/tmp/catalogue.db bs=1 seek=$((size * i / 60 + i % 37)) conv=notrunc status=none
  for words in "salt lamp" "slat lmap"; do
    timeout 10 "${addon[@]}" searchmovie -t "$words" -n 5 -o /tmp/answer 2>/tmp/errors
    status=$?
    [ $status -le 1 ] || fail "byte $i: status $status"
  done
  timeout 10 "${addon[@]}" getmovieinfobyid -i tt0000001 -o /tmp/answer 2>/tmp/errors
  [ $? -le 1 ] || fail "byte $i: details"
done

[ "$failures" -eq 0 ]
