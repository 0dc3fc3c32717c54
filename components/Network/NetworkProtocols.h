#pragma once

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "Encodable.h"
#include "Response.h"

namespace pelorino {

class UrlProtocol {
 public:
  virtual ~UrlProtocol() = default;
  [[nodiscard]] virtual std::string buildFullPath() const = 0;
};

class UrlBuilderProtocol : public UrlProtocol {
 public:
  /// What follows the host; no slash is added.
  std::string path;

  /// Replaces a former value of that key. Nothing is percent-encoded.
  virtual void setQueryParam(std::string key, std::string value) = 0;
};

/// A body with its headers.
class RequestContentProtocol {
 public:
  using Headers = std::map<std::string, std::string>;

  virtual ~RequestContentProtocol() = default;
  [[nodiscard]] virtual const Encodable& object() const = 0;
  /// In plain text; the log shows them so.
  [[nodiscard]] virtual const Headers& headers() const = 0;
  /// Names of the headers whose values go out in Base64.
  [[nodiscard]] virtual const std::vector<std::string>& encodingKeys() const = 0;
  /// The value of "Content-Type".
  [[nodiscard]] virtual const std::string& headerKeyType() const = 0;
  /// The headers as they go on the wire.
  [[nodiscard]] virtual Headers getBase64Headers() const = 0;
};

class RequestProtocol {
 public:
  virtual ~RequestProtocol() = default;
  /// Blocks the calling thread until the exchange ends; call it on a network queue.
  [[nodiscard]] virtual Response send() const = 0;
};

class RequestBuilderProtocol {
 public:
  virtual ~RequestBuilderProtocol() = default;

  [[nodiscard]] virtual UrlBuilderProtocol& urlBuilder() = 0;
  /// Throws PLRError when there is no content yet.
  [[nodiscard]] virtual std::unique_ptr<RequestProtocol> build() const = 0;

  std::shared_ptr<const RequestContentProtocol> requestContent;
  /// Names the exchange in the log; not sent.
  std::optional<std::string> requestIdentifier;
};

class NetworkProtocol {
 public:
  virtual ~NetworkProtocol() = default;
  [[nodiscard]] virtual std::unique_ptr<RequestBuilderProtocol> get(std::string host) const = 0;
  [[nodiscard]] virtual std::unique_ptr<RequestBuilderProtocol> post(std::string host) const = 0;
};

}  // namespace pelorino
