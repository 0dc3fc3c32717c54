#include <pelorino/PLRReferralProperty.h>
#include <pelorino/PLRSocialNetwork.h>

#include <map>
#include <string>

#include "Guarded.h"

using namespace pelorino;

namespace {

/// The instance of this name. Never destroyed: a host may hold it while it exits. The name may lie
/// in a module that is unloaded some day.
template <class Named>
const Named& sharedInstance(const char* name) {
  static auto& instances = *new Guarded<std::map<std::string, Named>>;
  return *instances.update(
      [name](auto& made) { return &made.try_emplace(name, name).first->second; });
}

}  // namespace

const PLRSocialNetwork& PLRSocialNetwork::shared(const char* name) {
  return sharedInstance<PLRSocialNetwork>(name);
}

const PLRReferralProperty& PLRReferralProperty::shared(const char* name) {
  return sharedInstance<PLRReferralProperty>(name);
}
