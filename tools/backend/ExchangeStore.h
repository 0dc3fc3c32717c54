#pragma once

#include <cstdint>
#include <functional>
#include <mutex>
#include <string>

#include "WireCheck.h"

struct sqlite3;

namespace pelorino::backend {

/// One request and what was answered.
struct Exchange {
  std::int64_t id = 0;    ///< Counts from 1, in order of arrival.
  std::int64_t time = 0;  ///< Milliseconds since 1970.
  std::string endpoint;   ///< Without its prefix, such as "/analytics/report".
  std::string path;       ///< As it came, without the query.
  std::string appId;
  HeaderMap headers;  ///< Identifiers decoded.
  std::string body;
  int status = 0;     ///< 0: the connection was dropped instead of an answer.
  std::string fault;  ///< What was done to this exchange on demand; empty for none.
  Verdict verdict;

  /// Identifiers of the sender; empty where the header is missing.
  [[nodiscard]] std::string deviceId() const { return header("DeviceId"); }
  [[nodiscard]] std::string userId() const { return header("UserId"); }
  [[nodiscard]] std::string header(const char* name) const {
    const auto found = headers.find(name);
    return found == headers.end() ? std::string() : found->second;
  }
};

/// Everything received, in a SQLite file. Any thread.
///
/// Errors: std::runtime_error with SQLite's message.
class ExchangeStore final {
 public:
  explicit ExchangeStore(const std::string& file);
  ~ExchangeStore();
  ExchangeStore(const ExchangeStore&) = delete;
  ExchangeStore& operator=(const ExchangeStore&) = delete;

  /// On disk when this returns. Sets no id in `exchange`.
  void add(const Exchange& exchange);

  /// In order of arrival, those after the id `since`; an empty endpoint stands for all. `visit`
  /// must not call the store.
  void read(const std::string& endpoint, std::int64_t since,
            const std::function<void(Exchange)>& visit);

  void clear();

 private:
  std::mutex mutex_;
  sqlite3* database_ = nullptr;
};

}  // namespace pelorino::backend
