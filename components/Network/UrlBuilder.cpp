#include "UrlBuilder.h"

namespace pelorino {

std::string UrlBuilder::buildFullPath() const {
  std::string url = host_ + path;
  char separator = '?';
  for (const auto& [key, value] : queryParameter_) {
    url.append(1, separator).append(key).append(1, '=').append(value);
    separator = '&';
  }
  return url;
}

}  // namespace pelorino
