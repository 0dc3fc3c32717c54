#pragma once

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "Encodable.h"
#include "HttpExchange.h"
#include "PLRError.h"

namespace pelorino {

enum class RequestType { GET, POST };

/// The method's name on the wire.
[[nodiscard]] constexpr const char* rawValue(RequestType type) noexcept {
  return type == RequestType::GET ? "GET" : "POST";
}

/// A URL made of its parts as they are: nothing is percent-encoded.
struct UrlBuilder {
  std::string host;  ///< Scheme included.
  std::string path;  ///< What follows the host; no slash is added.
  std::map<std::string, std::string> queryParameter;

  /// Replaces an earlier value of that key.
  void setQueryParam(std::string key, std::string value) {
    queryParameter[std::move(key)] = std::move(value);
  }

  [[nodiscard]] std::string buildFullPath() const;
};

/// A body in JSON, with its headers.
struct JSONContent {
  using Headers = std::map<std::string, std::string>;

  Encodable object;
  Headers headers;                        ///< In plain text, as the log shows them.
  std::vector<std::string> encodingKeys;  ///< Names of the headers whose values go out in Base64.
  std::string headerKeyType = "application/json";  ///< The value of "Content-Type".

  /// The headers as they go on the wire.
  [[nodiscard]] Headers getBase64Headers() const;
};

/// The outcome of one exchange. Without an HTTP answer the status is 400, as for a refusal.
struct Response {
  int statusCode = 400;
  std::optional<std::string> data;
  std::optional<PLRError> error;  ///< Of the transport.
};

/// One blocking exchange. Nothing is sent for an invalid URL, or for a body that has no JSON form;
/// both give status 400, as does an exchange without an HTTP answer.
class PlatformRequest final {
 public:
  PlatformRequest(HttpExchange& http, RequestType type, UrlBuilder urlBuilder, JSONContent content,
                  std::optional<std::string> requestIdentifier)
      : http_(http),
        type_(type),
        urlBuilder_(std::move(urlBuilder)),
        requestContent_(std::move(content)),
        requestIdentifier_(std::move(requestIdentifier)) {}

  /// Blocks the calling thread until the exchange ends; call it on a network queue.
  [[nodiscard]] Response send() const;

 private:
  void addHeaders(HttpRequest& request, const JSONContent::Headers& encoded) const;
  [[nodiscard]] std::string logMessage(const HttpRequest& request,
                                       const JSONContent::Headers& encoded) const;

  HttpExchange& http_;
  RequestType type_;
  UrlBuilder urlBuilder_;
  JSONContent requestContent_;
  std::optional<std::string> requestIdentifier_;
};

}  // namespace pelorino
