#pragma once

#include <atomic>
#include <cstddef>
#include <deque>
#include <functional>
#include <memory>
#include <span>
#include <string>
#include <vector>

#include "BackendProtocol.h"
#include "EventObject.h"
#include "EventRepository.h"
#include "Guarded.h"
#include "Identifiers.h"
#include "Report.h"
#include "ReportsRepository.h"
#include "StateManager.h"
#include "Storable.h"

namespace pelorino {

/// Moves events out of the device, in two stages with the database between them: each user's stored
/// events become one stored report, and stored reports are sent one at a time and deleted when the
/// backend has answered 200.
///
/// A batch stops at its first failure; the next call of sendBufferedEvents() is the retry. Delivery
/// is at least once, in the order of the reports within a user's batch.
///
/// Threads: the incomeQueue, except what says otherwise.
class ReportService final : public std::enable_shared_from_this<ReportService> {
 public:
  ReportService(std::shared_ptr<StateManager> stateManager,
                std::shared_ptr<EventRepository> eventRepository,
                std::shared_ptr<ReportsRepository> reportsRepository,
                std::shared_ptr<BackendProtocol> backend);

  /// Called after the backend has accepted a report, or some of them in quick succession.
  std::function<void()> onReportSendAction;

  /// Sends one event at once, past the table. It is lost when that fails.
  void sendFlashEvent(const Storable& event);

  /// Packs everything stored and sends it. Returns at once: the network is not waited for.
  void sendBufferedEvents();

  void removeInactiveUserData(const std::vector<std::shared_ptr<User>>& users);
  void removeAllReports();

 private:
  using ReportList = std::vector<std::shared_ptr<Report>>;

  /// What a batch has still to send of one user.
  struct Share {
    RowId userId;
    Identifiers identifiers;  ///< As they were when the batch began.
    std::size_t reports;      ///< Those that come later wait for the next batch.
  };

  [[nodiscard]] std::vector<std::shared_ptr<User>> usersOfBatch() const;
  void packEventsOf(const User& user);
  [[nodiscard]] std::vector<Package> createPackages(
      std::span<const std::shared_ptr<EventObject>> events) const;
  [[nodiscard]] bool isReplaced() const;
  void sendSavedReports();
  [[nodiscard]] std::deque<Share> savedReports() const;
  void continueBatch();
  [[nodiscard]] ReportList nextReports();
  [[nodiscard]] bool isReadable(Report& report);
  /// On the networkSerialQueue; blocks it.
  static void sendReports(const std::weak_ptr<ReportService>& weak, const ReportList& reports,
                          int removals);
  [[nodiscard]] bool send(const std::shared_ptr<Report>& report);
  void removeReport(const std::shared_ptr<Report>& report);
  void endBatch(bool succeeded);

  std::shared_ptr<StateManager> stateManager_;
  std::shared_ptr<EventRepository> eventRepository_;
  std::shared_ptr<ReportsRepository> reportsRepository_;
  std::shared_ptr<BackendProtocol> backend_;
  const int generation_;      ///< Counts the services of this process, one for each start.
  std::deque<Share> batch_;   ///< What the batch has not handed to the network queue yet.
  std::size_t handOver_ = 0;  ///< How many reports go to the network queue next.
  /// Accepted by the backend, and not deleted yet. Added to on the networkSerialQueue.
  const std::shared_ptr<Guarded<ReportList>> arrived_ = std::make_shared<Guarded<ReportList>>();
  std::atomic<int> removals_ = 0;  ///< Of stored reports; read on the networkSerialQueue.
  bool isSending_ = false;         ///< A batch is under way.
  bool resendWhenFinish_ = false;  ///< Look for stored reports again when that batch ends.
};

}  // namespace pelorino
