#pragma once

#include <cstdint>
#include <string>

namespace pelorino {

void appendNumber(std::string& out, std::int64_t value);
void appendNumber(std::string& out, std::uint64_t value);

/// Writes the fewest digits that give the same number when read. There is always a fraction or an
/// exponent, so that the number is not taken for an integer: 0.1, 2.0, 1e+22.
void appendNumber(std::string& out, double value);

}  // namespace pelorino
