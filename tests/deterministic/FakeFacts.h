#pragma once

#include <map>

#include "Facts.h"

namespace pelorino {

/// A machine as a test describes it.
class FakeFacts final : public Facts {
 public:
  struct Values {
    std::map<std::string, std::string> environment;
    std::string homeFolder = "/nonexistent/home";
    std::string executableName = "game";
    std::string machine = "x86_64";
    std::string systemVersion = "6.1.0";
    std::optional<std::string> machineId = "0123456789abcdef0123456789abcdef";
    std::int64_t secondsFromGmt = 0;
  };

  [[nodiscard]] std::optional<std::string> environment(const char* name) override {
    const auto found = values.environment.find(name);
    if (found == values.environment.end()) return std::nullopt;
    return found->second;
  }
  [[nodiscard]] std::string homeFolder() override { return values.homeFolder; }
  [[nodiscard]] std::string executableName() override { return values.executableName; }
  [[nodiscard]] std::string machine() override { return values.machine; }
  [[nodiscard]] std::string systemVersion() override { return values.systemVersion; }
  [[nodiscard]] std::optional<std::string> machineId() override { return values.machineId; }
  [[nodiscard]] std::int64_t secondsFromGmt(std::int64_t /*milliseconds*/) override {
    return values.secondsFromGmt;
  }

  Values values;
};

}  // namespace pelorino
