#pragma once

#include <memory>
#include <optional>
#include <string>
#include <utility>

#include "HttpExchange.h"
#include "NetworkProtocols.h"
#include "RequestType.h"
#include "UrlBuilder.h"

namespace pelorino {

/// One blocking exchange. Nothing is sent for an invalid URL or for a body that JSON cannot hold;
/// both read as status 400, as does an exchange without an HTTP answer.
class PlatformRequest final : public RequestProtocol {
 public:
  PlatformRequest(HttpExchange& http, RequestType type, UrlBuilder urlBuilder,
                  std::shared_ptr<const RequestContentProtocol> requestContent,
                  std::optional<std::string> requestIdentifier)
      : http_(http),
        type_(type),
        urlBuilder_(std::move(urlBuilder)),
        requestContent_(std::move(requestContent)),
        requestIdentifier_(std::move(requestIdentifier)) {}

  [[nodiscard]] Response send() const override;

 private:
  using Headers = RequestContentProtocol::Headers;

  void addHeaders(HttpRequest& request, const Headers& encoded) const;
  [[nodiscard]] std::string logMessage(const HttpRequest& request, const Headers& encoded) const;

  HttpExchange& http_;
  RequestType type_;
  UrlBuilder urlBuilder_;
  std::shared_ptr<const RequestContentProtocol> requestContent_;
  std::optional<std::string> requestIdentifier_;
};

}  // namespace pelorino
