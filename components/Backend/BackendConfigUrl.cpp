#include "BackendConfigUrl.h"

#include <string_view>
#include <utility>

#include "Guarded.h"

namespace pelorino {
namespace {

// A reserved name that never resolves: nothing leaves a device before an endpoint has been set.
constexpr std::string_view defaultEndpoint = "https://api.pelorino.example";

struct TestUrls {
  std::string proxy;
  std::string custom;
};

Guarded<TestUrls>& urls() {
  static auto& instance = *new Guarded<TestUrls>;
  return instance;
}

}  // namespace

std::string BackendConfigUrl::testProxyUrl() {
  return urls().get().proxy;
}

void BackendConfigUrl::setTestProxyUrl(std::string url) {
  urls().update([&](TestUrls& both) { both.proxy = std::move(url); });
}

std::string BackendConfigUrl::testCustomUrl() {
  return urls().get().custom;
}

void BackendConfigUrl::setTestCustomUrl(std::string url) {
  urls().update([&](TestUrls& both) { both.custom = std::move(url); });
}

std::string BackendConfigUrl::baseApiUrl() {
  const TestUrls both = urls().get();
  return (both.proxy.empty() ? std::string(defaultEndpoint) : both.proxy) + both.custom;
}

}  // namespace pelorino
