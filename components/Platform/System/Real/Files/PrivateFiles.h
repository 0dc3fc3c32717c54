#pragma once

#include <cstddef>
#include <optional>
#include <string>
#include <utility>

namespace pelorino {

/// A file descriptor, closed at the end.
class FileDescriptor final {
 public:
  explicit FileDescriptor(int value) noexcept : value_(value) {}
  FileDescriptor(FileDescriptor&& other) noexcept : value_(std::exchange(other.value_, -1)) {}
  FileDescriptor& operator=(FileDescriptor&&) = delete;
  ~FileDescriptor();

  [[nodiscard]] bool isOpen() const noexcept { return value_ >= 0; }
  [[nodiscard]] int get() const noexcept { return value_; }

  /// False if what was written may be lost.
  [[nodiscard]] bool close() noexcept;

 private:
  int value_;
};

/// `open` with O_CLOEXEC and owner-only rights, repeated when a signal interrupts it.
[[nodiscard]] FileDescriptor openPrivate(const std::string& path, int flags);

/// The folder of a path, without a slash at its end; "." for a bare name.
[[nodiscard]] std::string folderOf(const std::string& path);

/// Makes the folder and those above it, 0700; existing folders keep their rights. Returns an empty
/// text if the folder exists afterwards, otherwise the system's message.
[[nodiscard]] std::optional<std::string> makePrivateFolders(const std::string& path);

/// What is left to read, up to `limit` bytes; absent on a failure.
[[nodiscard]] std::optional<std::string> readUpTo(const FileDescriptor& file, std::size_t limit);

/// Puts `content` in place of the file, 0600, so that after a crash the file is either the old or
/// the new one, whole. False when that may not be so for the new one. One caller at a time.
[[nodiscard]] bool replaceFile(const std::string& path, const std::string& content);

}  // namespace pelorino
