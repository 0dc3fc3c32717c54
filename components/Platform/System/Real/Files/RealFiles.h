#pragma once

#include "Files.h"
#include "ProcessLocks.h"

namespace pelorino {

class RealFiles final : public Files {
 public:
  [[nodiscard]] bool exists(const std::string& path) override;
  [[nodiscard]] std::optional<std::string> createFolders(const std::string& path) override;
  void createPrivateFile(const std::string& path) override;
  [[nodiscard]] Reading read(const std::string& path, std::size_t limit) override;
  [[nodiscard]] LockAttempt lock(const std::string& path) override { return locks_.lock(path); }

 private:
  ProcessLocks locks_;
};

}  // namespace pelorino
