#pragma once

#include "Files.h"

namespace pelorino {

class RealFiles final : public Files {
 public:
  [[nodiscard]] bool exists(const std::string& path) override;
  [[nodiscard]] std::optional<std::string> createFolders(const std::string& path) override;
  void createPrivateFile(const std::string& path) override;
  [[nodiscard]] std::optional<std::string> read(const std::string& path,
                                                std::size_t limit) override;
};

}  // namespace pelorino
