#include "CurlHeaders.h"

#include <strings.h>

#include <algorithm>
#include <new>
#include <string>
#include <string_view>

#include "HttpExchange.h"

namespace pelorino {
namespace {

void append(CurlHeaders& headers, const std::string& line) {
  curl_slist* longer = curl_slist_append(headers.get(), line.c_str());
  if (longer == nullptr) throw std::bad_alloc{};
  static_cast<void>(headers.release());
  headers.reset(longer);
}

/// curl takes "Name:" as the wish to leave a header out, "Name;" as a header without a value.
std::string lineOf(const std::string& name, const std::string& value) {
  std::string line = value.empty() ? name + ';' : name + ": " + value;
  const auto endsLine = [](char c) { return c == '\r' || c == '\n' || c == '\0'; };
  std::replace_if(line.begin(), line.end(), endsLine, ' ');
  return line;
}

}  // namespace

CurlHeaders curlHeadersOf(const HttpRequest& request) {
  CurlHeaders headers(nullptr, curl_slist_free_all);
  bool hasContentType = false;
  for (const auto& [name, value] : request.headers) {
    append(headers, lineOf(name, value));
    hasContentType = hasContentType || ::strcasecmp(name.c_str(), "Content-Type") == 0;
  }
  append(headers, "Expect:");
  if (!hasContentType) append(headers, "Content-Type:");
  return headers;
}

}  // namespace pelorino
