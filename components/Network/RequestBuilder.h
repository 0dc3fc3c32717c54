#pragma once

#include <memory>
#include <string>
#include <utility>

#include "HttpExchange.h"
#include "NetworkProtocols.h"
#include "RequestType.h"
#include "UrlBuilder.h"

namespace pelorino {

/// A request that is being put together. The exchange outlives it and what it builds.
class RequestBuilder final : public RequestBuilderProtocol {
 public:
  RequestBuilder(HttpExchange& http, RequestType type, std::string host)
      : http_(http), type_(type), urlBuilder_(std::move(host)) {}

  [[nodiscard]] UrlBuilderProtocol& urlBuilder() override { return urlBuilder_; }
  [[nodiscard]] std::unique_ptr<RequestProtocol> build() const override;

 private:
  HttpExchange& http_;
  RequestType type_;
  UrlBuilder urlBuilder_;
};

}  // namespace pelorino
