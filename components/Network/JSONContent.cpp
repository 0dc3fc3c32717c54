#include "JSONContent.h"

#include "Base64.h"

namespace pelorino {

RequestContentProtocol::Headers JSONContent::getBase64Headers() const {
  Headers encoded = headers_;
  for (const std::string& key : encodingKeys_) {
    const auto header = encoded.find(key);
    if (header != encoded.end()) header->second = base64(headers_.at(key));
  }
  return encoded;
}

}  // namespace pelorino
