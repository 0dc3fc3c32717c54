#include "DeterministicHttp.h"

#include <algorithm>

#include "CurlExchange.h"

namespace pelorino {

using std::chrono::milliseconds;

bool DeterministicHttp::isValidUrl(const std::string& url) const {
  return isValidHttpUrl(url);
}

HttpResponse DeterministicHttp::perform(const HttpRequest& request) {
  if (!isValidUrl(request.url)) return {std::nullopt, std::nullopt, "malformed URL"};
  const VirtualScheduler::Time begin = scheduler_.now();
  exchanges_.push_back({begin, request});
  HttpResponse response;
  milliseconds latency{0};
  try {
    latency = std::max(latency_(request), milliseconds{0});
    response = handler_(request);
  } catch (...) {
    scheduler_.fail(std::current_exception());
    response = {std::nullopt, std::nullopt, "the test's handler failed"};
  }
  const milliseconds duration = std::min(latency, request.timeout);
  scheduler_.wait(
      request.method + " " + request.url, [] { return false; }, duration);
  if (scheduler_.now() - begin < duration) return {std::nullopt, std::nullopt, "interrupted"};
  if (latency > request.timeout) return {std::nullopt, std::nullopt, "timeout was reached"};
  if (response.body && response.body->size() > maximumBody) response.body.reset();
  return response;
}

void DeterministicHttp::setLatency(milliseconds latency) {
  latency_ = [latency](const HttpRequest&) { return latency; };
}

void DeterministicHttp::reset() {
  exchanges_.clear();
  setLatency(milliseconds{0});
  handler_ = [](const HttpRequest&) {
    return HttpResponse{std::nullopt, std::nullopt, "connection refused"};
  };
}

}  // namespace pelorino
