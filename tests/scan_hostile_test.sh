#!/bin/bash
# quilp scan with titles that want to be more than titles: in names of files, NFO files and the report.
# Runs in the box.
set -u
failures=0
fail() {
  echo "$*" >&2
  failures=$((failures + 1))
}

cat >/etc/config/addon <<'END'
#!/bin/sh
verb=$1
for file; do :; done
title="<title><![CDATA[$(cat /etc/config/title)]]></title><year><![CDATA[2011]]></year>"
case $verb in
  searchmovie) echo "<movielist><movie><id><![CDATA[tt0000001]]></id>$title</movie></movielist>" ;;
  *) echo "<movie><id><![CDATA[tt0000001]]></id>$title</movie>" ;;
esac >"$file"
END
chmod +x /etc/config/addon
printf '[m]\nClass=Kestrawind\nType=Movie\nEnable=TRUE\nShell=/etc/config/addon\n' >/etc/config/zorp.conf
echo '* = tt0000001' >/tmp/overrides

# NEW NAME|TITLE
hostile() {
  cat <<'END'
etc-passwd|../../etc/passwd
a-b-c|a/b\\\\c
hidden|.hidden
titlescriptalert(1)-script|</title><script>alert(1)</script>
safe|\u202Esafe\u2069\u200B\u0085
a - b|a: b
a amp; b|a amp; b
END
  printf '%s|%s\n' "$(printf 'ä%.0s' {1..125})" "$(printf 'ä%.0s' {1..300})"  # 255 bytes with .mkv
}
number=0
while IFS='|' read -r new title; do
  number=$((number + 1))
  printf '%b' "$title" >/etc/config/title
  mkdir -p "/tmp/h/$number/in"
  echo film >"/tmp/h/$number/in/film.mkv"
  cd "/tmp/h/$number/in" || exit 1
  "$QUILP_PROGRAM" scan . --overrides /tmp/overrides --write nfo --rename '{title}' --journal /tmp/journal \
    --report /tmp/report.html >/dev/null 2>/tmp/errors || fail "$number: $(cat /tmp/errors)"
  [ -e "$(printf '%b' "$new").mkv" ] || fail "$number: no $new but $(find . -type f | cat -v)"
  [ -z "$(find /tmp/h/$number -type f ! -path '*/in/*')" ] || fail "$number: a file outside of the folder"
  # The title is text: there, whole, and no element of its own.
  xmllint --noout ./*.nfo 2>/tmp/errors && [ "$(xmllint --xpath 'count(/movie/title/*)' ./*.nfo)" = 0 ] ||
    fail "$number: NFO: $(cat /tmp/errors ./*.nfo)"
  ! grep -qi '<script>alert' /tmp/report.html || fail "$number: the report runs a title"
  "$QUILP_PROGRAM" scan --undo /tmp/journal 2>/tmp/errors || fail "$number: undo: $(cat /tmp/errors)"
  [ "$(find . -type f)" = ./film.mkv ] || fail "$number: undo left $(find . -type f | cat -v)"
done < <(hostile)

# A title that leaves no name leaves the file where it is.
printf '...' >/etc/config/title
cd /tmp/h/1/in && "$QUILP_PROGRAM" scan . --overrides /tmp/overrides --rename '{title}' --journal /tmp/journal \
  >/dev/null 2>/tmp/errors
[ -e film.mkv ] || fail "a title of dots: $(find . -type f)"
exit "$failures"
