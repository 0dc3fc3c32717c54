#pragma once

#include <optional>
#include <string>

namespace pelorino {

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

  /// The whole file; absent when it cannot be read or is over `limit` bytes.
  [[nodiscard]] virtual std::optional<std::string> read(const std::string& path,
                                                        std::size_t limit) = 0;
};

}  // namespace pelorino
