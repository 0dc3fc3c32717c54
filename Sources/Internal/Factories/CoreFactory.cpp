#include "CoreFactory.h"

#include "BackendRepository.h"
#include "ContentFactory.h"
#include "Host.h"
#include "Network.h"
#include "PlatformStorage.h"
#include "ResolvedHost.h"
#include "SQLiteContracts.h"
#include "System.h"

namespace pelorino {

CoreFactory::CoreFactory(const std::string& applicationKey)
    : lifeCycle_(System::current().notifications()),
      backend_(std::make_shared<BackendRepository>(std::make_shared<Network>(Host::http()),
                                                   std::make_shared<ContentFactory>())),
      platform_(std::make_shared<PlatformStorage>()),
      database_(std::make_shared<SQLiteProvider>(applicationKey, Host::facts().supportDirectory(),
                                                 SQLiteContracts::schema())) {}

}  // namespace pelorino
