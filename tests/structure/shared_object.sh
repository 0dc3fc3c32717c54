#!/usr/bin/env bash
# shared_object.sh LIBRARY MAJOR: what the dynamic linker sees of the library.
set -euo pipefail
library=$1
major=$2
failures=0

# same WHAT WANT GOT
same() {
  [[ $2 == "$3" ]] && return
  printf '%s\n  want: %s\n  got:  %s\n' "$1" "$2" "$3"
  failures=1
}

symbols=$(nm -DC --defined-only "$library" | cut -d' ' -f3-)
grep -q '^PLRAnalytics::initialize(' <<<"$symbols" || { echo 'no PLRAnalytics::initialize'; exit 1; }
same 'symbols that are of no public class' '' \
  "$(grep -vE '^((vtable|typeinfo|typeinfo name) for )?(PLR|SK)[A-Za-z]+(::|$)' <<<"$symbols" || true)"
same 'symbols of lambdas' '' "$(grep -F '{lambda' <<<"$symbols" || true)"

dynamic=$(readelf -dW "$library")
# values TAG: the bracketed values of a tag
values() { sed -n "s/.*($1).*\[\(.*\)\].*/\1/p" <<<"$dynamic" | sort | tr '\n' ' '; }
same 'name' "libpelorino.so.$major " "$(values SONAME)"
# The dynamic linker is named as a library where the compiler leaves thread-local storage to it.
same 'libraries' 'libc.so.6 libcurl.so.4 libgcc_s.so.1 libm.so.6 libplist-2.0.so.3 libsqlite3.so.0 libstdc++.so.6 libutf8proc.so.2 ' \
  "$(values NEEDED | sed 's/ld-linux[^ ]* //')"
same 'search paths' '' "$(values RPATH)$(values RUNPATH)"
same 'flags' NODELETE "$(grep -o NODELETE <<<"$dynamic" || true)"

exit $failures
