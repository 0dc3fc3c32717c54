#pragma once

#include "IdentifierCollector.h"
#include "Lazy.h"
#include "PlatformData.h"

namespace pelorino {

/// Puts together what the collector decides.
class IdentifierInfoRepository final {
 public:
  explicit IdentifierInfoRepository(IdentifierCollector collector) : collector_(collector) {}

  [[nodiscard]] IdentifierData read() const {
    // In this order: the first writes the keychain, the others do not depend on it.
    IdentifierData data;
    data.deviceUIDs = collector_.getUIDs();
    data.isLimitAdTrackingEnabled = !collector_.isTrackingAllowed();
    data.idfv = collector_.idfv();
    data.idfa = collector_.idfa();
    data.uuid = collector_.uuid();
    return data;
  }

 private:
  IdentifierCollector collector_;
};

/// By what the device is known, decided once in a process. Any thread of the library.
class IdentifierGateway final {
 public:
  explicit IdentifierGateway(IdentifierInfoRepository identifierInfoRepository)
      : identifierInfoRepository_(identifierInfoRepository) {}

  [[nodiscard]] IdentifierData getIdentifierData() {
    return identifierData_.get([&] { return identifierInfoRepository_.read(); });
  }

 private:
  IdentifierInfoRepository identifierInfoRepository_;
  Lazy<IdentifierData> identifierData_;
};

}  // namespace pelorino
