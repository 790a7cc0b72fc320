#!/bin/sh
# What quilp tells of the registry, of searches and of the platform, beside what the library does.
# Runs in the box, with the sample site.
set -u
failures=0
conf=/etc/config/zorp.conf

fail() {
  printf 'FAILED: %s\n' "$*" >&2
  failures=$((failures + 1))
}

# expect STATUS PATTERN ARGUMENT...: the pattern is looked for in the output made one line.
expect() {
  status=$1 pattern=$2
  shift 2
  actual=0
  output=$("$QUILP_PROGRAM" "$@" 2>/tmp/errors) || actual=$?
  [ "$actual" = "$status" ] || fail "quilp $*: status $actual instead of $status: $output"
  printf '%s\n' "$output" | tr -s '\n ' '  ' | grep -Eq "$pattern" ||
    fail "quilp $*: not $pattern: $output"
}

# reason CODE STATUS ARGUMENT...: why a search finds nothing, and its status, which the search has too.
reason() {
  code=$1 wanted=$2 kind=$3
  shift 3
  expect "$wanted" "\"code\" : \"$code\"" explain "$kind" "$@" --format json
  expect "$wanted" '' "$kind" search "$@"
}

errors() {
  grep -Eq "$1" /tmp/errors || fail "no message $1: $(cat /tmp/errors)"
}

# The built-in route: what was fetched, and what the rows have.
: >$conf
expect 0 'words Paper Lighthouse in an address Paper%20Lighthouse .*no section has the Type Movie' \
  explain movie 'Paper.Lighthouse.2011'
expect 0 'find\?ref_=nv_sr_fn&q=Lighthouse&s=tt HTTP 200, [0-9]{3,} bytes and 4 more.* rows 2' \
  explain movie Lighthouse -n 2
expect 0 'filled url 2, id 2, title 2, year 1, outline 1 missing year 1, outline 1' \
  explain movie Lighthouse -n 2
expect 0 'rows 1 filled id 1, title 1, first_air_date 1, poster 1, outline 1 *$' \
  explain tv 'Signal Row' -n 1
expect 0 '"Fog.*"http" : 200,.*"rows" : 1' explain music Fog --artist 'Tin Harbour' --format json
expect 0 'faultmoved%20Paper&s=tt HTTP 200' explain movie 'faultmoved Paper' -n 1

for kind in movie tv; do
  reason no-results 1 $kind nosuchtitle
  reason error-page 1 $kind fault500-Row
  reason refused 1 $kind fault503-Row
  reason empty-page 1 $kind faultempty-Row
  reason client-failed 1 $kind faultclosed-Row
done
reason no-rows 1 movie 'faultcut Paper Lighthouse'
reason no-results 1 music Nosuchalbum
reason error-page 1 music fault500-Fog
reason refused 1 music fault503-Fog
expect 1 '(fault503-Fog"&type=album HTTP 503, 25 bytes .*){3}' explain music fault503-Fog
reason empty-page 1 music faultempty-Fog
reason malformed-page 1 music faultcut-Fog
reason client-failed 1 music faultclosed-Fog
expect 1 'exit status 18: the connection to musicbrainz.org ended' explain music faultclosed-Fog

# The add-on route. Each section's shell writes its own name down, and the arguments it got.
shell() {
  {
    echo '#!/bin/sh'
    echo 'echo "${0##*/} $*" | sed "s/ -o .*//" >>/tmp/ran'
    echo 'for file; do :; done'
    printf '%s\n' "$2"
  } >"/etc/config/$1"
  chmod +x "/etc/config/$1"
}

section() { # NAME CLASS TYPE ENABLE
  printf '[%s]\nClass=%s\nType=%s\nEnable=%s\nShell=/etc/config/%s\n' "$1" "$2" "$3" "$4" "$1" >>$conf
}

row() {
  echo "<${1}list><$1><title><![CDATA[A]]></title><name>A</name><id/></$1></${1}list>"
}

for kind in movie tvshow album; do
  shell "$kind" "printf '%s' '$(row $kind)' >\"\$file\""
done
section movie Kestrawind Movie TRUE
section tvshow Kestrawind TV TRUE
section album Other Music TRUE
printf '[tvshow]\nLANG=fra\n' >/etc/config/catalox.conf
for arguments in 'movie|A.b_2009' 'tv|A.b' 'tv|A.b|-l|en' 'music|A.b|--artist|C' 'music|A|-n|3'; do
  IFS='|'
  # shellcheck disable=SC2086  # the arguments are words
  set -- $arguments
  unset IFS
  rm -f /tmp/ran
  kind=$1
  shift
  expect 0 'status 0 rows 1 filled (title|name) 1 missing' explain "$kind" "$@"
  expect 0 '^<' "$kind" search "$@"
  [ "$(uniq /tmp/ran | wc -l) $(wc -l </tmp/ran)" = '1 2' ] ||
    fail "$arguments: other arguments: $(cat /tmp/ran)"
done
expect 0 'route the add-on of \[movie\] command /etc/config/movie searchmovie -t "A b" -n 10 -o /tmp' \
  explain movie 'A b'

