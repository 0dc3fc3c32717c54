#include "Base64.h"

#include <openssl/evp.h>

#include <algorithm>

namespace pelorino::backend {

std::optional<std::string> decodeBase64(std::string_view text) {
  const std::size_t padding = text.size() - std::min(text.size(), text.find_last_not_of('=') + 1);
  if (text.size() % 4 != 0 || padding > 2) return std::nullopt;
  std::string bytes(text.size() / 4 * 3, '\0');
  // EVP_DecodeBlock also takes blanks around the text, which do not belong into a header.
  if (text.find_first_of(" \t\r\n") != std::string_view::npos) return std::nullopt;
  const int decoded = EVP_DecodeBlock(reinterpret_cast<unsigned char*>(bytes.data()),
                                      reinterpret_cast<const unsigned char*>(text.data()),
                                      static_cast<int>(text.size()));
  if (decoded < 0) return std::nullopt;
  bytes.resize(static_cast<std::size_t>(decoded) - padding);
  return bytes;
}

}  // namespace pelorino::backend
