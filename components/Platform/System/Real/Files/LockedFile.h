#pragma once

#include <string>

#include "PrivateFiles.h"

namespace pelorino {

/// A file that this process has open and locked against all others, until the object goes or the
/// process dies, in whatever way. The file is made if missing and never removed: two processes
/// could then hold locks on two files of that name. A forked child does not get the lock.
///
/// Threads: any. It does not change after its creation.
class LockedFile final {
 public:
  enum class Wait { no, untilFree };

  LockedFile(const std::string& path, Wait wait);
  ~LockedFile();
  LockedFile(const LockedFile&) = delete;
  LockedFile& operator=(const LockedFile&) = delete;

  /// Zero when it is locked, else the system's error: EWOULDBLOCK where another process has it.
  [[nodiscard]] int error() const { return error_; }

 private:
  FileDescriptor file_;
  int error_ = 0;
};

}  // namespace pelorino
