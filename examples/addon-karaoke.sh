#!/bin/sh
# A karaoke add-on for songs stored as ARTIST/TITLE.EXTENSION. libquilp runs it as
#
#   addon-karaoke.sh getKTVInfo -f PATH -o FILE
#
# once it is registered with Type=KTV; see quilp-addon(7). Values are plain text here, not CDATA.
set -eu

escaped() {
  printf '%s' "$1" | tr -d '\000-\037' | iconv -c -f UTF-8 -t UTF-8 |
    sed 's/&/\&amp;/g; s/</\&lt;/g; s/>/\&gt;/g' || true
}

song() {
  name=${path##*/}
  folder=${path%"$name"}
  folder=${folder%/}
  title=$(escaped "${name%.*}")
  artist=$(escaped "${folder##*/}")
  echo '<KtvInfo>'
  echo "<Title>$title</Title>"
  echo "<TitleWordCount>$(printf '%s' "$title" | wc -w)</TitleWordCount>"
  [ -z "$artist" ] || echo "<Artist><Name Gender=\"0\">$artist</Name></Artist>"
  echo '<Genre><Name>Karaoke</Name></Genre>'
  echo '</KtvInfo>'
}

verb=${1-}
[ $# -eq 0 ] || shift
while getopts f:o: option; do
  case $option in
    f) path=$OPTARG ;;
    o) file=$OPTARG ;;
    *) exit 2 ;;
  esac
done

case $verb in
  getKTVInfo) song >"$file" ;;
  *) exit 2 ;;
esac
