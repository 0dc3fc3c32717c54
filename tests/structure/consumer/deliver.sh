#!/usr/bin/env bash
# deliver.sh cmake|pkg-config PREFIX LIBDIR COMPILER BACKEND WORK: builds a host against the
# installed package, as somebody else's project would, and runs it against the development backend
# until its event has arrived.
set -euo pipefail
way=$1 prefix=$2 libdir=$3 compiler=$4 backend=$5 work=$6
source=$(cd -- "$(dirname -- "$0")" && pwd)

rm -rf "$work"
mkdir -p "$work/build"
case $way in
  cmake)
    cmake -S "$source" -B "$work/build" -DCMAKE_PREFIX_PATH="$prefix" -DCMAKE_CXX_COMPILER="$compiler"
    cmake --build "$work/build"
    ;;
  pkg-config)
    export PKG_CONFIG_PATH=$libdir/pkgconfig
    # Flags are words: no quotes.
    "$compiler" -std=c++20 $(pkg-config --cflags pelorino) "$source/host.cpp" \
      $(pkg-config --libs pelorino) -Wl,-rpath,"$libdir" -o "$work/build/host"
    ;;
esac

"$backend" --port 0 --data "$work/received.db" >"$work/backend.log" 2>&1 &
backend_pid=$!
host_pid=
trap 'kill $backend_pid $host_pid 2>/dev/null || true' EXIT

# until_true COMMAND...: tries for 20 seconds.
until_true() {
  for _ in {1..200}; do
    if "$@"; then return; fi
    sleep 0.1
  done
  echo "never came true: $*"
  cat "$work/backend.log"
  return 1
}

url() { sed -n 's/^listening on //p' "$work/backend.log" | grep -m1 http; }
until_true url

mkfifo "$work/input"
"$work/build/host" "$(url)" "$work" <"$work/input" &
host_pid=$!
exec 3>"$work/input"

arrived() {
  local count
  count=$(sqlite3 -readonly "$work/received.db" "SELECT count(*) FROM exchanges
    WHERE endpoint = '/analytics/report' AND status = 200 AND body LIKE '%\"consumer\"%'
      AND body LIKE '%\"outside\"%'" 2>/dev/null) && ((count == 1))
}
until_true arrived

echo >&3
wait "$host_pid"
host_pid=
