#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>

namespace pelorino {

/// Keeps other processes away as long as it lives, and no longer than the process.
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

  /// Makes a folder and those above it, owner-only. Empty when it is there afterwards, else the
  /// system's words for the failure.
  [[nodiscard]] virtual std::optional<std::string> createFolders(const std::string& path) = 0;

  /// Makes a file, if missing, and gives it owner-only rights. Errors are the caller's to meet when
  /// it opens the file.
  virtual void createPrivateFile(const std::string& path) = 0;

  /// What came of an attempt to read. Without content, `failure` says why.
  struct Reading {
    std::optional<std::string> content;
    std::string failure;
  };

  /// Reads a whole regular file of at most `limit` bytes. Never waits for a writer, as a pipe
  /// would.
  [[nodiscard]] virtual Reading read(const std::string& path, std::size_t limit) = 0;

  /// What came of an attempt to lock. Without a lock, `failure` says why.
  struct LockAttempt {
    std::shared_ptr<FileLock> lock;
    std::string failure;
  };

  /// Locks a file that stands for something, making it if missing, owner-only; it is never removed.
  /// Does not wait: while another process holds the lock, the attempt fails. Within this process
  /// all who ask share one lock. A process forked off does not have it.
  [[nodiscard]] virtual LockAttempt lock(const std::string& path) = 0;
};

}  // namespace pelorino
