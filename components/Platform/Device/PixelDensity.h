#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

namespace pelorino {

/// Pixels per inch of the screen of a device, by its machine identifier, such as "iPhone10,3".
/// Absent for a device that is not known.
[[nodiscard]] std::optional<std::int64_t> pixelDensity(std::string_view model);

}  // namespace pelorino
