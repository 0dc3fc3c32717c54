#pragma once

#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace pelorino::backend {

/// What is wrong with a request, one sentence each; empty when nothing is.
using Verdict = std::vector<std::string>;

/// Header names as in the table of the wire format, whatever their case was.
struct HeaderNameLess {
  bool operator()(const std::string& left, const std::string& right) const;
};
using HeaderMap = std::map<std::string, std::string, HeaderNameLess>;

/// Checks the headers that every request carries, and replaces those that travel in Base64 by
/// their text. What is no Base64 stays as it is.
[[nodiscard]] Verdict checkAndDecodeHeaders(HeaderMap& headers);

/// Checks the body posted to an endpoint, such as "/analytics/report".
[[nodiscard]] Verdict checkBody(std::string_view endpoint, std::string_view body);

}  // namespace pelorino::backend
