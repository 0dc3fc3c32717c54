#pragma once

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <deque>
#include <map>
#include <mutex>
#include <optional>
#include <string>

namespace pelorino::backend {

struct Answer {
  int status = 200;
  std::string body;
};

/// What shall go wrong with an exchange.
struct Fault {
  enum class Drop { no, before, after };  ///< Before or after the body has been read.

  int times = 1;
  std::optional<int> status;  ///< Answered with an empty body.
  std::string location;       ///< Where a status that redirects points to.
  std::chrono::milliseconds delay{0};
  Drop drop = Drop::no;
  bool truncate = false;       ///< Fewer bytes than were announced.
  bool garbage = false;        ///< No JSON.
  std::uint64_t hugeBody = 0;  ///< Bytes.

  /// Such as "status 500"; several are joined by a comma.
  [[nodiscard]] std::string description() const;
};

/// What each endpoint answers: what was scripted last, else a default that lets a client run. Any
/// thread.
class AnswerScript final {
 public:
  void setAnswer(const std::string& endpoint, Answer answer);

  /// Faults of an endpoint come one after the other, each as many times as it says.
  void addFault(const std::string& endpoint, const Fault& fault);

  [[nodiscard]] Answer answer(const std::string& endpoint, const std::string& deviceId) const;

  /// Takes the next fault, if there is one, and counts it.
  [[nodiscard]] std::optional<Fault> takeFault(const std::string& endpoint);

  /// Forgets all scripted answers and faults.
  void reset();

 private:
  mutable std::mutex mutex_;
  std::map<std::string, Answer> answers_;
  std::map<std::string, std::deque<Fault>> faults_;
};

}  // namespace pelorino::backend
