#!/bin/bash
# What is installed can be used: install_test.sh FOLDER, a build tree, which is installed first, or
# a root that has the installed files under usr.
set -eu
top=$(cd "$(dirname "$0")/.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT

fail() {
  echo "install_test: $*" >&2
  exit 1
}

cat >"$work/consumer.cc" <<'END'
#include <libquilp.h>
#include <quilp.hpp>

#include <cstdio>

int main() {
  quilp::Request(QUILP_MOVIE_SEARCH).cancel();
  if (!quilp::readName("Salt")) return 1;
  std::puts(ProcessKeyword("a_b.2010", 1).c_str());
}
END
cat >"$work/CMakeLists.txt" <<'END'
cmake_minimum_required(VERSION 3.25)
project(consumer LANGUAGES CXX)
find_package(quilp 1.0 REQUIRED)
add_executable(by-cmake consumer.cc)
target_link_libraries(by-cmake PRIVATE quilp::quilp)
END

# use PREFIX: a program finds what is installed there by pkg-config and by CMake, and runs with it.
use() {
  local usr=$1 build flags program
  libdir=$(dirname "$(find "$usr/lib" -name libquilp.so)")
  export LD_LIBRARY_PATH=$libdir PKG_CONFIG_PATH=$libdir/pkgconfig
  build=$(mktemp -d "$work/XXXXXX")
  flags=$(pkg-config --cflags --libs libquilp)
  # shellcheck disable=SC2086  # the flags are words
  ${CXX:-c++} -std=c++17 "$work/consumer.cc" -o "$build/by-pkg-config" $flags
  cmake -G Ninja -S "$work" -B "$build" -DCMAKE_PREFIX_PATH="$usr" >/dev/null
  cmake --build "$build" >/dev/null
  for program in by-pkg-config by-cmake; do
    [ "$("$build/$program")" = a%20b ] || fail "$program prints something else"
    ldd "$build/$program" | grep -q "libquilp.so.1 => $libdir/" || fail "$program: another library"
  done
}

if [ -e "$1/CMakeCache.txt" ]; then
  cmake --install "$1" --prefix "$work/elsewhere" --component library >/dev/null
  cmake --install "$1" --prefix "$work/elsewhere" --component development >/dev/null
  [ -e "$work/elsewhere/share/man/man3/libquilp.3" ] || fail "no libquilp(3) for developers"
  use "$work/elsewhere"
  DESTDIR=$work/staged cmake --install "$1" --prefix /opt/quilp >/dev/null
  use "$work/staged/opt/quilp"
  usr=$work/usr
  cmake --install "$1" --prefix "$usr" >/dev/null
else
  usr=${1%/}/usr
fi
use "$usr"

# The library does nothing when it is loaded, and neither file wants more than it uses.
library=$libdir/libquilp.so.1 quilp=$usr/bin/quilp
! nm -C "$library" 2>/dev/null | grep _GLOBAL__sub_I || fail "the library has static constructors"
for file in "$library" "$quilp"; do
  unused=$(ldd -u "$file" || true)
  [ -z "$unused" ] || fail "$unused"
  ! readelf -dW "$file" | grep -E 'R(UN)?PATH|TEXTREL' || fail "$file: see above"
done
[ "$("$quilp" --version)" = "quilp $(pkg-config --modversion libquilp)" ] ||
  fail "the program is of another version"

for page in "$top"/docs/man/*.[1-9] $(sed -n 's/^quilp_.*/&.3/p' "$top/tests/exports.txt"); do
  installed=$usr/share/man/man${page##*.}/${page##*/}
  [ -e "$installed" ] || [ -e "$installed.gz" ] || fail "no $installed"
done
[ -x "$usr/share/doc/quilp/examples/addon-movie.sh" ] || fail "no example of an add-on"

# Wherever it was installed, the program finds the stock add-ons, and they start.
catalogue=$("$quilp" addon list --format json | sed -n 's/.*"program" : "\(.*\/catalogue\)".*/\1/p') || true
[ "$catalogue" = "$usr/libexec/quilp/catalogue" ] || fail "the stock add-on is expected at $catalogue"
status=0
"$catalogue" 2>/dev/null || status=$?
[ "$status" -eq 2 ] || fail "the stock add-on ends with $status"

# completes EXPECTED WORD...: the words that may stand for the last one, or what readline is told.
# shellcheck source=completions/quilp.bash
. "$usr/share/bash-completion/completions/quilp"
compopt() { COMPREPLY+=("$*"); }
completes() {
  local expected=$1
  shift
  COMP_WORDS=("$@") COMP_CWORD=$(($# - 1))
  _quilp "$1"
  [ "${COMPREPLY[*]}" = "$expected" ] || fail "completion of $*: ${COMPREPLY[*]}"
}
completes 'movie music' "$quilp" m
completes 'search albums art' "$quilp" music ''
completes --artist "$quilp" music search -n 5 Fog --a
completes '' "$quilp" music search --artist ''
completes '' "$quilp" music search Fog ''
completes json "$quilp" music search Fog --format = j
completes '-o default' "$quilp" karaoke a ''
completes '-o default' "$quilp" scan ''
completes '-o default' "$quilp" scan --format json . ''
completes 'search show episode' "$quilp" --format json help tv ''
completes 'Movie Music' "$quilp" addon check --type = M
completes '-o default' "$quilp" addon check --type Movie ''
completes catalogue "$quilp" addon enable ca
completes --accept-terms "$quilp" catalogue fetch --a
completes '-o default' "$quilp" catalogue import ''

# zsh and fish ask the program in the same way.
zsh=$(find "$usr/share/zsh" -name _quilp)
[ "$(zsh -fc '
  _describe() { print -r -- $candidates }
  _files() { print -r files }
  fpath=(${2%/*} $fpath) && autoload -Uz _quilp
  words=($1 movie search --format=j) CURRENT=4; _quilp
  words=($1 scan "") CURRENT=3; _quilp' zsh "$quilp" "$zsh")" = "--format=json
files" ] || fail "completion by zsh"
[ "$(PATH=$usr/bin:$PATH fish --no-config -c 'source $argv[1]; complete -C "quilp movie se"' \
  "$usr/share/fish/vendor_completions.d/quilp.fish")" = "search	Search movies by keyword or release name" ] ||
  fail "completion by fish"
