#pragma once

#include <sanitizer/allocator_interface.h>

#include <algorithm>
#include <atomic>
#include <cstddef>
#include <cstdint>

#include "Fuzz.h"

namespace pelorino::fuzz {

/// The most memory that was in use at once since reset(), in bytes, beyond what was in use then.
///
/// Threads: the fuzzer's one; what others allocate is counted, too.
class MemoryPeak final {
 public:
  static void reset() {
    [[maybe_unused]] static const bool isInstalled = [] {
      FUZZ_REQUIRE(__sanitizer_install_malloc_and_free_hooks(allocated, freed) > 0);
      return true;
    }();
    used() = 0;
    peak() = 0;
  }

  [[nodiscard]] static std::int64_t bytes() { return peak(); }

 private:
  static void allocated(const volatile void*, std::size_t size) {
    used() += static_cast<std::int64_t>(size);
    peak() = std::max<std::int64_t>(peak(), used());
  }
  static void freed(const volatile void* memory) {
    used() -= static_cast<std::int64_t>(__sanitizer_get_allocated_size(memory));
  }

  static std::atomic<std::int64_t>& used() {
    static constinit std::atomic<std::int64_t> value;
    return value;
  }
  static std::atomic<std::int64_t>& peak() {
    static constinit std::atomic<std::int64_t> value;
    return value;
  }
};

}  // namespace pelorino::fuzz
