#include "DeterministicSystem.h"

#include <array>
#include <cstdio>
#include <cstdlib>

#include "NotificationHub.h"
#include "RealFiles.h"

namespace pelorino {

DeterministicSystem& DeterministicSystem::instance() {
  static DeterministicSystem& system = []() -> DeterministicSystem& {
    auto& made = *new DeterministicSystem;
    System::install(made);
    std::atexit([] { instance().scheduler_.endThreads(); });
    return made;
  }();
  return system;
}

DeterministicSystem::DeterministicSystem()
    : notifications_(std::make_unique<NotificationHub>()), files_(std::make_unique<RealFiles>()) {}

void DeterministicSystem::reset(std::uint64_t seed) {
  clock_.offset = startTime;
  random_.generator.seed(seed);
  executor_.reset(seed);
  http_.reset();
  facts_.values = {};
  keyStores_.clear();
  scheduler_.reset(seed);
}

void DeterministicSystem::setTime(std::int64_t milliseconds) {
  clock_.offset = milliseconds - scheduler_.now().count();
}

MemoryKeyStore::Values& DeterministicSystem::keyStoreValues(const std::string& path) {
  return *keyStoreAt(path);
}

std::unique_ptr<KeyStore> DeterministicSystem::openKeyStore(const std::string& path) {
  return std::make_unique<MemoryKeyStore>(keyStoreAt(path));
}

std::shared_ptr<MemoryKeyStore::Values> DeterministicSystem::keyStoreAt(const std::string& path) {
  auto& values = keyStores_[path];
  if (!values) values = std::make_shared<MemoryKeyStore::Values>();
  return values;
}

std::string DeterministicSystem::SeededRandom::uuid() {
  const std::uint64_t high = generator();
  const std::uint64_t low = generator();
  std::array<char, 37> text{};
  std::snprintf(text.data(), text.size(), "%08X-%04X-4%03X-%04X-%012llX",
                static_cast<unsigned>(high >> 32), static_cast<unsigned>(high >> 16 & 0xFFFF),
                static_cast<unsigned>(high & 0xFFF),
                static_cast<unsigned>((low >> 48 & 0x3FFF) | 0x8000),
                static_cast<unsigned long long>(low & 0xFFFF'FFFF'FFFF));
  return text.data();
}

}  // namespace pelorino
