#include "Bounder.h"

#include <fmt/format.h>

#include <utility>

#include "Logger.h"
#include "Text.h"

namespace pelorino {

std::string Bounder::maxStringLength(std::string_view method, const Label& argument,
                                     std::string value, std::size_t maximalLength) {
  const std::size_t kept = prefix(value, maximalLength).size();
  if (kept == value.size()) return value;
  Logger::writeLog(PLRLogLevel::warning, [&] {
    return fmt::format(
        "In the {} method an error has occurred:\n\t{}{}{}: {} is longer than it is permitted."
        "\n\tThe string was truncated to '{}'!",
        method, argument.before, argument.variable, argument.after, value, maximalLength);
  });
  value.resize(kept);
  return value;
}

}  // namespace pelorino
