#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace pelorino {

/// A lock against other processes. It ends with this object or with the process.
class FileLock {
 public:
  FileLock() = default;
  virtual ~FileLock() = default;
  FileLock(const FileLock&) = delete;
  FileLock& operator=(const FileLock&) = delete;
};

/// Files other than the database file. Paths are UTF-8 and may hold blanks. Any thread.
class Files {
 public:
  virtual ~Files() = default;

  [[nodiscard]] virtual bool exists(const std::string& path) = 0;

  /// Makes a folder and those above it, owner-only. Returns an empty text if the folder exists
  /// afterwards, otherwise the system's message.
  [[nodiscard]] virtual std::optional<std::string> createFolders(const std::string& path) = 0;

  /// Makes a file, if missing, and gives it owner-only rights. Reports no errors: the caller gets
  /// them when it opens the file.
  virtual void createPrivateFile(const std::string& path) = 0;

  /// The outcome of reading a file. Without content, `failure` says why.
  struct Reading {
    std::optional<std::string> content;
    std::string failure;
  };

  /// Reads a whole regular file of at most `limit` bytes. Never waits for a writer, as a pipe
  /// would.
  [[nodiscard]] virtual Reading read(const std::string& path, std::size_t limit) = 0;

  /// The outcome of locking a file. Without a lock, `failure` says why.
  struct LockAttempt {
    std::shared_ptr<FileLock> lock;
    std::string failure;
  };

  /// Locks a file, which is made if missing, owner-only, and never removed. Does not wait: the
  /// attempt fails while another process holds the lock. Within this process all callers share one
  /// lock. A forked child does not have it.
  [[nodiscard]] virtual LockAttempt lock(const std::string& path) = 0;
};

}  // namespace pelorino
