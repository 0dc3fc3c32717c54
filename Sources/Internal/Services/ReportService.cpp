#include "ReportService.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <limits>
#include <string_view>
#include <utility>

#include "BackendRepository.h"
#include "DeliveredReports.h"
#include "Logger.h"
#include "QueueManager.h"
#include "SdkConstraints.h"

namespace pelorino {
namespace {

/// Reports that go to the network queue together. A small number wastes little work when the first
/// one fails, and keeps few packages in memory. A large one makes a long batch wait less often for
/// the incomeQueue.
constexpr std::size_t reportsAtOnce = 64;

void logSending(const Report& report) {
  Logger::writeLog(PLRLogLevel::info,
                   [&] { return fmt::format("Trying to send the Report [{}]", report.uuid); });
}

void logFailure(const Report& report, std::string_view reason) {
  Logger::writeLog(PLRLogLevel::error, [&] {
    return fmt::format("Report [{}] submission failed: {}", report.uuid, reason);
  });
}

void logSuccess(const Report& report) {
  Logger::writeLog(PLRLogLevel::info, [&] {
    return fmt::format("The report [{}] has been sent successfully", report.uuid);
  });
}

}  // namespace

ReportService::ReportService(Run& run, StateManager& stateManager, EventRepository& eventRepository,
                             ReportsRepository& reportsRepository, BackendProtocol& backend,
                             Random& random)
    : run_(run),
      stateManager_(stateManager),
      eventRepository_(eventRepository),
      reportsRepository_(reportsRepository),
      backend_(backend),
      random_(random) {}

void ReportService::sendFlashEvent(const Storable& event) {
  const auto object = std::make_shared<EventObject>();
  object->code = event.code();
  object->json = event.getJson();
  auto report = std::make_shared<Report>(createPackages({&object, 1}), random_.uuid());
  report->identifiers = stateManager_.getIdentifiers(*stateManager_.getActiveUser());
  report->appKey = stateManager_.getActiveProject()->applicationKey;
  // On its own queue: it must not wait behind stored reports.
  run_.add(QueueManager::networkFlashQueue(), [this, report] {
    logSending(*report);
    const auto failure = deliver(report);
    failure ? logFailure(*report, failure->description()) : logSuccess(*report);
  });
}

void ReportService::sendBufferedEvents() {
  for (const auto& user : usersOfBatch()) packEventsOf(*user);
  sendSavedReports();
}

void ReportService::removeInactiveUserData(std::span<const RowId> userIds) {
  ++removals_;
  reportsRepository_.deleteForDataForUsers(userIds);
}

void ReportService::removeAllReports() {
  ++removals_;
  reportsRepository_.clear();
}

std::vector<std::shared_ptr<User>> ReportService::usersOfBatch() const {
  auto users = stateManager_.getProjectUsers();
  // The backend gets older sessions first.
  std::ranges::stable_sort(users, {}, [](const auto& user) {
    return user->sessionId.value_or(std::numeric_limits<std::int64_t>::max());
  });
  return users;
}

void ReportService::packEventsOf(const User& user) {
  const auto events = eventRepository_.ofUser(user.idKey);
  if (events.empty()) return;
  auto packages = createPackages(events);
  if (packages.empty()) return;  // No device data: the events wait.
  auto report = std::make_shared<Report>(packages, random_.uuid());
  report->userId = user.idKey;
  // Keep the events if the report is not stored: otherwise they would be in no table.
  if (!reportsRepository_.insert(report)) return;
  eventRepository_.deleteItems(events);
}

std::vector<Package> ReportService::createPackages(
    std::span<const std::shared_ptr<EventObject>> events) const {
  const auto device = stateManager_.getDeviceData();
  if (!device) {
    Logger::writeLog(PLRLogLevel::error, "Cannot obtain device information!");
    return {};
  }
  const ApplicationData application = stateManager_.getAppData();
  Package common;
  common.language = device->language;
  if (!stateManager_.isEditorMode()) {
    common.appVersion = application.applicationVersion;
    common.appBuildVersion = application.applicationBuildVersion;
  }
  common.sdkVersion = SdkConstraints::sdkVersion();
  common.sdkCodeVersion = SdkConstraints::sdkCodeVersion;
  common.bundle = application.applicationBundle;

  // At least 1, whatever the backend says: the loop below must make progress.
  const auto limit =
      std::max<std::int64_t>(1, stateManager_.getActiveProject()->configuration.countForRequest);
  std::vector<Package> packages;
  while (!events.empty()) {
    const auto count = std::min(events.size(), static_cast<std::size_t>(limit));
    Package& package = packages.emplace_back(common);
    package.events.emplace();
    package.events->reserve(count);
    for (const auto& event : events.first(count)) package.events->push_back(event->json);
    events = events.subspan(count);
  }
  return packages;
}

void ReportService::sendSavedReports() {
  resendWhenFinish_ = isSending_;  // The running batch does not contain the newest reports.
  if (isSending_) return;
  batch_ = savedReports();
  if (batch_.empty()) return;
  isSending_ = true;
  continueBatch();
}

std::deque<ReportService::Share> ReportService::savedReports() const {
  const auto& activeUser = stateManager_.getActiveUser();
  std::deque<Share> batch;
  for (const auto& user : usersOfBatch()) {
    const std::size_t count = reportsRepository_.countOfUser(user->idKey);
    if (count == 0) continue;
    Identifiers identifiers = stateManager_.getIdentifiers(*user);
    // The backend's identifiers belong to the active user only.
    if (user->idKey != activeUser->idKey) {
      identifiers.pelorinoId.reset();
      identifiers.crossPlatformPelorinoId.reset();
      identifiers.pelorinoIdTimestamp.reset();
    }
    batch.push_back({user->idKey, std::move(identifiers), count});
    Logger::writeLog(PLRLogLevel::info, [&] {
      return fmt::format("Send buffered events for user [{}]", user->userId.value_or(""));
    });
  }
  return batch;
}

void ReportService::continueBatch() {
  try {
    ReportList reports = nextReports();
    if (reports.empty()) return endBatch(true);
    sendReports(std::make_shared<const HandOver>(
        HandOver{.reports = std::move(reports), .removals = removals_}));
  } catch (...) {  // Such as no memory. A batch that never ends would block all later ones.
    endBatch(false);
    throw;
  }
}

/// Returns the next reports, or none at the end of the batch. The reports handed over before have
/// been deleted, so the next ones are always the first rows of their user.
ReportService::ReportList ReportService::nextReports() {
  ReportList reports;
  while (!batch_.empty() && reports.size() < reportsAtOnce) {
    Share& share = batch_.front();
    const std::size_t wanted = std::min(share.reports, reportsAtOnce - reports.size());
    std::size_t taken = 0;
    for (const auto& report : reportsRepository_.firstOfUser(share.userId, wanted)) {
      if (!readPackages(*report)) break;
      report->appKey = stateManager_.getActiveProject()->applicationKey;
      report->identifiers = share.identifiers;
      reports.push_back(report);
      ++taken;
    }
    share.reports -= taken;
    // Fewer rows than wanted: the user may have been removed, or a row cannot be read. The rows
    // behind an unreadable one wait for the next batch, to keep their order.
    if (share.reports == 0 || taken < wanted) batch_.pop_front();
  }
  return reports;
}

/// A delivered report is not sent again, so its packages are not needed.
bool ReportService::readPackages(Report& report) {
  return DeliveredReports::contains(report.uuid) || reportsRepository_.readPackages(report);
}

/// Each report gets its own block. When the run ends, the remaining blocks do nothing, and the next
/// run sends those reports.
void ReportService::sendReports(const std::shared_ptr<const HandOver>& reports, std::size_t at) {
  run_.add(QueueManager::networkSerialQueue(), [this, reports, at] {
    bool succeeded = false;
    try {
      // If reports have been removed, the rest of these may be gone. The batch ends, and a new one
      // looks up what is still stored.
      const bool isCutShort = removals_ != reports->removals;
      succeeded = isCutShort || send(reports->reports[at]);
      const bool isLast = at + 1 == reports->reports.size();
      if (succeeded && !isCutShort && !isLast) return sendReports(reports, at + 1);
    } catch (const std::exception& error) {  // Such as no memory. The batch must end even so.
      succeeded = false;
      Logger::writeLog(PLRLogLevel::error,
                       [&] { return std::string("Report submission failed: ") + error.what(); });
    }
    run_.add(QueueManager::incomeQueue(), [this, succeeded, removals = reports->removals] {
      const bool wasCutShort = removals_ != removals;
      resendWhenFinish_ = resendWhenFinish_ || wasCutShort;
      succeeded && !wasCutShort ? continueBatch() : endBatch(succeeded);
    });
  });
}

bool ReportService::send(const std::shared_ptr<Report>& report) {
  if (DeliveredReports::contains(report->uuid)) {
    removeReport(report);
    return true;
  }
  logSending(*report);
  if (const auto failure = deliver(report)) {
    logFailure(*report, failure->description());
    Logger::writeLog(PLRLogLevel::debug, "The network queue is stopped");
    return false;
  }
  DeliveredReports::add(report->uuid);  // First: from here on it must not be sent again.
  logSuccess(*report);
  removeReport(report);
  return true;
}

std::optional<PLRError> ReportService::deliver(const std::shared_ptr<Report>& report) const {
  return backend_
      .ask(BackendRepository::sendAnalytics, *report->appKey, *report->identifiers,
           {.reports = {report}})
      .answer;
}

void ReportService::removeReport(const std::shared_ptr<Report>& report) {
  const bool isFirst = arrived_.update([&](ReportList& arrived) {
    arrived.push_back(report);
    return arrived.size() == 1;
  });
  // If a block is waiting already, it deletes this report, too. So one statement deletes many
  // reports when the network is faster than the disk.
  if (!isFirst) return;
  run_.addForSure([this] {
    const ReportList arrived =
        arrived_.update([](ReportList& reports) { return std::exchange(reports, {}); });
    const bool isDeleted = reportsRepository_.deleteItems(arrived);
    // The uuid stays listed if the row may still be there. It also stays after the end of the run:
    // the next run may have read the row before it was deleted.
    if (run_.hasEnded()) return;
    if (isDeleted) {
      for (const auto& one : arrived) DeliveredReports::remove(one->uuid);
    }
    if (onReportSendAction) onReportSendAction();
  });
}

void ReportService::endBatch(bool succeeded) {
  isSending_ = false;
  batch_.clear();
  // After a failure there is no new batch at once: the backend may be out of reach.
  const bool again = std::exchange(resendWhenFinish_, false) && succeeded;
  if (again) sendSavedReports();
}

}  // namespace pelorino
