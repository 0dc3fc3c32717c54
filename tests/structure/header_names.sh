#!/usr/bin/env bash
# header_names.sh TREE: rows publish their folders flat, so a header's name must be unique among
# them and the tests' own, and no include may climb.
set -euo pipefail
cd "$1"

count=$(find components Sources tests -name '*.h' | wc -l)
((count > 50)) || { echo "only $count headers found"; exit 1; }

twice=$(find components Sources tests -name '*.h' -printf '%f\n' | sort | uniq -d)
climbing=$(grep -rnE '^\s*#\s*include\s*["<][^">]*\.\./' components Sources tools tests examples \
  --include='*.h' --include='*.cpp' || true)
if [[ -n $twice$climbing ]]; then
  echo "names used twice: ${twice:-none}"
  echo "includes that climb: ${climbing:-none}"
  exit 1
fi
