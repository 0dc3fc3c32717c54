#pragma once

#include <chrono>
#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace pelorino {

/// One request as it goes on the wire. Header order is kept.
struct HttpRequest {
  std::string method;  ///< "GET" or "POST"; both may carry a body.
  std::string url;
  std::vector<std::pair<std::string, std::string>> headers;
  std::shared_ptr<const std::string> body;  ///< Null for none.
  /// The exchange ends when nothing has moved for this long, connecting included.
  std::chrono::milliseconds timeout{60000};
  /// A PEM file; its certificates alone are trusted then. Absent: SSL_CERT_FILE, else the system's.
  std::optional<std::string> certificateAuthorityFile{};
  /// Empty: none. Absent: what the environment names.
  std::optional<std::string> proxy{};
};

/// The outcome of an exchange.
struct HttpResponse {
  std::optional<int> status;         ///< Absent when no whole answer arrived.
  std::optional<std::string> body;   ///< Absent when the answer had none, or one over the limit.
  std::optional<std::string> error;  ///< Message of the transport; set if something failed.
};

/// Blocking HTTP and HTTPS exchanges: TLS 1.2 or later with certificate and name verified, never
/// plain HTTP in its place, no cookies, no redirects.
class HttpExchange {
 public:
  virtual ~HttpExchange() = default;

  /// False for a text that is no usable URL. Nothing is sent for such a text.
  [[nodiscard]] virtual bool isValidUrl(const std::string& url) const = 0;

  /// Blocks the calling thread until the exchange ends. Called on a serial queue, it reuses that
  /// queue's connection. Never throws.
  ///
  /// For an answer whose body is over `maximumBody` the status is reported without the body, and
  /// the connection is closed.
  [[nodiscard]] virtual HttpResponse perform(const HttpRequest& request) = 0;

  static constexpr std::size_t maximumBody = std::size_t{4} * 1024 * 1024;
};

}  // namespace pelorino
