#include "RealSystem.h"

#include <boost/uuid/random_generator.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <chrono>

#include "FileKeyStore.h"

namespace pelorino {

std::int64_t RealClock::milliseconds() const {
  const auto sinceEpoch = std::chrono::system_clock::now().time_since_epoch();
  return std::chrono::round<std::chrono::milliseconds>(sinceEpoch).count();
}

std::string RealRandom::uuid() {
  std::string text = boost::uuids::to_string(boost::uuids::random_generator_pure{}());
  for (char& c : text) {
    if (c >= 'a' && c <= 'f') c = static_cast<char>(c - 'a' + 'A');
  }
  return text;
}

System& System::real() {
  static System& instance = *new RealSystem;
  return instance;
}

std::unique_ptr<KeyStore> RealSystem::openKeyStore(const std::string& path) {
  return std::make_unique<FileKeyStore>(path);
}

}  // namespace pelorino
