#pragma once

#include <cstdint>
#include <functional>

namespace pelorino {

/// SQLite's way to the disk, with faults on demand: a default VFS of its own above the real one.
///
/// Threads: those of SQLite, one at a time.
class FaultyDisk final {
 public:
  enum class Fault { none, full, inputOutput };

  FaultyDisk() = delete;

  /// Makes it the VFS of every database that is opened from now on, for the rest of the process.
  static void install();

  /// From now on operations fail that way, `percent` of them, as a seed chooses.
  static void set(Fault fault, std::int64_t percent, std::uint64_t seed);

  /// Calls `die` in place of the writing operation that comes after `operations` others.
  static void dieAfter(std::int64_t operations, std::function<void()> die);
};

}  // namespace pelorino
