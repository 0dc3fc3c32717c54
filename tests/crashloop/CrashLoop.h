#pragma once

#include <cstddef>
#include <deque>
#include <map>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "BackendProcess.h"
#include "HostProcess.h"

namespace pelorino::blackbox {

/// One application that is killed over and over while it reports and delivers, against a backend
/// that fails at random; and the account of what became of its events.
class CrashLoop final {
 public:
  explicit CrashLoop(unsigned seed) : random_(seed) {}

  /// One life under load, killed at a random moment.
  void live();

  /// A last life that is left in peace until everything has been delivered; false when it is not.
  [[nodiscard]] bool recover();

  struct Account {
    std::size_t stored = 0;                     ///< Events that the library said it had stored.
    std::vector<std::string> lost;              ///< Stored and never delivered.
    std::size_t repeatedDeliveries = 0;         ///< Reports with an event that was there before.
    std::size_t lostAnswers = 0;                ///< Taken, and the answer spoilt on purpose.
    std::vector<std::string> sentAfterSuccess;  ///< Reports sent again after success, in one life.
    std::vector<std::string> keptTooLong;       ///< Sent again by a later life, though one that
                                                ///< arrived after them was deleted by then.
    std::string integrity;                      ///< What SQLite says of the database.
  };
  [[nodiscard]] Account account();

 private:
  /// A report that arrived, and whether a later life has sent it again.
  struct Arrival {
    std::string uuid;
    bool isRepeated = false;
  };

  [[nodiscard]] int upTo(int most) { return std::uniform_int_distribution(0, most)(random_); }
  void spoil();
  void load(HostProcess& host);
  void waitABit(HostProcess& host);
  void takeDown(HostProcess& host);

  std::mt19937 random_;
  DatabaseFile file_;
  TemporaryFolder folder_;
  BackendProcess backend_{folder_.file("backend.db")};
  int lives_ = 0;
  std::set<std::string> stored_;
  std::vector<std::string> sentAfterSuccess_;
  std::deque<std::vector<Arrival>> arrivals_;     ///< In their order, a list a life.
  std::map<std::string, Arrival*> lastArrivals_;  ///< By uuid, of earlier lives.
};

}  // namespace pelorino::blackbox
