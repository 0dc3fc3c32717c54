#pragma once

#include <map>
#include <memory>
#include <string>

#include "Guarded.h"
#include "HttpExchange.h"

namespace pelorino {

class CurlSession;
class QueueWorker;

/// True for a text that an HTTP or HTTPS request can be made of as it stands: printable ASCII
/// without blanks, with a scheme and a host. Nothing is escaped for the caller. Any thread.
[[nodiscard]] bool isValidHttpUrl(const std::string& url);

/// Exchanges over libcurl. Each serial queue has a session of its own, which it keeps; off the
/// queues every exchange has a new one. Where the request says nothing of it, the environment
/// may name a proxy, as libcurl documents it, and the trusted certificates (SSL_CERT_FILE).
class CurlExchange final : public HttpExchange {
 public:
  CurlExchange();
  ~CurlExchange() override;
  CurlExchange(const CurlExchange&) = delete;
  CurlExchange& operator=(const CurlExchange&) = delete;

  [[nodiscard]] bool isValidUrl(const std::string& url) const override;
  [[nodiscard]] HttpResponse perform(const HttpRequest& request) override;

 private:
  [[nodiscard]] HttpResponse exchange(const HttpRequest& request);

  Guarded<std::map<const QueueWorker*, std::unique_ptr<CurlSession>>> sessions_;
};

}  // namespace pelorino
