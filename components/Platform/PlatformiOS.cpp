#include "PlatformiOS.h"

#include <utility>

#include "Host.h"
#include "ResolvedHost.h"
#include "RootedCheck.h"
#include "System.h"

namespace pelorino {
namespace {

/// A fact of the build: this one is for devices.
constexpr bool isSimulator = false;

std::unique_ptr<KeyStore> openKeychain() {
  return System::current().openKeyStore(Host::facts().keyStoreFile());
}

std::shared_ptr<DeviceInfoGateway> makeDeviceGateway() {
  auto rootedCheck =
      std::make_unique<RootedCheck>([] { return Host::description()->integrityProbe; },
                                    System::current().executor().mainQueue(), isSimulator);
  return std::make_shared<DeviceInfoGateway>(std::make_unique<DeviceInfoRepository>(
      DeviceInfoCollector(Host::facts()), std::move(rootedCheck)));
}

}  // namespace

PlatformiOS::PlatformiOS(std::shared_ptr<PlatformStorageProtocol> platformStorage)
    : keychain_(openKeychain()),
      applicationGateway_(ApplicationInfoRepository(
          ApplicationCollector(Host::facts(), System::current().files(), isSimulator))),
      deviceGateway_(makeDeviceGateway()),
      identifierGateway_(IdentifierInfoRepository(
          IdentifierCollector(Host::facts(), *keychain_, System::current().random()))),
      platformStorage_(std::move(platformStorage)) {}

ApplicationData PlatformiOS::getApplicationData() {
  return applicationGateway_.getApplicationData();
}

void PlatformiOS::getDeviceData(DeviceDataHandler completionHandler) {
  deviceGateway_->getDeviceData(std::move(completionHandler));
}

IdentifierData PlatformiOS::getIdentifierData() {
  return identifierGateway_.getIdentifierData();
}

SdkData PlatformiOS::getSdkData() {
  return sdkGateway_.getSdkData();
}

void PlatformiOS::clearKeychain() {
  const auto keychain = openKeychain();
  IdentifierCollector::clearKeychain(Host::facts(), *keychain);
}

}  // namespace pelorino
