#pragma once

#include <stdlib.h>
#include <unistd.h>

#include <filesystem>
#include <stdexcept>
#include <string>
#include <string_view>

namespace pelorino {

/// A new empty folder, removed with all that is in it at the end.
class TemporaryFolder final {
 public:
  TemporaryFolder() {
    std::string name = (base() / "pelorino-XXXXXX").string();
    if (::mkdtemp(name.data()) == nullptr) throw std::runtime_error("no temporary folder");
    path_ = name;
  }
  ~TemporaryFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(path_, ignored);
  }
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  [[nodiscard]] const std::string& path() const { return path_; }
  [[nodiscard]] std::string file(std::string_view name) const {
    return path_ + "/" + std::string(name);
  }

 private:
  /// In memory where the system has such a folder: tests write real files, but need not wait for a
  /// disk. TMPDIR decides otherwise.
  static std::filesystem::path base() {
    const std::filesystem::path memory = "/dev/shm";
    if (::getenv("TMPDIR") == nullptr && ::access(memory.c_str(), W_OK) == 0) return memory;
    return std::filesystem::temp_directory_path();
  }

  std::string path_;
};

}  // namespace pelorino
