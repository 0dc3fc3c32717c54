#pragma once

#include <deque>
#include <map>
#include <set>
#include <string>
#include <vector>

#include "View.h"

namespace pelorino {

/// Every stored event is delivered; twice only after a crash or a lost answer; in order.
///
/// An event leaves its table only into a stored report of its user, which holds all events of that
/// user in their order; or because tracking is switched off or the user is removed. A report leaves
/// its table only when the backend has answered that it has it, or for those same reasons. Nothing
/// is sent that is not in a stored report, but for events that are sent without being stored.
class DeliveryRule final : public Rule {
 public:
  void onRecord(const Record& record, View& view) override;
  void onStatement(const StatementRecord& statement, bool isKept, View& view) override;
  void onStart(View& view) override;
  void onEndOfLife(View& view) override;
  void onEndOfPlay(View& view) override;

 private:
  enum class Answer { none, lost, arrived };

  struct StoredEvent {
    RowKey user = 0;
    std::string json;
    std::int64_t stored = 0;   ///< Moment, in records.
    RowKey report = 0;         ///< That it has been packed into since the start.
    bool isForgotten = false;  ///< It could not be deleted: known again at the next start.
    bool isDropped = false;
    std::int64_t deliveries = 0;
  };
  struct StoredReport {
    RowKey user = 0;
    std::string uuid;
    std::string body;
    std::vector<RowKey> events;
    Answer answer = Answer::none;
    std::int64_t answerLife = 0;
    std::int64_t start = 0;           ///< In which it was stored.
    std::int64_t stored = 0;          ///< When, in records.
    std::int64_t due = 0;             ///< To be sent since this moment, in records.
    bool isForgottenByBatch = false;  ///< Stored between a failure and the end of its batch.
    bool isForgotten = false;
    bool isDeletionRefused = false;  ///< By the disk, after it was delivered.
    bool isGone = false;
    std::int64_t goneLife = 0;
  };

  void beginBatch();
  void storeEvents(const StatementRecord& statement, View& view);
  void deleteEvents(const StatementRecord& statement, bool isKept, View& view);
  /// Of two equal events the library may have packed the other one: has this one take its place.
  bool passOnPacking(RowKey key);
  void storeReports(const StatementRecord& statement, View& view);
  void deleteReports(const StatementRecord& statement, bool isKept, View& view);
  void receive(const Record& request, View& view);
  void receiveStored(StoredReport& report, RowKey key, const Record& request, View& view);
  void receiveFlash(const boost::json::array& packages, View& view);
  void checkRest(const View& view);
  void checkSettled(const View& view);

  std::map<RowKey, StoredEvent> events_;
  std::map<RowKey, StoredReport> reports_;
  std::vector<RowKey> packed_;  ///< Events of the last report, which are to be deleted next.
  bool isDeletionDue_ = false;
  std::string sending_;  ///< The report that the log has named last.
  std::int64_t moment_ = 0;
  std::int64_t lastFailure_ = 0;
  std::int64_t lastTrigger_ = 0;  ///< The host has had everything sent.
  bool isBatchEnding_ = false;    ///< It has failed; what comes until the next one waits for that.
};

/// Currency that comes in is neither lost nor counted twice.
///
/// A credit adds its amount to one sum of the active user. Sums leave in an event that holds all of
/// that user's, and are deleted next. What the host has credited is at any time what such events
/// carry, what is still stored, and what was dropped for a known reason: tracking switched off, a
/// user removed, a disk that refused the event or the sum. A sum is told twice only when the
/// process died, or the disk refused the deletion, after its event was stored.
class AccrualRule final : public Rule {
 public:
  void onRecord(const Record& record, View& view) override;
  void onStatement(const StatementRecord& statement, bool isKept, View& view) override;
  void onStart(View& view) override;
  void onEndOfPlay(View& view) override;

 private:
  struct Sum {
    RowKey user = 0;
    std::string kind;         ///< Type, source and name.
    std::int64_t amount = 0;  ///< As the library remembers it.
    bool isForgotten = false;
    bool isReported = false;
  };

  static Sum sumOf(const Row& row);
  void add(const StatementRecord& statement, bool isKept, View& view);
  void addAmount(Sum& sum, const Change& change, bool isKept, View& view);
  void report(const StatementRecord& statement, View& view);
  void remove(const StatementRecord& statement, bool isKept, View& view);
  [[nodiscard]] std::int64_t left() const;
  void checkBalance(const View& view) const;

