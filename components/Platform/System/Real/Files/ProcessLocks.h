#pragma once

#include <map>
#include <memory>
#include <string>

#include "Files.h"
#include "Guarded.h"
#include "LockedFile.h"

namespace pelorino {

/// The file locks that this process holds, each once however many share it. The system releases
/// them when the process dies, in whatever way.
///
/// Threads: any. Outlives the locks that it gives.
class ProcessLocks final {
 public:
  [[nodiscard]] Files::LockAttempt lock(const std::string& path);

 private:
  class Share;

  struct Held {
    std::unique_ptr<LockedFile> file;
    int shares = 0;
  };
  using Locks = std::map<std::string, Held>;

  /// Zero or the error.
  [[nodiscard]] static int acquire(Locks& locks, const std::string& path);
  void release(const std::string& path);

  Guarded<Locks> locks_;
};

}  // namespace pelorino
