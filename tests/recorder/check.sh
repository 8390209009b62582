#!/usr/bin/env bash
# Builds the recorder next to this script against an installed Kavendi twice (pkg-config
# and cc; CMake's find_package), runs each build and reads its record back with the
# installed kvd. The installed Kavendi is a build tree installed into a scratch prefix, a
# .deb unpacked into one, or a prefix where it is installed already (/usr).
#   tests/recorder/check.sh BUILD_DIR | PACKAGE.deb | PREFIX
set -euo pipefail
from=$(realpath "$1")
here=$(dirname "$(realpath "$0")")
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
prefix=$work/prefix

if [ -f "$from/CMakeCache.txt" ]; then
    cmake --install "$from" --prefix "$prefix" >"$work/install.log" || {
        cat "$work/install.log"
        exit 1
    }
elif [[ $from == *.deb ]]; then
    dpkg-deb -x "$from" "$work/root"
    prefix=$work/root/usr
else
    prefix=$from
fi
# Where the install rules put libkavendi.so: pkg-config answers from the file itself.
pc=$(find "$prefix" -name kavendi.pc)
[ -n "$pc" ] || { echo "FAIL: no kavendi.pc installed"; exit 1; }
export PKG_CONFIG_PATH=$(dirname "$pc")
libdir=$(pkg-config --variable=libdir kavendi)

# The recorder runs from its build directory, so it is told where the installed library
# is: an rpath for the pkg-config build; CMake sets one itself.
cc -std=c99 -Wall -Wextra -Werror -o "$work/recorder-pc" "$here/recorder.c" \
    $(pkg-config --cflags --libs kavendi) -Wl,-rpath,"$libdir"
cmake -S "$here" -B "$work/cmake-build" -DCMAKE_PREFIX_PATH="$prefix" >"$work/cmake.log" &&
    cmake --build "$work/cmake-build" >>"$work/cmake.log" || {
    cat "$work/cmake.log"
    exit 1
}

export ZANTH_KVD_ROOT=$work/repo
mkdir "$ZANTH_KVD_ROOT"
status=0
for made in pc:"$work/recorder-pc" cmake:"$work/cmake-build/recorder"; do
    measure=${made%%:*}
    "${made#*:}" "$measure" || {
        echo "FAIL: the $measure build of the recorder exits $?"
        status=1
        continue
    }
    key=$("$prefix/bin/kvd" key suite/test_parser.c)
    expected="0 0 2005-01-01T00:00:00Z $key 812/812 95/95 40/40 17/17"
    got=$("$prefix/bin/kvd" dump "$ZANTH_KVD_ROOT/$measure.ci.4.kvd" 2>&1) || true
    if [ "$got" = "$expected" ]; then
        echo "recorder built with $measure: record read back"
    else
        printf 'FAIL: the %s build of the recorder\n  expected: %s\n  kvd dump: %s\n' \
            "$measure" "$expected" "$got"
        status=1
    fi
done
# The installed programs find what was installed with them: kvd its measure definitions
# (without them it shows nothing), the host its plug-in (on a demo repository with a saved
# view, where the viewer asks nothing).
got=$("$prefix/bin/kvd" export --root "$ZANTH_KVD_ROOT" --curve cmake4:ci:1 \
    -o "$work/out.csv" 2>&1 && cat "$work/out.csv") || true
if [ "$got" = "=DATE(2005;1;1)+TEMPS(0;0;0),812" ]; then
    echo "installed kvd: measure definitions found"
else
    printf 'FAIL: the installed kvd export\n%s\n' "$got"
    status=1
fi
"$prefix/bin/kvd" sample "$work/demo" --days 3 --view >/dev/null
said=$(ZANTH_KVD_ROOT=$work/demo QT_QPA_PLATFORM=offscreen timeout 60 \
    "$prefix/bin/kavendi-studio" --open --screenshot "$work/studio.png" 2>&1) || status=1
if grep -q '^screenshot ' <<<"$said" && ! grep -q 'refused' <<<"$said"; then
    echo "installed kavendi-studio: plug-in loaded"
else
    printf 'FAIL: the installed kavendi-studio\n%s\n' "$said"
    status=1
fi
exit $status
