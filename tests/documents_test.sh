#!/bin/bash
# What the documents show is true: the first program, the commands, the picture of the rooms. Runs in
# the box, beside the sample site; its arguments run the built program of the README.
set -u
top=$(cd "$(dirname "$0")/.." && pwd)
failures=0
fail() {
  echo "$*" >&2
  failures=$((failures + 1))
}

sed -n '/^```cpp$/,/^```$/p' "$top/README.md" | sed '1d;$d' | diff - "$top/examples/search.cc" ||
  fail "README.md: not the example"
sed -n '/^#include <libquilp.h>$/,/^\.EE$/p' "$top/docs/man/libquilp.3" | sed '$d; s/\\e/\\/g' |
  diff - "$top/examples/search.cc" || fail "libquilp.3: not the example"
"$@" 2>/dev/null | grep -q 'tt9000001 The Paper Lighthouse' || fail "the example finds nothing"
found=$("$@" 'zqxjvw' 2>/dev/null) && fail "the example takes an empty record for a hit"
[ -z "$found" ] || fail "the example prints an empty record: $found"

for example in c:c cpp:cc python:py; do
  sed -n "/^\`\`\`${example%:*}\$/,/^\`\`\`\$/p" "$top/docs/integrators.md" | sed '1d;$d' |
    diff - "$top/examples/lookup.${example#*:}" || fail "integrators.md: not the example in ${example%:*}"
done

# Every exported name in the header's comments and in the documents exists.
for name in $(grep -rhoE '\b(vel|imdb|parse|init)[A-Z][A-Za-z]+[a-z_]*\b' "$top"/{include,docs,README.md} | sort -u); do
  grep -rqw "$name" "$top/tests/abi" || fail "no exported name $name"
done

# Every function of the plain interface has a manual page, and the overview names it.
functions=$(grep '^quilp_' "$top/tests/exports.txt")
for name in $functions; do
  grep -q "^$name .- " "$QUILP_MANUAL/$name.3" || fail "no manual page of $name"
  grep -q "^\.BR $name " "$top/docs/man/libquilp.3" || fail "libquilp.3 does not name $name"
done
[ "$(ls "$QUILP_MANUAL")" = "$(sed 's/$/.3/' <<<"$functions" | sort)" ] || fail "other manual pages"

quilp() { "$QUILP_PROGRAM" "$@"; }

# Every command of the program that the README names exists, with the options named.
commands=$(sed -n 's/^| `quilp \([^`]*\)`.*/\1/p' "$top/README.md" | sed 's/\\|/|/g')
[ "$(wc -l <<<"$commands")" -ge 11 ] || fail "README.md: the table of commands is not found"
while read -r -a words; do
  subcommand=()
  for word in "${words[@]}"; do
    [[ $word =~ ^[a-z]+$ ]] || break
    subcommand+=("$word")
  done
  help=$(quilp "${subcommand[@]}" --help) || fail "README.md: no command ${subcommand[*]}"
  for word in "${words[@]}"; do
    if [[ $word =~ ^\[?(-[-a-z]+)]?$ ]]; then
      grep -qE -- "(^|[ ,])${BASH_REMATCH[1]}([ ,]|$)" <<<"$help" ||
        fail "README.md: ${subcommand[*]} has no ${BASH_REMATCH[1]}"
    fi
  done
done <<<"$commands"
for program in $(grep -oE '^    (\./)?(tools|\.ci)/[a-z]+' "$top/README.md" "$top/CONTRIBUTING.md" | sed 's/.*  //'); do
  [ -x "$top/$program" ] || fail "no program $program"
done

# Its examples of commands, as they stand.
cd "$top" || exit
while read -r example; do
  eval "$example" >/tmp/output || fail "README.md: $example: $(cat /tmp/output)"
done < <(sed -n 's/^    \(quilp .*\)/\1/p' README.md)

# The examples of the program's manual page, as they stand.
mkdir -p /tmp/examples/films && cd /tmp/examples || exit
touch films/Night.Bus.to.Marrow.2013.mkv
examples=$(sed -n '/^\.EX$/,/^\.EE$/s/^quilp .*/&/p' "$top/docs/man/quilp.1" | sed 's/\\-/-/g')
[ "$(wc -l <<<"$examples")" -ge 8 ] || fail "quilp.1: the examples are not found"
while read -r example; do
  { eval "$example" >output 2>errors && [ -s output ]; } || fail "quilp.1: $example"
done <<<"$examples"

# The owners' page, as it stands but for its folders. The data sets are there already. Lookups start the
# add-on by themselves, which an emulator does not do for them.
if [ -z "${QUILP_EMULATOR-}" ]; then
  mkdir -p /tmp/data-sets /tmp/media/films
  printf '%s\t%s\t%s\t%s\t%s\t%s\t%s\t%s\t%s\n' \
    tconst titleType primaryTitle originalTitle isAdult startYear endYear runtimeMinutes genres \
    tt0000001 movie 'The Paper Lighthouse' 'The Paper Lighthouse' 0 2011 '\N' 90 Drama >/tmp/data-sets/title.basics.tsv
  touch /tmp/media/films/lighthouse.mkv
  export QUILP_CONFIG=/tmp/quilp.conf
  printf '[catalogue]\npath=/tmp/catalogue.db\n' >$QUILP_CONFIG
  written=0
  while read -r example; do
    example=${example//\/var\/lib\/quilp/\/tmp}
    case $example in
      *' fetch '*) continue ;;
      *explain* | *doctor*) { eval "${example//\/srv/\/tmp}" || [ $? -eq 1 ]; } >/tmp/output ;;
      *) eval "${example//\/srv/\/tmp}" >/tmp/output 2>/tmp/errors ;;
    esac || fail "owners.md: $example: $(cat /tmp/output /tmp/errors)"
    [ ! -e /tmp/media/films/lighthouse.nfo ] || written=$((written + 1))
  done < <(sed -nE 's/^    ((quilp|echo) .*)/\1/p' "$top/docs/owners.md")
  [ $written -eq 1 ] || fail "owners.md: $written commands have left an NFO file"
  rm /etc/config/zorp.conf*
  unset QUILP_CONFIG
fi

# The arrows between the rooms are those of the sources, of the library's and of the program's.
arrows() {
  local file
  cd "$top/$1" || exit
  for file in */*.h */*.cc; do
    sed -n "s:^#include \"\([a-z]*\)/.*:${file%%/*} \1:p" "$file"
  done | while read -r room other; do
    [ "$room" = "$other" ] || [ ! -d "$other" ] || echo "$room --> $other"
  done
}
{ arrows src; arrows tools/quilp; } | sort -u |
  diff <(sed -n '/^graph TD$/,/^```$/s/^  \(.* --> .*\)/\1/p' "$top/docs/architecture.md" | sort) - ||
  fail "docs/architecture.md: the rooms have other arrows"

exit "$failures"
