#!/bin/sh
# An add-on of every type, which starts no other program unless $SPOIL says what goes wrong.
set -eu
text='A text that is too long for the inside of a string'
fields="<title><![CDATA[$text]]></title><id><![CDATA[12345]]></id><name><![CDATA[$text]]></name>"
cast="<actor><name><![CDATA[$text]]></name><role><![CDATA[$text]]></role></actor>"
case $1${4-} in
  searchmovie*) root=movielist entry=movie ;;
  searchtvshow*) root=tvshowlist entry=tvshow ;;
  getmovieinfobyid*) root=movie entry=genre ;;
  gettvshowinfo-s)
    root=tvepisode entry=genre  # with two values for one field
    cast="$cast<url><![CDATA[$text]]></url><thumbnail><![CDATA[$text]]></thumbnail>" ;;
  gettvshowinfo*) root=tvshow entry=genres ;;
  getArtistThumbnail*) root=artistthumbnail entry=url ;;
  getKTVInfo*)
    root=KtvInfo entry=Gain
    cast="<Title>$text</Title><Artist><Name Gender=\"1\">$text</Name></Artist>
<Genre><Name>Pop</Name></Genre>" ;;
  *) root=albumlist entry=album ;;
esac
for file; do :; done
list="<$entry>$fields<![CDATA[$text]]></$entry>"
document="<$root>$fields$list$list$cast</$root>"
case ${SPOIL-} in
  '') printf '%s\n' "$document" >"$file" ;;
  status) echo "$document" >"$file"; exit 3 ;;
  signal) echo "$document" >"$file"; kill -9 $$ ;;
  nothing) ;;
  empty) : >"$file" ;;
  cut) printf '%.60s' "$document" >"$file" ;;
  root) printf '<other>%s</other>' "$document" >"$file" ;;
  bytes) printf '\0\377\376' >"$file" ;;
  program) head -c 100000 /usr/bin/env >"$file" ;;
  deep) { echo "<$root>"; yes '<b>' | head -n 2000000; } >"$file" ;;
  fifo) mkfifo "$file" ;;
  folder) mkdir "$file" ;;
  endless) ln -s /dev/zero "$file" ;;
  loop) ln -s "$file" "$file" ;;
  huge) truncate -s 1G "$file" ;;
  roleless) echo "<$root><actor><name><![CDATA[Ann]]></name></actor></$root>" >"$file" ;;
  large) { echo "<$root>"; yes "$list" | head -n 2000; echo "</$root>"; } >"$file" ;;
  child) echo "$document" >"$file"; sleep 2 & ;;
  slow) echo "$document" >"$file"; sleep 0.1 ;;
  loud) echo "$document" >"$file"; head -c 300000 /dev/zero; head -c 300000 /dev/zero >&2 ;;
esac
