#pragma once

#include <boost/json.hpp>
#include <string_view>

namespace pelorino::host {

/// Writes one JSON line to the standard output and flushes it. Any thread; lines never mix.
void writeLine(const boost::json::object& line);

/// {"op":...,"result":...}
template <class Result>
void writeResult(std::string_view op, const Result& result) {
  writeLine({{"op", op}, {"result", boost::json::value_from(result)}});
}

}  // namespace pelorino::host
