#pragma once

#include <cstdint>
#include <string>

namespace pelorino {

void appendNumber(std::string& out, std::int64_t value);
void appendNumber(std::string& out, std::uint64_t value);

/// The fewest digits that read back as the same number, always with a fraction or an exponent, so
/// that it cannot be taken for an integer: 0.1, 2.0, 1e+22.
void appendNumber(std::string& out, double value);

}  // namespace pelorino
