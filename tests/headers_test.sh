#!/usr/bin/env bash
# Every public header compiles as C99 and as C++11, alone and after and before any other.
# Arguments: C compiler, C++ compiler, folder with the headers.
set -euo pipefail
c=$1 cxx=$2 include=$3
headers=("$include"/cfgxml/*.h)
[ ${#headers[@]} -gt 5 ]
reversed=()
for header in "${headers[@]}"; do reversed=("$header" "${reversed[@]}"); done

# Compiles a file that includes these headers in this order, in both languages.
check() {
  local flags=(-fsyntax-only -I "$include" -Wall -Wextra -Wpedantic -Werror)
  local source
  source=$(printf '#include <cfgxml/%s>\n' "${@##*/}")
  "$c" -std=c99 -Wstrict-prototypes "${flags[@]}" -x c - <<<"$source"
  "$cxx" -std=c++11 "${flags[@]}" -x c++ - <<<"$source"
}

for header in "${headers[@]}"; do
  check "$header"
  check "$header" "$header"
done
check "${headers[@]}"
check "${reversed[@]}"

for header in "${headers[@]##*/}"; do
  case $header in
    cfgxml.h | host.h) ;;
    *) grep -qx "#include <cfgxml/$header>" "$include/cfgxml/cfgxml.h" || {
      echo "cfgxml.h leaves $header out" >&2
      exit 1
    } ;;
  esac
done
