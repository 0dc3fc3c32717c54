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

/// Moves events out of the device, in two stages with the database between them: each user's stored
/// events become one stored report, and stored reports are sent one at a time and deleted when the
/// backend has answered 200.
///
/// A batch stops at its first failure; the next call of sendBufferedEvents() is the retry. Delivery
/// is at least once, in the order of the reports within a user's batch.
///
/// Threads: the incomeQueue, except what says otherwise.
class ReportService final {
 public:
  ReportService(Run& run, StateManager& stateManager, EventRepository& eventRepository,
                ReportsRepository& reportsRepository, BackendProtocol& backend, Random& random);

  /// Called after the backend has accepted a report, or some of them in quick succession.
  std::function<void()> onReportSendAction;

  /// Sends one event at once, past the table. It is lost when that fails.
  void sendFlashEvent(const Storable& event);

  /// Packs everything stored and sends it. Returns at once: the network is not waited for.
  void sendBufferedEvents();

  void removeInactiveUserData(std::span<const RowId> userIds);
  void removeAllReports();

 private:
  using ReportList = std::vector<std::shared_ptr<Report>>;

  /// What a batch has still to send of one user.
  struct Share {
    RowId userId;
    Identifiers identifiers;  ///< As they were when the batch began.
    std::size_t reports;      ///< Those that come later wait for the next batch.
  };

  /// What the networkSerialQueue gets at once.
  struct HandOver {
    ReportList reports;
    int removals;  ///< How many there had been. After another one the reports may be gone.
  };

  [[nodiscard]] std::vector<std::shared_ptr<User>> usersOfBatch() const;
  void packEventsOf(const User& user);
  [[nodiscard]] std::vector<Package> createPackages(
      std::span<const std::shared_ptr<EventObject>> events) const;
  void sendSavedReports();
  [[nodiscard]] std::deque<Share> savedReports() const;
  void continueBatch();
  [[nodiscard]] ReportList nextReports();
  /// Reads what is to be sent, if it is not in memory. False when it cannot be read.
  [[nodiscard]] bool readPackages(Report& report);
  void sendReports(const std::shared_ptr<const HandOver>& reports, std::size_t at = 0);
  /// On the networkSerialQueue; blocks it.
  [[nodiscard]] bool send(const std::shared_ptr<Report>& report);
  /// One exchange, on a network queue. Absent when the backend has accepted the report.
  [[nodiscard]] std::optional<PLRError> deliver(const std::shared_ptr<Report>& report) const;
  void removeReport(const std::shared_ptr<Report>& report);
  void endBatch(bool succeeded);

  Run& run_;
  StateManager& stateManager_;
  EventRepository& eventRepository_;
  ReportsRepository& reportsRepository_;
  BackendProtocol& backend_;
  Random& random_;           ///< Gives reports their uuid.
  std::deque<Share> batch_;  ///< What the batch has not handed to the network queue yet.
  /// Accepted by the backend, and not deleted yet. Added to on the networkSerialQueue.
  Guarded<ReportList> arrived_;
  std::atomic<int> removals_ = 0;  ///< Of stored reports; read on the networkSerialQueue.
  bool isSending_ = false;         ///< A batch is under way.
  bool resendWhenFinish_ = false;  ///< Look for stored reports again when that batch ends.
};

}  // namespace pelorino
