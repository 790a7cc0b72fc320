#!/bin/sh
# A music add-on that answers from a small table of its own. libquilp runs it as
#
#   addon-music.sh searchAlbum -b ALBUM -a ARTIST -n COUNT -o FILE
#   addon-music.sh getAlbumByArtist -a ARTIST -n COUNT -o FILE
#   addon-music.sh getArtistThumbnail -a ARTIST -n COUNT -o FILE
#
# once it is registered with Type=Music; see quilp-addon(7). An empty ARTIST means any artist.
set -eu

# name|artist|releasedate
table() {
  cat <<'END'
Fog Signals|The Tin Harbour|2009-04-01
Salt & Rope|The Tin Harbour|2011-10-14
Night Ferry|Solène Aubry|2013
The Long Pier|Solène Aubry|2016-06-03
END
}

element() {
  printf '<%s><![CDATA[%s]]></%s>\n' "$1" "$2" "$1"
}

# The rows that contain the requested album and artist, at most COUNT.
rows() {
  table | album=${album-} artist=$artist awk -F'|' '
    index(tolower($1), tolower(ENVIRON["album"])) && index(tolower($2), tolower(ENVIRON["artist"]))' |
    head -n "$count"
}

albums() {
  echo '<albumlist>'
  rows | while IFS='|' read -r name by released; do
    echo '<album>'
    element name "$name"
    [ "$1" = getAlbumByArtist ] || element artist "$by"
    element releasedate "$released"
    element image "https://images.example/$released.jpg"
    echo '</album>'
  done
  echo '</albumlist>'
}

pictures() {
  echo '<artistthumbnail>'
  rows | while IFS='|' read -r name by released; do
    element url "https://images.example/artist-$released.jpg"
  done
  echo '</artistthumbnail>'
}

verb=${1-}
[ $# -eq 0 ] || shift
while getopts a:b:n:o: option; do
  case $option in
    a) artist=$OPTARG ;;
    b) album=$OPTARG ;;
    n) count=$OPTARG ;;
    o) file=$OPTARG ;;
    *) exit 2 ;;
  esac
done

case $verb in
  searchAlbum | getAlbumByArtist) albums "$verb" >"$file" ;;
  getArtistThumbnail) pictures >"$file" ;;
  *) exit 2 ;;
esac
