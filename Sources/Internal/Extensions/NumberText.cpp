#include "NumberText.h"

#include <array>
#include <charconv>
#include <cmath>

namespace pelorino {
namespace {

// Numbers between these two are written without an exponent.
constexpr double firstWithExponent = 1e16;
constexpr double lastWithExponent = 1e-5;

template <class Number, class... Format>
void append(std::string& out, Number value, Format... format) {
  std::array<char, 64> digits{};
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value, format...);
  out.append(digits.data(), result.ptr);
}

}  // namespace

void appendNumber(std::string& out, std::int64_t value) {
  append(out, value);
}

void appendNumber(std::string& out, std::uint64_t value) {
  append(out, value);
}

void appendNumber(std::string& out, double value) {
  const double size = std::abs(value);
  if (value != 0 && (size >= firstWithExponent || size <= lastWithExponent)) {
    append(out, value, std::chars_format::scientific);
    return;
  }
  append(out, value, std::chars_format::fixed);
  if (size == std::trunc(size)) out += ".0";
}

}  // namespace pelorino
