#pragma once

#include <httplib.h>

#include <atomic>
#include <chrono>
#include <condition_variable>
#include <mutex>
#include <stdexcept>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace pelorino::bench {

/// A server in this process that takes reports and keeps their bodies.
class LocalBackend final {
 public:
  /// `eventsPerReport` is what it has the library gather before it sends.
  explicit LocalBackend(int eventsPerReport) {
    const std::string configuration =
        R"({"timeForRequest":3600000,"countForRequest":)" + std::to_string(eventsPerReport) +
        R"(,"eventParamsCount":20,"sessionTimeout":600000,"serverTime":1700000000000,)"
        R"("aliveTimeout":3600000,"userCounting":false})";
    server_.set_tcp_nodelay(true);
    server_.set_keep_alive_max_count(1'000'000);
    server_.set_keep_alive_timeout(1);
    server_.Post("/v2/analytics/config", [this, configuration](const auto&, auto& answer) {
      answer.set_content(configuration, "application/json");
      hasConfigured_ = true;
    });
    server_.Post("/v2/analytics/report",
                 [this](const auto& request, auto& answer) { answer.status = take(request.body); });
    port_ = server_.bind_to_any_port("127.0.0.1");
    if (port_ < 0) throw std::runtime_error("no port for the local backend");
    thread_ = std::thread([this] { server_.listen_after_bind(); });
    while (!server_.is_running()) std::this_thread::yield();
  }
  ~LocalBackend() {
    server_.stop();
    thread_.join();
  }
  LocalBackend(const LocalBackend&) = delete;
  LocalBackend& operator=(const LocalBackend&) = delete;

  [[nodiscard]] std::string url() const { return "http://127.0.0.1:" + std::to_string(port_); }

  /// Whether reports are taken (200) or refused (503).
  void setTaking(bool taking) { isTaking_ = taking; }

  /// How long the answer to a report takes.
  void setDelay(std::chrono::milliseconds delay) { delay_ = delay; }

  /// Only the last one wakes the waiting thread, so waiting does not disturb the measurement.
  void waitForReports(std::size_t count) {
    std::unique_lock lock(mutex_);
    awaited_ = count;
    if (!changed_.wait_for(lock, std::chrono::minutes(2),
                           [&] { return bodies_.size() >= count; })) {
      throw std::runtime_error("the reports did not arrive");
    }
  }

  /// Returns when the configuration has been fetched, and some time later. It does not read the
  /// database: a reader makes a write of the library fail.
  void waitForConfiguration() const {
    for (int i = 0; i < 1000 && !hasConfigured_; ++i) pause(10);
    if (!hasConfigured_) throw std::runtime_error("nobody asked for the configuration");
    pause(100);
  }

  /// Returns when nobody has asked for a while.
  void waitForQuiet() const {
    for (int seen = -1; seen != requests_; pause(250)) seen = requests_;
  }

  /// The bodies taken since the last call, in their order.
  [[nodiscard]] std::vector<std::string> takeBodies() {
    const std::lock_guard lock(mutex_);
    return std::exchange(bodies_, {});
  }

 private:
  static void pause(int milliseconds) {
    std::this_thread::sleep_for(std::chrono::milliseconds(milliseconds));
  }

  int take(const std::string& body) {
    ++requests_;
    if (!isTaking_) return 503;
    std::this_thread::sleep_for(delay_.load());
    const std::lock_guard lock(mutex_);
    bodies_.push_back(body);
    if (bodies_.size() == awaited_) changed_.notify_all();
    return 200;
  }

  httplib::Server server_;
  int port_ = -1;
  std::atomic<bool> isTaking_{true};
  std::atomic<std::chrono::milliseconds> delay_{std::chrono::milliseconds(0)};
  std::atomic<bool> hasConfigured_{false};
  std::atomic<int> requests_{0};
  std::mutex mutex_;
  std::condition_variable changed_;
  std::size_t awaited_ = 0;
  std::vector<std::string> bodies_;
  std::thread thread_;
};

}  // namespace pelorino::bench
