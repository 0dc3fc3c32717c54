#pragma once

#include <optional>
#include <string>
#include <utility>

#include "PlatformRequest.h"

namespace pelorino {

/// A request under construction. The exchange outlives it and what it builds.
class RequestBuilder final {
 public:
  RequestBuilder(HttpExchange& http, RequestType type, std::string host)
      : urlBuilder{std::move(host), {}, {}}, http_(http), type_(type) {}

  UrlBuilder urlBuilder;
  std::optional<JSONContent> requestContent;
  std::optional<std::string> requestIdentifier;  ///< Names the exchange in the log; not sent.

  /// Throws PLRError when there is no content yet.
  [[nodiscard]] PlatformRequest build() const {
    if (!requestContent) throw PLRError("[Network Module] requestContent is nil");
    return {http_, type_, urlBuilder, *requestContent, requestIdentifier};
  }

 private:
  HttpExchange& http_;
  RequestType type_;
};

/// Creates requests. Without state; any thread. The exchange outlives it.
class Network final {
 public:
  explicit Network(HttpExchange& http) : http_(http) {}

  [[nodiscard]] RequestBuilder get(std::string host) const {
    return {http_, RequestType::GET, std::move(host)};
  }
  [[nodiscard]] RequestBuilder post(std::string host) const {
    return {http_, RequestType::POST, std::move(host)};
  }

 private:
  HttpExchange& http_;
};

}  // namespace pelorino
