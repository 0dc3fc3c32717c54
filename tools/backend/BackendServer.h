#pragma once

#include <atomic>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <optional>
#include <string>

#include "AnswerScript.h"
#include "ExchangeStore.h"

namespace httplib {
class ContentReader;
class Server;
struct Request;
struct Response;
}  // namespace httplib

namespace pelorino::backend {

/// PEM files.
struct TlsFiles {
  std::string certificate;
  std::string key;
};

/// The five endpoints and `/control/` on 127.0.0.1. Requests run on a few threads of their own; an
/// exchange is in the store before its answer goes out.
class BackendServer final {
 public:
  /// The store outlives the server. Throws std::runtime_error if the TLS files cannot be used.
  BackendServer(ExchangeStore& store, const std::optional<TlsFiles>& tls);
  ~BackendServer();

  /// 0 means any free port. Returns the port; throws std::runtime_error.
  int bind(int port);

  /// Serves until stop().
  void run();

  /// Also ends open connections and waiting answers. Any thread, while another one is in run() or
  /// about to call it.
  void stop();

 private:
  void receive(const httplib::Request& request, httplib::Response& response,
               const httplib::ContentReader& readContent);
  /// False when the server stops meanwhile.
  [[nodiscard]] bool wait(std::chrono::milliseconds delay);

  ExchangeStore& store_;
  AnswerScript script_;
  std::unique_ptr<httplib::Server> server_;
  int port_ = 0;
  std::mutex mutex_;
  std::condition_variable stopped_;
  bool stopping_ = false;
  std::atomic<bool> ended_ = false;
};

}  // namespace pelorino::backend
