#pragma once

#include <chrono>
#include <functional>
#include <vector>

#include "HttpExchange.h"
#include "VirtualScheduler.h"

namespace pelorino {

/// Exchanges with a function in place of the network.
///
/// The request reaches the handler when the exchange begins, on the thread of the block that
/// performs it; its answer comes back after the latency. A latency over the request's time-out
/// loses the answer: the exchange ends with an error when the time-out has passed.
class DeterministicHttp final : public HttpExchange {
 public:
  using Handler = std::function<HttpResponse(const HttpRequest&)>;
  using Latency = std::function<std::chrono::milliseconds(const HttpRequest&)>;

  struct Exchange {
    VirtualScheduler::Time begin;
    HttpRequest request;
  };

  explicit DeterministicHttp(VirtualScheduler& scheduler) : scheduler_(scheduler) { reset(); }

  [[nodiscard]] bool isValidUrl(const std::string& url) const override;
  [[nodiscard]] HttpResponse perform(const HttpRequest& request) override;

  /// Refuses every connection until it is set. What it throws is thrown to the test, by the call
  /// that let the exchange run.
  void setHandler(Handler handler) { handler_ = std::move(handler); }
  void setLatency(std::chrono::milliseconds latency);
  void setLatency(Latency latency) { latency_ = std::move(latency); }

  /// The exchanges since the reset, in the order in which they began.
  [[nodiscard]] const std::vector<Exchange>& exchanges() const { return exchanges_; }

  /// No exchanges, no latency, connections refused.
  void reset();

 private:
  VirtualScheduler& scheduler_;
  Handler handler_;
  Latency latency_;
  std::vector<Exchange> exchanges_;
};

}  // namespace pelorino
