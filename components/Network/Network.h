#pragma once

#include <memory>
#include <string>
#include <utility>

#include "HttpExchange.h"
#include "NetworkProtocols.h"
#include "RequestBuilder.h"
#include "RequestType.h"

namespace pelorino {

/// Begins requests. Without state; any thread. The exchange outlives it.
class Network final : public NetworkProtocol {
 public:
  explicit Network(HttpExchange& http) : http_(http) {}

  [[nodiscard]] std::unique_ptr<RequestBuilderProtocol> get(std::string host) const override {
    return std::make_unique<RequestBuilder>(http_, RequestType::GET, std::move(host));
  }
  [[nodiscard]] std::unique_ptr<RequestBuilderProtocol> post(std::string host) const override {
    return std::make_unique<RequestBuilder>(http_, RequestType::POST, std::move(host));
  }

 private:
  HttpExchange& http_;
};

}  // namespace pelorino
