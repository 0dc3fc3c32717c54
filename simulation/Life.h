#pragma once

#include <cstdint>
#include <map>
#include <string>

#include "Record.h"

namespace pelorino {

/// What a life of the simulated process begins with.
struct LifePlan {
  std::uint64_t seed = 0;
  std::int64_t number = 0;  ///< Of this life among those of the seed.
  bool isFaultless = false;
  std::int64_t clock = 0;  ///< The device clock, milliseconds since 1970.
  std::int64_t sessionTimeout = 0;
  std::string folder;
  std::map<std::string, std::string> keyStore;

  /// For one of the things that choose in this life: each has dice of its own.
  [[nodiscard]] std::uint64_t seedOf(std::uint64_t which) const {
    return seed * 64 + static_cast<std::uint64_t>(number) + which;
  }
};

/// Plays one life of a process that embeds the library, on virtual time, and ends this process. All
/// that happens goes to the journal, the end included.
///
/// The process must be a fresh one: one that has not touched the library yet.
[[noreturn]] void live(const LifePlan& plan, const Journal& journal);

}  // namespace pelorino
