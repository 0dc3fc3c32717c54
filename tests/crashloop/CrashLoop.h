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

  /// Another application, whose user comes over from an earlier generation of the library: killed
  /// amid its first starts, and then left in peace for one.
  void comeOver();

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
    std::string repeatedCategories;             ///< Identifiers with more than one row.
    bool hasLastCategories = false;             ///< By the version that is stored.
    int cameOver = 0;                           ///< Users of an earlier generation.
    int cutShort = 0;                           ///< Kills amid that, the user stored already.
    std::vector<std::string>
        wronglyCameOver;  ///< What is stored of those who are not as they were.
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
  void changeCategories();
  void load(HostProcess& host);
  void waitABit(HostProcess& host);
  void takeDown(HostProcess& host);

  std::mt19937 random_;
  DatabaseFile file_;
  TemporaryFolder folder_;
  BackendProcess backend_{folder_.file("backend.db")};
  int lives_ = 0;
  int categoriesVersion_ = 0;
  int cameOver_ = 0;
  int cutShort_ = 0;
  std::vector<std::string> wronglyCameOver_;
  std::set<std::string> stored_;
  std::vector<std::string> sentAfterSuccess_;
  std::deque<std::vector<Arrival>> arrivals_;     ///< In their order, a list a life.
  std::map<std::string, Arrival*> lastArrivals_;  ///< By uuid, of earlier lives.
};

}  // namespace pelorino::blackbox
