#include "RealSystem.h"

#include "FileKeyStore.h"

namespace pelorino {

std::unique_ptr<KeyStore> RealSystem::openKeyStore(const std::string& path) {
  return std::make_unique<FileKeyStore>(path);
}

}  // namespace pelorino
