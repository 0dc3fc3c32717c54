#!/usr/bin/env bash
# Shows that the simulation sees: breaks the library in one way after the other, in a copy of the
# last commit, and counts the seeds that notice. simulation/broken.sh [COUNT [TEXT]], 300 seeds each
# unless said otherwise, only the breaks whose description holds TEXT. Fails when a break goes
# unnoticed or can no longer be made, and when the library as it is breaks a rule.
source "$(dirname -- "${BASH_SOURCE[0]}")/../scripts/lib.sh"

count=${1:-300}
wanted=${2:-}
copy=$(mktemp -d)
trap 'git -C "$root" worktree remove --force "$copy"' EXIT
git -C "$root" worktree add --quiet --detach "$copy"
export CCACHE_BASEDIR=$copy CCACHE_NOHASHDIR=1

services=Sources/Internal/Services
analytics=Sources/Internal/Modules/Analytics
# What is broken | where | how, for sed.
breaks=(
  "events are deleted before their report is stored|$services/ReportService.cpp|s/^  if (!reportsRepository_.insert(report)) return;/  eventRepository_.deleteItems(events); &/"
  "the report's failure to be stored is ignored|$services/ReportService.cpp|s/^  if (!reportsRepository_.insert(report)) return;/  static_cast<void>(reportsRepository_.insert(report));/"
  "a trigger during a batch is forgotten|$services/ReportService.cpp|s/^  resendWhenFinish_ = isSending_;//"
  "any answer is taken for a delivery|$services/ReportService.cpp|s/^  if (const auto failure = deliver(report)) {/  if (const auto failure = deliver(report); failure \&\& report->uuid.empty()) {/"
  "a batch goes on after a failure|$services/ReportService.cpp|s/isCutShort || send(reports->reports\[at\]);/(send(reports->reports[at]) || true);/"
  "events of a batch lose their order|$services/ReportService.cpp|s/^  auto packages = createPackages(events);/  auto turned = events; std::ranges::reverse(turned); auto packages = createPackages(turned);/"
  "a batch ends past the queue that guards its flags|$services/ReportService.cpp|s/^    run_.add(QueueManager::incomeQueue(), \[this, succeeded, /    run_.add(QueueManager::configBackQueue(), [this, succeeded, /"
  "the time-out itself opens a session|$services/ActivityService.cpp|s/return gap > sessionTimeout;/return gap >= sessionTimeout;/"
  "sums are deleted before they are reported|$analytics/AccrualLogic.cpp|s/^  eventsService_.addEvent(/  currencyAccrualService_.removeResources(user); &/"
  "tracking that is off is not looked at|$services/EventsService.cpp|s/if (!project.trackingAvailable)/if (project.idKey < 0)/"
  "a queue that was paused at a launch is left so|Sources/Internal/Core/Core.cpp|s/^  QueueManager::incomeQueue().resume();//"
  "a batch that has failed goes on holding up the next|$services/ReportService.cpp|s/^  isSending_ = false;/  isSending_ = !succeeded;/"
  "a report that the disk has not let go is sent by the next library|$services/ReportService.cpp|s/^    if (isDeleted) {/    if (isDeleted || true) {/"
  "timers go on in the background|$analytics/ActivityLogic.cpp|s/^  timerService_.stopTimers();//"
  "a handler of the host ends with the run|components/QueueManager/Run.h|s/^      work(run && !run->hasEnded());/      if (run \&\& !run->hasEnded()) work(true);/"
  "a known category is stored again|$services/MessagingService.cpp|s/= updated(categories(), config);/= updated({}, config);/"
  "a category never goes|$services/MessagingService.cpp|s/^  messagingCategoryRepository_.deleteItems(removed);//"
  "a migration is marked as done before it is|components/MigrationSDK/SDKMigrationManager.cpp|s/^  project.trackingAvailable = object/  project.isMigrated = true; &/"
  "what has come over comes over again|Sources/Internal/Managers/StateManager.cpp|s/if (!activeProject_->isMigrated)/if (true)/"
  "work goes on after the end of its run|components/QueueManager/Run.h|s/!run->hasEnded()/run/"
)

cd "$copy"
cmake -S . -B build/debug -G Ninja -DCMAKE_BUILD_TYPE=Debug \
  -DCMAKE_CXX_COMPILER_LAUNCHER="$(command -v ccache || true)" >/dev/null

# What became of the seeds, as the library in the copy is now.
play() {
  cmake --build build/debug -j "$jobs" --target simulation >build.log 2>&1 || {
    tail -20 build.log >&2
    return 1
  }
  local tally
  tally=$(build/debug/simulation/simulation --seeds 1 "$count" --jobs "$jobs" | tail -1) || true
  if [[ $tally != *" seeds in "* ]]; then
    echo "the simulation does not run: $tally" >&2
    return 1
  fi
  echo "$tally"
}

tally=$(play)
echo "$tally: nothing"
[[ $tally == *", 0 broke a rule" ]]
unnoticed=0
for entry in "${breaks[@]}"; do
  IFS='|' read -r what file how <<<"${entry//||/@@}"
  [[ $what == *"$wanted"* ]] || continue
  sed -i "${how//@@/||}" "$file"
  if git diff --quiet; then
    echo "cannot be made any more: $what"
    unnoticed=1
    continue
  fi
  tally=$(play)
  echo "$tally: $what"
  if [[ $tally == *", 0 broke a rule" ]]; then unnoticed=1; fi
  git checkout --quiet -- "$file"
done
exit "$unnoticed"
