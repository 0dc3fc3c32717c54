#pragma once

#include "Facts.h"

namespace pelorino {

class RealFacts final : public Facts {
 public:
  [[nodiscard]] std::optional<std::string> environment(const char* name) override;
  /// Of the user that the process runs as, whatever the environment says.
  [[nodiscard]] std::string homeFolder() override;
  [[nodiscard]] std::string executableName() override;
  [[nodiscard]] std::string machine() override;
  [[nodiscard]] std::string systemVersion() override;
  [[nodiscard]] std::optional<std::string> machineId() override;
  [[nodiscard]] std::int64_t secondsFromGmt(std::int64_t milliseconds) override;
};

}  // namespace pelorino
