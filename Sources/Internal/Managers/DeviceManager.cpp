#include "DeviceManager.h"

#include <string>
#include <utility>

#include "PeopleCard.h"
#include "SdkConstraints.h"

namespace pelorino {
namespace {

constexpr const char* sdkVersionProperty = "sdkVersion";

}  // namespace

DeviceManager::DeviceManager(IdentifiersRepository& identifiersRepository,
                             ToolsRepository& toolsRepository, PlatformProtocol& platform,
                             Executor& executor)
    : identifiersRepository_(identifiersRepository),
      toolsRepository_(toolsRepository),
      platform_(platform),
      executor_(executor) {}

std::shared_ptr<DeviceIdentifiers> DeviceManager::initializeDeviceId(const Project& project) {
  const IdentifierData data = platform_.getIdentifierData();
  auto row = identifiersOf(project);
  if (!row) {
    row = std::make_shared<DeviceIdentifiers>();
    row->projectId = project.idKey;
    row->deviceIdentifier = data.deviceUIDs.current;
    row->previousDeviceIdentifier = data.deviceUIDs.prev;
    row->uuid = data.uuid;
    identifiersRepository_.insert(row);
  } else if (row->deviceIdentifier != data.deviceUIDs.current) {
    row->previousDeviceIdentifier = row->deviceIdentifier;
    row->deviceIdentifier = data.deviceUIDs.current;
    row->pelorinoId.reset();
    row->crossPlatformPelorinoId.reset();
    row->pelorinoIdTimestamp.reset();
    identifiersRepository_.update(*row);
  }
  return row;
}

void DeviceManager::updateDeviceIdentifiers(const DeviceIdentifiers& identifiers) {
  identifiersRepository_.update(identifiers);
}

std::optional<DeviceData> DeviceManager::getDeviceData() {
  // The platform's handler holds the other reference until it has been called or dropped.
  const bool isStillToCome = overdue_.use_count() > 1;
  if (isStillToCome && !overdue_->data.get()) return std::nullopt;
  overdue_.reset();
  const auto pending = std::make_shared<PendingDeviceData>();
  pending->arrived = executor_.makeSemaphore();
  platform_.getDeviceData([pending](const DeviceData& data) {
    pending->data.set(data);
    pending->arrived->signal();
  });
  if (!pending->arrived->wait(deviceDataTimeout)) overdue_ = pending;
  return pending->data.get();
}

ApplicationData DeviceManager::getAppData() {
  return platform_.getApplicationData();
}

IdentifierData DeviceManager::getIdentifiersData() {
  return platform_.getIdentifierData();
}

std::optional<bool> DeviceManager::sdkVersionIsChanged() {
  const std::string version = SdkConstraints::sdkVersion();
  const auto rows = toolsRepository_.list();
  if (rows.empty()) {
    auto tools = std::make_shared<SdkTools>();
    tools->properties[sdkVersionProperty] = version;
    toolsRepository_.insert(tools);
    return std::nullopt;
  }
  const auto tools = rows.front();
  const auto stored = tools->properties.find(sdkVersionProperty);
  if (stored == tools->properties.end() || stored->second.isEqual(version)) return false;
  stored->second = version;
  toolsRepository_.update(*tools);
  return true;
}

std::shared_ptr<DeviceIdentifiers> DeviceManager::identifiersOf(const Project& project) const {
  const auto rows = identifiersRepository_.ofProject(project.idKey);
  return rows.empty() ? nullptr : rows.front();
}

}  // namespace pelorino
