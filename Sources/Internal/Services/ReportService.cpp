#include "ReportService.h"

#include <fmt/format.h>

#include <algorithm>
#include <cstdint>
#include <exception>
#include <limits>
#include <string_view>
#include <utility>

#include "DeliveredReports.h"
#include "Logger.h"
#include "QueueManager.h"
#include "RowIds.h"
#include "SdkConstraints.h"

namespace pelorino {
namespace {

/// The incomeQueue only.
int newestGeneration = 0;

/// Twice as many go each time, up to the largest. So an attempt that fails has prepared few
/// reports, a long batch seldom waits for the incomeQueue, and neither has all that wait in memory.
constexpr std::size_t firstHandOver = 16;
constexpr std::size_t largestHandOver = 256;

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

ReportService::ReportService(std::shared_ptr<StateManager> stateManager,
                             std::shared_ptr<EventRepository> eventRepository,
                             std::shared_ptr<ReportsRepository> reportsRepository,
                             std::shared_ptr<BackendProtocol> backend)
    : stateManager_(std::move(stateManager)),
      eventRepository_(std::move(eventRepository)),
      reportsRepository_(std::move(reportsRepository)),
      backend_(std::move(backend)),
      generation_(++newestGeneration) {}

void ReportService::sendFlashEvent(const Storable& event) {
  const auto object = std::make_shared<EventObject>();
  object->code = event.code();
  object->json = event.getJson();
  auto report = std::make_shared<Report>(createPackages({&object, 1}));
  report->identifiers = stateManager_->getIdentifiers(*stateManager_->getActiveUser());
  report->appKey = stateManager_->getActiveProject()->applicationKey;
  QueueManager::networkFlashQueue().addOperation([weak = weak_from_this(), report] {
    const auto self = weak.lock();
    if (!self) return;
    logSending(*report);
    const auto failure =
        self->backend_->sendAnalytics(*report->appKey, *report->identifiers, {.reports = {report}});
    failure ? logFailure(*report, failure->description()) : logSuccess(*report);
  });
}

void ReportService::sendBufferedEvents() {
  for (const auto& user : usersOfBatch()) packEventsOf(*user);
  sendSavedReports();
}

void ReportService::removeInactiveUserData(const std::vector<std::shared_ptr<User>>& users) {
  ++removals_;
  reportsRepository_->deleteForDataForUsers(rowIds(users));
}

void ReportService::removeAllReports() {
  ++removals_;
  reportsRepository_->clear();
}

std::vector<std::shared_ptr<User>> ReportService::usersOfBatch() const {
  auto users = stateManager_->getProjectUsers();
  std::ranges::stable_sort(users, {}, [](const auto& user) {
    return user->sessionId.value_or(std::numeric_limits<std::int64_t>::max());
  });
  return users;
}

void ReportService::packEventsOf(const User& user) {
  const auto events = eventRepository_->ofUser(user.idKey);
  if (events.empty()) return;
  auto packages = createPackages(events);
  if (packages.empty()) return;
  auto report = std::make_shared<Report>(std::move(packages));
  report->userId = user.idKey;
  // Without a stored report the events must stay: they would be in no table at all.
  if (!reportsRepository_->insert(report)) return;
  eventRepository_->deleteItems(events);
}

std::vector<Package> ReportService::createPackages(
    std::span<const std::shared_ptr<EventObject>> events) const {
  const auto device = stateManager_->getDeviceData();
  if (!device) {
    Logger::writeLog(PLRLogLevel::error, "Cannot obtain device information!");
    return {};
  }
  const ApplicationData application = stateManager_->getAppData();
  Package common;
  common.language = device->language;
  if (!stateManager_->isEditorMode()) {
    common.appVersion = application.applicationVersion;
    common.appBuildVersion = application.applicationBuildVersion;
  }
  common.sdkVersion = SdkConstraints::sdkVersion();
  common.sdkCodeVersion = SdkConstraints::sdkCodeVersion;
  common.bundle = application.applicationBundle;

  const auto limit =
      std::max<std::int64_t>(1, stateManager_->getActiveProject()->configuration.countForRequest);
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
  if (isReplaced()) return;
  resendWhenFinish_ = isSending_;
  if (isSending_) return;
  batch_ = savedReports();
  if (batch_.empty()) return;
  isSending_ = true;
  handOver_ = firstHandOver;
  continueBatch();
}

std::deque<ReportService::Share> ReportService::savedReports() const {
  const auto& activeUser = stateManager_->getActiveUser();
  std::deque<Share> batch;
  for (const auto& user : usersOfBatch()) {
    const std::size_t count = reportsRepository_->countOfUser(user->idKey);
    if (count == 0) continue;
    Identifiers identifiers = stateManager_->getIdentifiers(*user);
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

/// An exchange under way may keep a torn down service for a while. What is stored by then is the
/// next one's, which cannot know what this one would send of it.
bool ReportService::isReplaced() const {
  return generation_ != newestGeneration;
}

void ReportService::continueBatch() {
  if (isReplaced()) return endBatch(false);
  try {
    ReportList reports = nextReports();
    if (reports.empty()) return endBatch(true);
    QueueManager::networkSerialQueue().addOperation(
        [weak = weak_from_this(), reports = std::move(reports), removals = removals_.load()] {
          sendReports(weak, reports, removals);
        });
  } catch (...) {  // No memory: without its end, a batch would keep all later ones from beginning.
    endBatch(false);
    throw;
  }
}

/// Those handed over before have been deleted, so that the next ones are the first of their user.
/// Empty at the end of the batch.
ReportService::ReportList ReportService::nextReports() {
  ReportList reports;
  while (!batch_.empty() && reports.size() < handOver_) {
    Share& share = batch_.front();
    const std::size_t wanted = std::min(share.reports, handOver_ - reports.size());
    std::size_t taken = 0;
    for (const auto& report : reportsRepository_->firstOfUser(share.userId, wanted)) {
      if (!isReadable(*report)) break;
      report->appKey = stateManager_->getActiveProject()->applicationKey;
      report->identifiers = share.identifiers;
      reports.push_back(report);
      ++taken;
    }
    share.reports -= taken;
    // Rows may have been removed with their user meanwhile. One that cannot be read holds up those
    // behind it until the next batch: they would overtake it.
    if (share.reports == 0 || taken < wanted) batch_.pop_front();
  }
  handOver_ = std::min(2 * handOver_, largestHandOver);
  return reports;
}

/// A row that a library torn down before has deleted need not be read: its report is not sent
/// again.
bool ReportService::isReadable(Report& report) {
  return DeliveredReports::contains(report.uuid) || reportsRepository_->readPackages(report);
}

void ReportService::sendReports(const std::weak_ptr<ReportService>& weak, const ReportList& reports,
                                int removals) {
  bool succeeded = false;
  try {
    // Held for one report at a time: what a torn down library has not sent yet is the next one's.
    // After a removal the rest is left alone, and what of it is still stored is looked up again.
    succeeded = std::ranges::all_of(reports, [&](const auto& report) {
      const auto self = weak.lock();
      return self && (self->removals_ != removals || self->send(report));
    });
  } catch (const std::exception& error) {  // Such as no memory for the body: the batch must end.
    Logger::writeLog(PLRLogLevel::error,
                     [&] { return std::string("Report submission failed: ") + error.what(); });
  }
  QueueManager::incomeQueue().addOperation([weak, succeeded, removals] {
    const auto self = weak.lock();
    if (!self) return;
    const bool wasCutShort = self->removals_ != removals;
    self->resendWhenFinish_ = self->resendWhenFinish_ || wasCutShort;
    succeeded && !wasCutShort ? self->continueBatch() : self->endBatch(succeeded);
  });
}

bool ReportService::send(const std::shared_ptr<Report>& report) {
  if (DeliveredReports::contains(report->uuid)) {
    removeReport(report);
    return true;
  }
  logSending(*report);
  const auto failure =
      backend_->sendAnalytics(*report->appKey, *report->identifiers, {.reports = {report}});
  if (failure) {
    logFailure(*report, failure->description());
    Logger::writeLog(PLRLogLevel::debug, "The network queue is stopped");
    return false;
  }
  DeliveredReports::add(report->uuid);
  logSuccess(*report);
  removeReport(report);
  return true;
}

void ReportService::removeReport(const std::shared_ptr<Report>& report) {
  const bool isFirst = arrived_->update([&](ReportList& arrived) {
    arrived.push_back(report);
    return arrived.size() == 1;
  });
  // Otherwise the block that waits takes this one along: where the network is faster than the disk,
  // one statement deletes what has arrived meanwhile.
  if (!isFirst) return;
  // The repository is held: a report that has arrived is deleted even if the library is torn down
  // meanwhile.
  QueueManager::incomeQueue().addOperation([weak = weak_from_this(),
                                            repository = reportsRepository_, list = arrived_,
                                            generation = generation_] {
    const ReportList arrived =
        list->update([](ReportList& reports) { return std::exchange(reports, {}); });
    // A library that has started meanwhile has read the rows before, and may hold them to be there.
    // What the disk does not let go is read by the next one.
    if (repository->deleteItems(arrived) && generation == newestGeneration) {
      for (const auto& one : arrived) DeliveredReports::remove(one->uuid);
    }
    const auto self = weak.lock();
    if (self && self->onReportSendAction) self->onReportSendAction();
  });
}

void ReportService::endBatch(bool succeeded) {
  isSending_ = false;
  batch_.clear();
  const bool again = std::exchange(resendWhenFinish_, false) && succeeded;
  if (again) sendSavedReports();
}

}  // namespace pelorino
