#!/bin/sh
# A movie add-on that answers from its own small table. libquilp runs it as
#
#   addon-movie.sh searchmovie -t KEYWORD -n COUNT -o FILE
#   addon-movie.sh getmovieinfobyid -i ID -o FILE
#
# once it is registered in /etc/config/zorp.conf:
#
#   [TableMovies]
#   Class=Kestrawind
#   Type=Movie
#   Enable=TRUE
#   Shell=/path/to/addon-movie.sh
#
# It writes a document into FILE and exits with 0, or with another status if it has no document.
# libquilp reads only the first CDATA section of an element. Every actor must have a role.

# id|title|year|rating|director|genre|actor|role|outline
table() {
  cat <<'END'
pl11|The Paper Lighthouse|2011|7.5|Odile Brandvik|Drama|Ansel Quist|The Keeper|A lighthouse is folded out of sea charts & the ships obey it.
se12|Salt & Ember|2012|6.8|Pilar Ostrow|Comedy|Solène Aubry|Vera "Salt" Marsh|Two cooks share one stove, and one secret.
nb13|Night Bus to Marrow|2013|6.6|Bea Lomax|Thriller|June Pardoe|Night nurse|The driver knows every stop but the last.
zt09|Zoë and the Tide|2009|8.1|Émile Sørby|Family|Zoé Kerr|Zoë|She asked the sea for one more hour.
lt14|1950 Letters|2014|7.0|Ida Roth|Drama|Leo Brandt|The Postman|A postman keeps what he cannot deliver.
END
}

element() {
  printf '<%s><![CDATA[%s]]></%s>\n' "$1" "$2" "$1"
}

search() {
  echo '<movielist>'
  table | keyword=$keyword awk -F'|' 'index(tolower($2), tolower(ENVIRON["keyword"]))' |
    head -n "$count" |
    while IFS='|' read -r id title year rating director genre actor role outline; do
      echo '<movie>'
      element url "https://images.example/$id-small.jpg"
      element id "$id"
      element title "$title"
      element year "$year"
      element outline "$outline"
      echo '</movie>'
    done
  echo '</movielist>'
}

details() {
  table | id=$id awk -F'|' '$1 == ENVIRON["id"]' |
    while IFS='|' read -r id title year rating director genre actor role outline; do
      echo '<movie>'
      element title "$title"
      element year "$year"
      element rating "$rating"
      element id "$id"
      element director "$director"
      element genre "$genre"
      echo '<actor>'
      element name "$actor"
      element role "$role"
      echo '</actor>'
      element outline "$outline"
      element plot "$outline"
      element poster "https://images.example/$id.jpg"
      echo '</movie>'
    done
}

verb=$1
shift
while getopts t:n:i:o: option; do
  case $option in
    t) keyword=$OPTARG ;;
    n) count=$OPTARG ;;
    i) id=$OPTARG ;;
    o) file=$OPTARG ;;
    *) exit 2 ;;
  esac
done

case $verb in
  searchmovie) search >"$file" ;;
  getmovieinfobyid) details >"$file" && [ -s "$file" ] ;;
  *) exit 2 ;;
esac
