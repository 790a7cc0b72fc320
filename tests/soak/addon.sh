#!/bin/sh
# An add-on of every type. One of its arguments may say what goes wrong.
set -eu
verb=$1
season=${4-}
for file; do :; done
case " $* " in
  *' fails '*) exit 3 ;;
  *' killed '*) kill -9 $$ ;;
  *' writesnothing '*) exit 0 ;;
  *' leavesachild '*) sleep 2 & ;;
  *' slow '*) sleep 0.1 ;;
  *' shouts '*) head -c 300000 /dev/zero; head -c 300000 /dev/zero >&2 ;;
esac
fields='<id><![CDATA[id]]></id><title><![CDATA[A title]]></title><name><![CDATA[A name]]></name>'
cast='<actor><name><![CDATA[Ann]]></name><role><![CDATA[Role]]></role></actor>'
case $verb$season in
  searchmovie*) root=movielist entry=movie ;;
  searchtvshow*) root=tvshowlist entry=tvshow ;;
  getmovieinfobyid*) root=movie entry=genre ;;
  gettvshowinfo-s) root=tvepisode entry=genre ;;
  gettvshowinfo*) root=tvshow entry=genre ;;
  getArtistThumbnail*) root=artistthumbnail entry=url ;;
  getKTVInfo*)
    root=KtvInfo entry=Genre
    cast='<Title>A song</Title><Artist><Name Gender="1">Bo</Name></Artist>'
    ;;
  *) root=albumlist entry=album ;;
esac
document="<$root>$fields<$entry>$fields<![CDATA[text]]></$entry>$cast</$root>"
case " $* " in
  *' garbage '*) head -c 100000 /usr/bin/env >"$file" ;;
  *' cutoff '*) printf '%.60s' "$document" >"$file" ;;
  *' deep '*) { echo "<$root>"; yes '<a>' | head -n 20000; } >"$file" ;;
  *' otherroot '*) printf '<other>%s</other>' "$document" >"$file" ;;
  *' large '*)
    { echo "<$root>"; yes "<$entry>$fields</$entry>" | head -n 2000; echo "</$root>"; } >"$file"
    ;;
  *' roleless '*) echo "<$root><actor><name><![CDATA[Ann]]></name></actor></$root>" >"$file" ;;
  *) printf '%s\n' "$document" >"$file" ;;
esac
