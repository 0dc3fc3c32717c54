#!/usr/bin/env bash
# public_headers.sh PREFIX COMPILER: each installed header compiles alone, without a warning, and
# with nothing in reach but the installed headers and the standard library.
set -euo pipefail
include=$1/include
compiler=$2

headers=("$include"/pelorino/*.h)
((${#headers[@]} > 10)) || { echo "only ${#headers[@]} headers in $include"; exit 1; }
for header in "${headers[@]}"; do
  echo "#include <pelorino/${header##*/}>" |
    "$compiler" -std=c++20 -I"$include" -Wall -Wextra -Wpedantic -Wconversion -Wshadow -Werror \
      -fsyntax-only -x c++ -
done

foreign=$(grep -nE '^#include' "${headers[@]}" |
  grep -vE '#include (<pelorino/(PLR|SK)[A-Za-z]+\.h>|<[a-z_]+>)$' || true)
if [[ -n $foreign ]]; then
  echo "neither public nor standard: $foreign"
  exit 1
fi
