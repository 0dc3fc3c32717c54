#pragma once

#include <pelorino/PLRExport.h>

#include <cstdint>
#include <map>
#include <optional>
#include <string>

/// What is known of a progression when it starts.
///
/// Threads: one at a time; there is no lock. `startProgressionEvent` copies it.
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
/// Threads: one at a time; there is no lock. `finishProgressionEvent` copies it.
class PLR_EXPORT PLRFinishProgressionEventParameters {
 public:
  bool successfulCompletion = false;

  /// Whole seconds, 0 to 2147483647; anything else cancels the call. 0 means the time since the
  /// start, rounded up.
  std::int64_t duration = 0;

  /// Amounts by the name of the resource. Names have at most 24 characters; longer ones are cut. An
  /// amount below 1 is dropped.
  std::map<std::string, std::int64_t> spent;
  std::map<std::string, std::int64_t> earned;
};
