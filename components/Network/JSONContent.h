#pragma once

#include <string>
#include <utility>
#include <vector>

#include "NetworkProtocols.h"

namespace pelorino {

/// A body in JSON.
class JSONContent final : public RequestContentProtocol {
 public:
  JSONContent(Encodable object, Headers headers, std::vector<std::string> encodingKeys,
              std::string headerKeyType)
      : object_(std::move(object)),
        headers_(std::move(headers)),
        encodingKeys_(std::move(encodingKeys)),
        headerKeyType_(std::move(headerKeyType)) {}

  [[nodiscard]] const Encodable& object() const override { return object_; }
  [[nodiscard]] const Headers& headers() const override { return headers_; }
  [[nodiscard]] const std::vector<std::string>& encodingKeys() const override {
    return encodingKeys_;
  }
  [[nodiscard]] const std::string& headerKeyType() const override { return headerKeyType_; }
  [[nodiscard]] Headers getBase64Headers() const override;

 private:
  Encodable object_;
  Headers headers_;
  std::vector<std::string> encodingKeys_;
  std::string headerKeyType_;
};

}  // namespace pelorino
