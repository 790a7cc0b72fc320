#!/bin/sh
# What is installed serves a program that finds it by pkg-config, and one that finds it by CMake.
set -eu
build=$1
top=$(cd "$(dirname "$0")/.." && pwd)
prefix=$(mktemp -d)
trap 'rm -rf "$prefix"' EXIT
cmake --install "$build" --prefix "$prefix/usr" >/dev/null

pc=$(find "$prefix" -name libquilp.pc)
libdir=$(dirname "$(dirname "$pc")")
export PKG_CONFIG_PATH="${pc%/*}"
flags=$(pkg-config --define-variable=libdir="$libdir" \
  --define-variable=includedir="$prefix/usr/include" --cflags --libs libquilp)
# shellcheck disable=SC2086  # the flags are words
${CXX:-c++} -std=c++17 "$top/examples/search.cc" -o "$prefix/by-pkg-config" $flags

mkdir "$prefix/consumer"
cat >"$prefix/consumer/CMakeLists.txt" <<END
cmake_minimum_required(VERSION 3.25)
project(consumer LANGUAGES CXX)
find_package(quilp 1.0 REQUIRED)
add_executable(consumer $top/examples/search.cc)
target_link_libraries(consumer PRIVATE quilp::quilp)
END
cmake -S "$prefix/consumer" -B "$prefix/consumer/build" -DCMAKE_PREFIX_PATH="$prefix/usr" >/dev/null
cmake --build "$prefix/consumer/build" >/dev/null

for program in "$prefix/by-pkg-config" "$prefix/consumer/build/consumer"; do
  LD_LIBRARY_PATH=$libdir ldd "$program" | grep -q "libquilp.so.1 => $prefix"
done
