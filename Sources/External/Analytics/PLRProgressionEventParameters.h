#pragma once

#include <pelorino/PLRExport.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>

/// What is known of a progression when it starts.
///
/// Threads: belongs to the thread that fills it. `startProgressionEvent` copies it.
class PLR_EXPORT PLRStartProgressionEventParameters {
 public:
  /// Where the user came from, at most 40 characters; a longer one is cut.
  std::optional<std::string> source;

  /// 0 to 2147483647; anything else cancels the call.
  std::optional<std::int64_t> difficulty;
  void setDifficulty(std::int64_t value) { difficulty = value; }
};

/// How a progression ended.
///
/// Threads: belongs to the thread that fills it. `finishProgressionEvent` copies it.
class PLR_EXPORT PLRFinishProgressionEventParameters {
 public:
  bool successfulCompletion = false;

  /// Whole seconds, 0 to 2147483647; anything else cancels the call. With 0 the time since the
  /// start is taken, rounded up.
  std::int64_t duration = 0;

  /// Resources by their name of at most 24 characters; a longer one is cut. Amounts start at 1: an
  /// entry with less is left out.
  std::map<std::string, std::int64_t> spent;
  std::map<std::string, std::int64_t> earned;
};
