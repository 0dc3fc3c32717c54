#pragma once

#include <map>
#include <string>

#include "Files.h"
#include "Guarded.h"
#include "PrivateFiles.h"

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

  /// An open file that carries a lock, known to LockDescriptors.
  struct Held {
    FileDescriptor file;
    int shares = 0;
  };
  using Locks = std::map<std::string, Held>;

  /// Zero or the error.
  [[nodiscard]] static int acquire(Locks& locks, const std::string& path);
  static void letGo(Locks& locks, Locks::iterator held);
  void release(const std::string& path);

  Guarded<Locks> locks_;
};

}  // namespace pelorino
