#include "SdkConstraints.h"

#include <utility>

#include "Guarded.h"

namespace pelorino {
namespace {

Guarded<std::string>& version() {
  static auto& shared = *new Guarded<std::string>("2.1.2");
  return shared;
}

}  // namespace

std::string SdkConstraints::sdkVersion() {
  return version().get();
}

void SdkConstraints::setSdkVersion(std::string text) {
  version().set(std::move(text));
}

}  // namespace pelorino
