#pragma once

#include <string>

namespace pelorino {

/// Where the backend is. Process-wide: the host's threads set it, the network queues read it when
/// they compose a URL.
class BackendConfigUrl final {
 public:
  BackendConfigUrl() = delete;

  /// Replaces the default endpoint. An empty one restores the default.
  [[nodiscard]] static std::string testProxyUrl();
  static void setTestProxyUrl(std::string url);

  /// Appended to the endpoint.
  [[nodiscard]] static std::string testCustomUrl();
  static void setTestCustomUrl(std::string url);

  /// The base of every URL, without a trailing slash.
  [[nodiscard]] static std::string baseApiUrl();
};

}  // namespace pelorino
