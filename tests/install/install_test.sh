#!/usr/bin/env bash
# Installs the build into an empty directory and builds a C99 program against it there, through the CMake package and
# through pkg-config; then the installed command and the data directory beside the library.
# usage: install_test.sh BUILD_DIR C_COMPILER
set -eu
build=$1 cc=$2
here=$(cd "$(dirname "$0")" && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
fail() { echo "FAILED: $*"; exit 1; }

cmake --install "$build" --prefix "$work/prefix" >"$work/install.log"
libdir=$(dirname "$(find "$work/prefix" -name libtvxcomn64.so)")
for name in libtvxcomn64.so.15 libtvxintl64.so.15; do
  [ -e "$libdir/$name" ] || fail "$name is not installed"
done

cmake -G Ninja -S "$here" -B "$work/cmake" -DCMAKE_C_COMPILER="$cc" -DCMAKE_PREFIX_PATH="$work/prefix" >"$work/configure.log" ||
  { cat "$work/configure.log"; fail "find_package"; }
cmake --build "$work/cmake" >"$work/build.log" || { cat "$work/build.log"; fail "build through the CMake package"; }
[ "$("$work/cmake/consumer")" = 42 ] || fail "program built through the CMake package"

export PKG_CONFIG_PATH=$libdir/pkgconfig
# shellcheck disable=SC2046
"$cc" -std=c99 -Wall -Wextra -Wpedantic -Werror "$here/consumer.c" -o "$work/consumer" $(pkg-config --cflags --libs tvxcomn64)
[ "$(LD_LIBRARY_PATH=$libdir "$work/consumer")" = 42 ] || fail "program built through pkg-config"

got=$("$work/prefix/bin/tvxcomn" convert --to i4 42 | cut -f2,3)
[ "$got" = "$(printf 'CS_SUCCEED\t4')" ] || fail "the installed command said: $got"
[ -f "$work/prefix/share/tvxcomn64/locales/message/us_english/common.loc" ] || fail "the data directory is not installed"
echo "installed copy works"
