#!/bin/sh
# In the place of curl, or of an add-on: writes its arguments down, each ended by a zero byte, and
# answers with /etc/config/page, or with .xml and .json beside it for the music services.
printf '%s\0' "$0" $# "$@" >>/etc/config/asked
page=/etc/config/page
case $* in
  *https://musicbrainz.org/*) page=$page.xml ;;
  *https://webservice.fanart.tv/*) page=$page.json ;;
esac
file=/dev/stdout
while [ $# -gt 1 ]; do
  case $1 in
    -o) file=$2; shift ;;
    -D) echo 'HTTP/1.1 200 OK' >"$2"; shift ;;
  esac
  shift
done
cat $page >"$file"
