#pragma once

#include <functional>
#include <memory>

#include "HostDescription.h"
#include "HttpExchange.h"

namespace pelorino {

/// Exchanges with the proxy and the certificates that the host has described. The log tells why one
/// failed.
///
/// Threads: any. A new description holds from the next exchange on.
class DescribedExchange final : public HttpExchange {
 public:
  using Described = std::function<std::shared_ptr<const HostDescription>()>;

  /// `described` is asked at every exchange. `http` outlives this object.
  DescribedExchange(Described described, HttpExchange& http);

  [[nodiscard]] bool isValidUrl(const std::string& url) const override;
  [[nodiscard]] HttpResponse perform(const HttpRequest& request) override;

 private:
  [[nodiscard]] HttpResponse performAsDescribed(const HttpRequest& request);

  Described described_;
  HttpExchange& http_;
};

}  // namespace pelorino
