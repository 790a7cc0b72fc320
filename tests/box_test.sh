#!/bin/bash
# What tools/box promises. QUILP_SITE names the site's program.
set -u
checkout=$(cd "$(dirname "$0")/.." && pwd)
box=$checkout/tools/box
outside=$(mktemp -d)
trap 'rm -rf "$outside"' EXIT
failed=0

expect() { # NAME EXPECTED ACTUAL
  if [ "$2" != "$3" ]; then
    printf 'FAILED: %s\n  expected: %s\n  actual:   %s\n' "$1" "$2" "$3"
    failed=1
  fi
}

status_of() {
  "$@" >/dev/null 2>&1
  echo $?
}

inside() {
  "$box" bash -c "$1" 2>&1
}

mkdir "$outside/bin"
ln -s "$(command -v dirname)" "$outside/bin"
expect "no bubblewrap" 77 "$(PATH=$outside/bin status_of /bin/bash "$box" true)"
printf '#!/bin/sh\necho "bwrap: no namespace" >&2; exit 1\n' >"$outside/bin/bwrap"
chmod +x "$outside/bin/bwrap"
export PATH=$outside/bin:$PATH
expect "the system refuses the box" 77 "$(status_of "$box" true)"
expect "it says why" "tools/box: the system refuses the box: bwrap: no namespace" \
  "$("$box" true 2>&1 | head -n 1)"
rm "$outside/bin/bwrap"
if [ $failed -eq 0 ] && [ "$(status_of "$box" true)" = 77 ]; then
  exit 77  # the rest needs the box
fi

expect "the command's status is passed on" 43 "$(status_of "$box" sh -c 'exit 43')"
expect "so is the signal that ended it" 143 "$(status_of "$box" sh -c 'kill $$')"
expect "wrong usage" 125 "$(status_of "$box" --no-such-option true)"
expect "a site that does not start" 125 "$(status_of "$box" --site=--no-such-option true)"
expect "loopback is the only network" lo \
  "$(inside "sed -n 's/^ *\([^:]*\):.*/\1/p' /proc/net/dev")"
expect "folders are empty at start, but for the client" /sbin/curl \
  "$(inside "find /tmp /var/tmp /etc/config /sbin/ ! -type d ! -path '$checkout/*'")"
expect "the client is the real one" "" "$(inside '[ /sbin/curl -ef /usr/bin/curl ] || echo other')"
expect "the environment is cleaned" "unset 1" \
  "$(SECRET=x GTEST_SHARD_INDEX=1 inside 'echo "${SECRET-unset} $GTEST_SHARD_INDEX"')"
expect "what is started inside ends with the box" 0 \
  "$(status_of timeout 20 bash -c "cat < <('$box' sh -c 'sleep 60 &')")"

name=box-test-$$
inside "touch /tmp/$name /var/tmp/$name /etc/config/$name /sbin/$name /$name" >/dev/null
expect "nothing is left outside" "" \
  "$(ls -d {,/tmp/,/var/tmp/,/etc/config/,/sbin/}/$name "$checkout/$name" 2>/dev/null)"
expect "system and checkout are read-only" "no no" \
  "$(inside "for d in /usr '$checkout'; do touch \$d/$name 2>/dev/null || echo no; done" | xargs)"
"$box" --writable "$outside" touch "$outside/file"
expect "but for the folder that was asked for" file "$(ls -I bin "$outside")"

expect "/tmp holds as much as was asked for" 8192 \
  "$("$box" --tmp-size 8192 sh -c 'cat /dev/zero >/tmp/file 2>/dev/null; wc -c </tmp/file')"

client='/sbin/curl -s -L -A Mozilla/5.0 --connect-timeout 15 --max-time 25'
expect "the site answers for the service, and says so in its log" \
  "The Paper Lighthouse www.imdb.com GET /find?q=paper&s=tt 200" \
  "$("$box" --site sh -c "$client 'https://www.imdb.com/find?q=paper&s=tt' |
     grep -o -m 1 'The Paper Lighthouse<' | tr -d '<'; cat /run/box/site.log" | xargs)"
expect "the certificate is checked" 60 \
  "$(status_of "$box" --site sh -c "$client https://example.org/")"
expect "without a site there is no service" 6 \
  "$(status_of "$box" sh -c "$client https://www.imdb.com/")"

exit $failed