shell movie 'exit 42'
reason shell-failed 42 movie x
shell movie 'kill $$'
reason shell-failed 1 movie x
shell movie 'rm -f "$file"'
reason no-document 1 movie x
shell movie ': >"$file"'
reason empty-document 1 movie x
shell movie 'echo "<movielist><movie>" >"$file"'
reason malformed-document 1 movie x
shell movie 'echo "<movies/>" >"$file"'
reason wrong-document 1 movie x
shell movie 'echo "<movielist/>" >"$file"'
reason no-results 1 movie x
shell movie 'echo "<movielist><movie><id>x</id></movie></movielist>" >"$file"'
reason empty-rows 1 movie x
chmod -x /etc/config/movie /etc/config/album
reason shell-not-executable 1 movie x
errors '^quilp: the add-on of \[[a-z]*\] cannot be started: Permission denied$'
reason shell-not-executable 1 music x
shell album 'echo "<albumlist><album><name>x" >"$file"'
reason malformed-document 0 music x
shell album 'exit 42'
reason shell-failed 1 music x

# The registry. The list names the sections whose shells are run.
serves() { # MEDIA USE SECTION ARGUMENT...: "null" for the built-in route
  media=$1 use=$2 wanted=$3
  shift 3
  rm -f /tmp/ran
  "$QUILP_PROGRAM" "$@" >/dev/null 2>&1
  ran=null
  [ -e /tmp/ran ] && ran=$(sed 's/ .*//' /tmp/ran)
  told=$("$QUILP_PROGRAM" addon list --format json 2>/tmp/errors | sed -n "/\"$media\" :/,/}/p" |
    sed -n "s/.*\"$use\" : \"*\([^\",]*\).*/\1/p")
  [ "$wanted $wanted" = "$ran $told" ] || fail "$media: $wanted wanted, $ran ran, $told told"
}

: >$conf
for name in off other lower one two three; do
  shell $name 'echo "<x/>" >"$file"'
done
section off Kestrawind Movie true
section other Other Movie TRUE
section lower kestrawind Movie TRUE
section one Kestrawind Movie TRUE
section two Kestrawind Movie TRUE
section three Other Music TRUE
printf '[album]\nCLASS = "Kestrawind" ; ours\nTYPE=Music\nenable=TRUE\n' >>$conf
printf '[tv]\nClass=Kestrawind\nType=tv\nEnable=TRUE\n[a:b]\nClass=Kestrawind\nType=KTV\nEnable=TRUE\n' \
  >>$conf
chmod -x /etc/config/three
serves Movie print one movie search x
serves TV print null tv search 'Signal Row'
serves KTV records null karaoke x
expect 0 'Movie \[one\] \[one\] TV built-in built-in Music \[album\] \[three\] KTV built-in -' addon list
expect 0 ' one Kestrawind Movie yes /etc/config/one yes .* album Kestrawind Music yes no tv' addon list
expect 0 '\[off\] not enabled: Enable is "true", not "TRUE" \[other\] its Class is "Other"' addon list
expect 0 '\[lower\] its Class is "kestrawind", .*\[two\] \[one\] comes first' addon list
expect 0 '\[three\] not for records: its Class .*\[three\] /etc/config/three cannot be executed' addon list
expect 0 '\[album\] not for print: \[three\] comes first \[album\] no Shell is given' addon list
expect 0 '\[tv\] its Type, "tv", is none of Movie' addon list
chmod +x /etc/config/three
serves Music print three music search x
section tvs Kestrawind TV TRUE
shell tvs ''
serves TV print tvs tv search x
expect 1 '\[tv' explain tv x

echo 'no value' >>$conf
expect 1 'zorp.conf is malformed at line [0-9]+ .*Movie built-in' addon list
expect 1 '' movie search nosuchtitle
[ "$(wc -l </tmp/errors)" = 1 ] || fail "more than one line: $(cat /tmp/errors)"
serves Movie print null movie search x
chmod 0 $conf
expect 1 'cannot be read: Permission denied.*Movie built-in' addon list
expect 1 '' movie search nosuchfilm
errors '^quilp: nothing found; the registry /etc/config/zorp.conf cannot be read: Perm'
rm -f $conf
expect 1 '"problem" : "is missing"' addon list --format json
expect 1 '' movie search nosuchtitle
errors '^quilp: nothing found; the registry /etc/config/zorp.conf is missing$'
: >$conf

# What the platform lacks.
expect 1 '' movie search nosuchtitle
errors '^quilp: nothing found$'
rm -f /var/tmp/*
chmod 555 /var/tmp
reason client-failed 1 movie Lighthouse
errors '^quilp: .* to its file; /var/tmp cannot be written: Permission denied$'
expect 0 '^<' music search Fog
chmod 755 /var/tmp

# A curl that gets pages for people, one that does nothing, and none.
curl_is() {
  rm -f /sbin/curl
  printf '#!/bin/sh\n%s\n' "$1" >/sbin/curl
  chmod +x /sbin/curl
}
curl_is 'while [ "$1" != -o ]; do shift; done; echo "<p>Enter the CAPTCHA</p>" >"$2"'
reason challenge-page 1 tv Row
curl_is exit
reason no-page 1 tv Row
rm /sbin/curl
reason client-missing 1 movie x
errors '^quilp: there is no /sbin/curl$'
reason client-missing 1 music x
section movie Kestrawind Movie TRUE
chmod +x /etc/config/movie
reason empty-rows 1 movie x
grep -q curl /tmp/errors && fail "an add-on needs no curl: $(cat /tmp/errors)"

expect 2 '' explain
expect 2 '' explain movie
expect 2 '' addon
expect 2 '' addon list --format xml
[ "$failures" = 0 ]
