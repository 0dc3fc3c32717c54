#pragma once

#include <string_view>

namespace pelorino {

struct PlatformConstants {
  /// What stands for a text that the platform does not have.
  static constexpr std::string_view unknown = "";

  // Constants of the wire format, on every system.
  static constexpr std::string_view osName = "iOS";
  static constexpr std::string_view manufacturer = "Apple";
};

}  // namespace pelorino
