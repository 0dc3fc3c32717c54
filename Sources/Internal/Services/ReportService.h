#pragma once

#include <atomic>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <optional>
#include <span>
#include <string>
#include <vector>

#include "Backend.h"
#include "Event.h"
#include "Guarded.h"
#include "Identifiers.h"
#include "PLRError.h"
#include "Random.h"
#include "Report.h"
#include "Repositories.h"
#include "Run.h"
#include "StateManager.h"

namespace pelorino {

/// Sends events to the backend, in two stages. First it packs each user's stored events into one
/// stored report. Then it sends the stored reports one at a time; a report is deleted when the
/// backend has answered 200.
///
/// A batch stops at its first failure, and the next sendBufferedEvents() tries again. Each report
/// is delivered at least once, and the reports of a user arrive in their order.
///
/// Threads: public operations and callbacks on the incomeQueue; exchanges with the backend on the
/// networkSerialQueue and the networkFlashQueue.
/// Errors:  logged.
class ReportService final {
 public:
  ReportService(Run& run, StateManager& stateManager, EventRepository& eventRepository,
                ReportsRepository& reportsRepository, BackendProtocol& backend, Random& random);

  /// Called after the backend has accepted a report. One call may stand for several reports.
  std::function<void()> onReportSendAction;

  /// Sends one event at once without storing it. It is lost when that fails.
  void sendFlashEvent(const Storable& event);

  /// Packs all stored events and sends all stored reports. Does not wait for the network. If a
  /// batch is being sent, a new one follows it.
  void sendBufferedEvents();

  /// Deletes the stored reports of these users, or of all. A running batch sends at most the one
  /// that is on its way.
  void removeInactiveUserData(std::span<const RowId> userIds);
  void removeAllReports();

 private:
  using ReportList = std::vector<std::shared_ptr<Report>>;

  /// What a batch still has to send for one user.
  struct Share {
    RowId userId;
    Identifiers identifiers;  ///< As they were when the batch began.
    std::size_t reports;      ///< Their number. Later reports wait for the next batch.
  };

  /// The reports that the networkSerialQueue gets together.
  struct HandOver {
    ReportList reports;
    int removals;  ///< Value of `removals_` at that time. If it changes, reports may be gone.
  };

  [[nodiscard]] std::vector<std::shared_ptr<User>> usersOfBatch() const;
  void packEventsOf(const User& user);
  [[nodiscard]] std::vector<Package> createPackages(
      std::span<const std::shared_ptr<EventObject>> events) const;
  void sendSavedReports();
  [[nodiscard]] std::deque<Share> savedReports() const;
  void continueBatch();
  [[nodiscard]] ReportList nextReports();
  /// Reads the packages if they are not in memory. False when they cannot be read.
  [[nodiscard]] bool readPackages(Report& report);
  void sendReports(const std::shared_ptr<const HandOver>& reports, std::size_t at = 0);
  /// On the networkSerialQueue, which it blocks. True when the backend has accepted the report.
  [[nodiscard]] bool send(const std::shared_ptr<Report>& report);
  /// One exchange, on a network queue. Returns no error when the backend has accepted the report.
  [[nodiscard]] std::optional<PLRError> deliver(const std::shared_ptr<Report>& report) const;
  void removeReport(const std::shared_ptr<Report>& report);
  void endBatch(bool succeeded);

  Run& run_;
  StateManager& stateManager_;
  EventRepository& eventRepository_;
  ReportsRepository& reportsRepository_;
  BackendProtocol& backend_;
  Random& random_;           ///< Makes the uuids of reports.
  std::deque<Share> batch_;  ///< What the batch has not handed to the network queue yet.
  /// Accepted by the backend and not deleted yet. The networkSerialQueue adds, the incomeQueue
  /// takes.
  Guarded<ReportList> arrived_;
  /// Counts removals of stored reports. Written on the incomeQueue, also read on the
  /// networkSerialQueue.
  std::atomic<int> removals_ = 0;
  bool isSending_ = false;         ///< A batch is running.
  bool resendWhenFinish_ = false;  ///< Begin a new batch when the running one ends.
};

}  // namespace pelorino
