#!/bin/sh
# An add-on of every type, which starts no other program.
set -eu
text='A text that is too long for the inside of a string'
list="<title><![CDATA[$text]]></title><id><![CDATA[12345]]></id>"
name="<name><![CDATA[$text]]></name>"
cast="<actor>$name<role><![CDATA[$text]]></role></actor>"
case $1$4 in
  searchmovie*) document="<movielist><movie>$list</movie><movie>$list</movie></movielist>" ;;
  getmovieinfobyid*) document="<movie>$list<genre><![CDATA[Drama]]></genre>$cast</movie>" ;;
  searchtvshow*) document="<tvshowlist><tvshow>$list</tvshow><tvshow>$list</tvshow></tvshowlist>" ;;
  gettvshowinfo-s) document="<tvepisode>$list$cast</tvepisode>" ;;
  gettvshowinfo*) document="<tvshow>$list$cast</tvshow>" ;;
  getArtistThumbnail*) document='<artistthumbnail><url><![CDATA[u]]></url></artistthumbnail>' ;;
  getKTVInfo*)
    document="<KtvInfo><Title>$text</Title><Artist><Name Gender=\"1\">$text</Name></Artist>
<Genre><Name>Pop</Name></Genre></KtvInfo>" ;;
  *) document="<albumlist>
<album>$name</album><album>$name</album></albumlist>" ;;
esac
for file; do :; done
printf '%s\n' "$document" >"$file"
