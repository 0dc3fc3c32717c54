#include "TimerSchedule.h"

#include <algorithm>
#include <utility>

namespace pelorino {
namespace {

Block tickOf(std::shared_ptr<TimerSchedule::Entry> entry) {
  return [entry = std::move(entry)] {
    if (entry->isCancelled.load(std::memory_order_acquire)) return;
    if (entry->period.count() > 0) {
      entry->block();
    } else {
      // Whoever keeps the handle does not keep what the block holds.
      if (const Block block = std::exchange(entry->block, nullptr)) block();
    }
  };
}

TimerSchedule::TimePoint followingDue(const TimerSchedule::Entry& entry,
                                      TimerSchedule::TimePoint now) {
  const auto periodsPassed = (now - entry.due) / entry.period;
  return entry.due + (periodsPassed + 1) * entry.period;
}

}  // namespace

void TimerSchedule::add(std::shared_ptr<Entry> entry) {
  entries_.push_back(std::move(entry));
}

void TimerSchedule::remove(const std::shared_ptr<Entry>& entry) {
  std::erase(entries_, entry);
}

std::optional<TimerSchedule::TimePoint> TimerSchedule::nextWakeUp() const {
  std::optional<TimePoint> earliest;
  for (const auto& entry : entries_) {
    const TimePoint latest = entry->due + entry->tolerance;
    if (!earliest || latest < *earliest) earliest = latest;
  }
  return earliest;
}

void TimerSchedule::takeDue(TimePoint now, std::deque<Block>& blocks) {
  std::stable_sort(entries_.begin(), entries_.end(),
                   [](const auto& a, const auto& b) { return a->due < b->due; });
  for (const auto& entry : entries_) {
    if (entry->due > now) break;
    blocks.push_back(tickOf(entry));
    if (entry->period.count() > 0) entry->due = followingDue(*entry, now);
  }
  std::erase_if(entries_, [now](const auto& entry) { return entry->due <= now; });
}

}  // namespace pelorino
