#pragma once

#include <string>

namespace pelorino {

/// Where the backend is. Process-wide: the host's threads set it, the network queues read it when
/// they compose a URL.
class BackendConfigUrl final {
 public:
  BackendConfigUrl() = delete;

  /// Takes the place of the default endpoint; none when empty.
  [[nodiscard]] static std::string testProxyUrl();
  static void setTestProxyUrl(std::string url);

  /// Appended to the endpoint.
  [[nodiscard]] static std::string testCustomUrl();
  static void setTestCustomUrl(std::string url);

  /// The base of every URL, without a trailing slash.
  [[nodiscard]] static std::string baseApiUrl();
};

}  // namespace pelorino
