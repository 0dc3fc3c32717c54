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

/// Reports that go to the network queue at once. An attempt that fails has prepared no more than
/// these, a long batch seldom waits for the incomeQueue, and not all that wait are in memory.
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
  std::ranges::stable_sort(users, {}, [](const auto& user) {
    return user->sessionId.value_or(std::numeric_limits<std::int64_t>::max());
  });
  return users;
}

void ReportService::packEventsOf(const User& user) {
  const auto events = eventRepository_.ofUser(user.idKey);
  if (events.empty()) return;
  auto packages = createPackages(events);
  if (packages.empty()) return;
  auto report = std::make_shared<Report>(packages, random_.uuid());
  report->userId = user.idKey;
  // Without a stored report the events must stay: they would be in no table at all.
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
  resendWhenFinish_ = isSending_;
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
    if (user->idKey != activeUser->idKey) {  // The backend's identifiers are the active user's.
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
  } catch (...) {  // No memory: without its end, a batch would keep all later ones from beginning.
    endBatch(false);
    throw;
  }
}

/// Those handed over before have been deleted, so that the next ones are the first of their user.
/// Empty at the end of the batch.
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
    // Rows may have been removed with their user meanwhile. One that cannot be read holds up those
    // behind it until the next batch: they would overtake it.
    if (share.reports == 0 || taken < wanted) batch_.pop_front();
  }
  return reports;
}

/// A row that an earlier run has deleted need not be read: its report is not sent again.
bool ReportService::readPackages(Report& report) {
  return DeliveredReports::contains(report.uuid) || reportsRepository_.readPackages(report);
}

/// A block for each report: when the run ends, what has not been sent yet is left to the next run.
void ReportService::sendReports(const std::shared_ptr<const HandOver>& reports, std::size_t at) {
  run_.add(QueueManager::networkSerialQueue(), [this, reports, at] {
    bool succeeded = false;
    try {
      // After a removal the rest is left alone, and what of it is still stored is looked up again.
      const bool isCutShort = removals_ != reports->removals;
      succeeded = isCutShort || send(reports->reports[at]);
      const bool isLast = at + 1 == reports->reports.size();
      if (succeeded && !isCutShort && !isLast) return sendReports(reports, at + 1);
    } catch (const std::exception& error) {  // Such as no memory for the body: the batch must end.
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
  DeliveredReports::add(report->uuid);
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
  // Otherwise the block that waits takes this one along: where the network is faster than the disk,
  // one statement deletes what has arrived meanwhile.
  if (!isFirst) return;
  run_.addForSure([this] {
    const ReportList arrived =
        arrived_.update([](ReportList& reports) { return std::exchange(reports, {}); });
    const bool isDeleted = reportsRepository_.deleteItems(arrived);
    // The uuid stays when the row may still be there, and after the end of the run: the next one
    // may have read the row before it was deleted.
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
  const bool again = std::exchange(resendWhenFinish_, false) && succeeded;
  if (again) sendSavedReports();
}

}  // namespace pelorino
