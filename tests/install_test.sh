#!/usr/bin/env bash
# Installs a build into a staging folder, and builds and runs the example hosts against it: with
# pkg-config and with find_package. Arguments: build folder, C compiler, C++ compiler, the programs
# that run what they build (none for this machine's own), "--", further arguments for CMake. LDFLAGS
# are the linker's for this machine.
set -euo pipefail
build=$1 c=$2 cxx=$3
shift 3
run=()
while [ $# -gt 0 ] && [ "$1" != -- ]; do run+=("$1") && shift; done
shift
cmake_arguments=("$@")
source=$(cd "$(dirname "$0")/.." && pwd)
work=$(mktemp -d)
trap 'rm -rf "$work"' EXIT
stage=$work/stage

fail() {
  echo "$1" >&2
  exit 1
}

quietly() {
  "$@" >"$work/log" 2>&1 || { cat "$work/log" >&2 && fail "failed: $*"; }
}

# Runs a host over an empty folder, looks for a line of its output, and for a text in a file of the
# profile that it has made there.
expect() {
  local host=$1 line=$2 text=$3 file=$4 profile
  profile=$(mktemp -d -p "$work")
  "${run[@]}" "$host" "$profile" >"$work/output" 2>"$work/log" ||
    { cat "$work/output" "$work/log" >&2 && fail "$host failed"; }
  grep -qxF "$line" "$work/output" || { cat "$work/output" >&2 && fail "$host: no line '$line'"; }
  grep -q "$text" "$profile/config/Phone/$file" || fail "$host: no $text in $file"
}

quietly cmake --install "$build" --prefix "$stage"
library=$(dirname "$(find "$stage" -name 'libcfgxml.so.1')")
[ "$(readlink "$library/libcfgxml.so")" = libcfgxml.so.1 ] || fail "no name to link with"
export LD_LIBRARY_PATH=$library

export PKG_CONFIG_PATH=$library/pkgconfig
read -ra flags <<<"$(pkg-config --cflags --libs cfgxml) ${LDFLAGS:-}"
mkdir "$work/pc"
"$c" -std=c99 -c -o "$work/pc/services.o" "$source/examples/services.c" "${flags[@]}" -pthread
"$c" -std=c99 -o "$work/pc/host_c" "$source/examples/host.c" "$work/pc/services.o" "${flags[@]}" -pthread
"$cxx" -std=c++11 -o "$work/pc/host_cpp" "$source/examples/host.cpp" "$work/pc/services.o" \
  "${flags[@]}" -pthread
read -ra flags <<<"$(pkg-config --cflags cfgxml) ${LDFLAGS:-}"
"$c" -std=c99 -rdynamic -o "$work/pc/host_dlopen" "$source/examples/host_dlopen.c" \
  "$work/pc/services.o" "${flags[@]}" -ldl -pthread

quietly cmake -S "$stage/share/cfgxml/examples" -B "$work/cmake" -DCMAKE_PREFIX_PATH="$stage" \
  "${cmake_arguments[@]}"
quietly cmake --build "$work/cmake"

for hosts in pc cmake; do
  expect "$work/$hosts/host_c" "keys 232: Ada Example" "Ada Example" Contact/Contact.xml
  expect "$work/$hosts/host_cpp" "5550123 Ben Example" 5550123 History/History.xml
  expect "$work/$hosts/host_dlopen" "keys 29: Cy Example" "Cy Example" Contact/Contact.xml
done

if [ -x "$stage/bin/deskphone" ]; then
  words=(tour)
  [ ${#run[@]} -eq 0 ] || words=(--root "$work/phone" contacts list) # the tour starts itself again
  (cd "$work" && unset LD_LIBRARY_PATH && quietly "${run[@]}" "$stage/bin/deskphone" "${words[@]}")
fi
for page in man1/deskphone.1 man3/libcfgxml.3; do
  [ -s "$stage/share/man/$page" ] || fail "no man page $page"
done
