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

/// Exchanges over libcurl. Each serial queue keeps a session of its own; outside of queues every
/// exchange has a new one. Unless the request names them, the proxy comes from the environment, as
/// libcurl documents it, and so do the trusted certificates (SSL_CERT_FILE). Any thread.
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
