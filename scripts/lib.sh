# Shared by the scripts of this project, which source it. Works from any directory.
#
#   install_dependencies [PACKAGE...]   what building and testing needs, and these too
#   build_preset NAME [TARGET...]       configures and builds one of CMakePresets.json; CMake is told
#                                       $CONFIGURE, too
#   run_tests NAME                      runs the tests of a preset that is built

set -euo pipefail

root=$(cd -- "$(dirname -- "${BASH_SOURCE[0]}")/.." && pwd)
jobs=$(nproc)

packages=(
  ca-certificates cmake g++ ninja-build pkg-config
  libboost1.81-dev libcurl4-openssl-dev libfmt-dev libplist-dev libsqlite3-dev libutf8proc-dev
  # The development backend and the tests.
  libcpp-httplib-dev libgtest-dev libssl-dev openssl sqlite3
)

is_installed() {
  [[ $(dpkg-query -W -f='${Status}' "$1" 2>/dev/null) == 'install ok installed' ]]
}

# Asks for root only when something is missing.
install_dependencies() {
  local package missing=() as_root=()
  for package in "${packages[@]}" "$@"; do
    is_installed "$package" || missing+=("$package")
  done
  ((${#missing[@]})) || return 0

  echo "Installing: ${missing[*]}"
  if ((EUID != 0)); then
    if ! command -v sudo >/dev/null; then
      echo "These packages are missing, and only root can install them: ${missing[*]}" >&2
      return 1
    fi
    as_root=(sudo)
  fi
  "${as_root[@]}" apt-get update -q
  "${as_root[@]}" env DEBIAN_FRONTEND=noninteractive \
    apt-get install -q -y --no-install-recommends "${missing[@]}"
}

build_preset() {
  local preset=$1
  shift
  # Set each time, so that a build folder follows when ccache comes or goes.
  (cd "$root" && cmake --preset "$preset" \
    -DCMAKE_CXX_COMPILER_LAUNCHER="$(command -v ccache || true)" ${CONFIGURE:-})
  cmake --build "$root/build/$preset" -j "$jobs" ${1:+--target "$@"}
}

run_tests() {
  export ASAN_OPTIONS=detect_stack_use_after_return=1:strict_string_checks=1
  export UBSAN_OPTIONS=print_stacktrace=1
  export TSAN_OPTIONS="second_deadlock_stack=1:suppressions='$root/scripts/tsan.suppressions'"
  ctest --test-dir "$root/build/$1" -j "$jobs" --output-on-failure --no-tests=error
}