  std::map<RowKey, Sum> sums_;
  RowKey flushed_ = 0;  ///< The user whose sums have just been reported, or refused by the disk.
  bool isDeletionDue_ = false;
  bool isUnknown_ = false;  ///< The disk has failed in a way that leaves the tally open, until the
                            ///< library reads the sums again.
  std::int64_t credited_ = 0;
  std::int64_t reported_ = 0;
  std::int64_t repeated_ = 0;
  std::int64_t dropped_ = 0;
};

/// Sessions, timers, and the silence while tracking is off.
///
/// A session opens when the active user was last seen longer ago than the time-out, or never; not
/// when it was exactly so long ago. Timers tick while the application is in the foreground, and
/// from the arrival of a configuration on. Nothing is stored while tracking is off. A user goes
/// only to make room for a rename, or when users are not told apart any more.
class ActivityRule final : public Rule {
 public:
  void onRecord(const Record& record, View& view) override;
  void onStatement(const StatementRecord& statement, bool isKept, View& view) override;
  void onStart(View& view) override;

 private:
  enum class Due { nothing, session, firstEvent };

  void beginActivity(const View& view);
  void checkDue(const Record& statement, View& view);
  void checkTimers(const Record& rest, View& view);
  void changeUsers(const StatementRecord& statement, View& view);
  void changeProject(const StatementRecord& statement, View& view);

  Due due_ = Due::nothing;
  std::int64_t openedAt_ = 0;
  bool isRunning_ = false;  ///< The timers.
  bool areUsersMerged_ = false;
};

/// What the host reports is stored: the call of an operation leaves its event, or its sum, unless
/// the library has not started, tracking is off, there is no session, the backend has excluded the
/// event, or the disk refuses it. No call waits for ever.
class TraceRule final : public Rule {
 public:
  void onRecord(const Record& record, View& view) override;
  void onStatement(const StatementRecord& statement, bool isKept, View& view) override;

 private:
  /// Whether the call that the queue is at must leave a trace, as things are.
  [[nodiscard]] static bool mustBeStored(const View& view);

  bool isDemanded_ = false;
  int found_ = 0;
  std::string lastCall_;   ///< Of the host.
  std::string lastEnded_;  ///< That the queue has run.
};

/// A handler answers once: that of a receipt in any case, that of categories if the library has
/// started and is not being torn down. A receipt is given what the backend has answered to it.
class AnswerRule final : public Rule {
 public:
  void onRecord(const Record& record, View& view) override;
  void onEndOfLife(View&) override {
    due_.clear();
    teardowns_.clear();
  }

 private:
  void checkReceipt(const Record& answer, const View& view) const;

  std::map<std::string, std::string> due_;  ///< Operations that have not answered, by call.
  std::set<std::string> teardowns_;         ///< Calls that have not taken effect.
  std::string asked_;                       ///< The last receipt that the backend was asked for.
  bool isAnswered_ = false;                 ///< By the backend.
};

/// Categories and their version are what the answers of the backend have made of them, one after
/// the other: a known category stays as it is, a new one comes once, and goes only when an answer
/// says so.
class CategoriesRule final : public Rule {
 public:
  void onRecord(const Record& record, View& view) override;
  void onStatement(const StatementRecord& statement, bool isKept, View& view) override;
  void onStart(View& view) override;
  void onEndOfLife(View& view) override { onStart(view); }

 private:
  using Ids = std::multiset<std::string>;
  struct Answer {
    std::int64_t version = 0;
    Ids added;
    Ids removed;
  };

  [[nodiscard]] static Ids stored(const View& view);
  void finish(std::int64_t version, const View& view);

  std::deque<Answer> pending_;  ///< Arrived, and not stored yet.
  Ids before_;                  ///< The rows when the last answer had been stored.
};

/// A user of an earlier generation comes over once, with card and marks, and is the active one
/// then. Nothing is marked as taken over before all of it is stored.
class MigrationRule final : public Rule {
 public:
  void onRecord(const Record& record, View& view) override;
  void onStatement(const StatementRecord& statement, bool isKept, View& view) override;

 private:
  static void checkUser(const Change& inserted, const View& view);
  static void checkComplete(const Row& project, const View& view);

  bool isThereLegacyData_ = false;
  std::int64_t start_ = 0;  ///< In which the project was marked as taken over.
};

}  // namespace pelorino
