#pragma once

#include <map>
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
  void drop(StoredReport& report);

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

}  // namespace pelorino
