#include "CoreFactory.h"

#include "Host.h"
#include "PlatformStorage.h"
#include "ResolvedHost.h"
#include "SQLiteContracts.h"
#include "System.h"

namespace pelorino {

CoreFactory::CoreFactory(const std::string& applicationKey)
    : lifeCycle_(System::current().notifications()),
      backend_(Host::http()),
      platform_(std::make_shared<PlatformStorage>()),
      database_(applicationKey, Host::facts().supportDirectory(), SQLiteContracts::schema()) {}

}  // namespace pelorino
