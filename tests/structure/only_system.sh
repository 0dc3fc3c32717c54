#!/usr/bin/env bash
# only_system.sh TREE: fails if a source of the library outside components/Platform/System names a
# thread, a lock, a clock, a wait, a random device or curl, or one outside its Real/Http curl.
# Comments do not count.
set -euo pipefail
cd "$1"

export names='
  \bstd::(jthread|thread|this_thread|async|future|promise|call_once|once_flag|latch|barrier)\b
| \bstd::(recursive_|shared_|timed_)*mutex\b
| \bstd::(lock_guard|unique_lock|scoped_lock|shared_lock|condition_variable)
| \bstd::(counting|binary)_semaphore\b | \bpthread_ | \bsem_(wait|post)\b
| \b(system|steady|high_resolution)_clock\b | \b(clock_gettime|gettimeofday|std::time)\b
| \bsleep_(for|until)\b | \b(usleep|nanosleep)\b | \bsleep\s*\(
| \brandom_device\b | \brandom_generator\b | \bmt19937 | \bgetrandom\b | \bstd::rand\b
| \bcurl_ | \bCURL
| <(curl/.*|thread|mutex|shared_mutex|condition_variable|future|semaphore|latch|barrier|random|ctime)>'

# Prints the places in the files whose names come in.
places() {
  xargs -0 perl -ne 's|//.*||; print "$ARGV:$.: $_" if /$ENV{names}/x; close ARGV if eof'
}

sources() { find components Sources \( -name '*.h' -o -name '*.cpp' \) "$@" -print0; }

# The search itself works: System is full of what it looks for.
for word in std::thread std::mutex condition_variable steady_clock curl_ random; do
  sources -path 'components/Platform/System/*' | places | grep "$word" >/dev/null ||
    { echo "the search does not find $word where it is known to be"; exit 1; }
done

found=$(sources -not -path 'components/Platform/System/*' | places)
if [[ -n $found ]]; then
  echo "outside components/Platform/System:"
  echo "$found"
  exit 1
fi

found=$(sources -not -path 'components/Platform/System/Real/Http/*' | places | grep -i curl_ || true)
if [[ -n $found ]]; then
  echo "curl outside components/Platform/System/Real/Http:"
  echo "$found"
  exit 1
fi
