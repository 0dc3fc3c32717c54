#pragma once

#include <map>
#include <memory>
#include <string>
#include <typeindex>

#include "Backend.h"
#include "LifeCycle.h"
#include "PlatformiOS.h"
#include "SQLiteProvider.h"

namespace pelorino {

/// Owns the four base objects and the repositories. Each repository is made once, on its first use:
/// everyone who uses a table must share one cache.
///
/// Threads: the incomeQueue only.
class CoreFactory final {
 public:
  /// Opens the database, and makes or upgrades its tables. Throws when that fails.
  explicit CoreFactory(const std::string& applicationKey);

  [[nodiscard]] LifeCycleRepository& lifeCycle() { return lifeCycle_; }
  [[nodiscard]] BackendProtocol& backend() { return backend_; }
  [[nodiscard]] PlatformProtocol& platform() { return platform_; }

  /// The repository of this type; valid as long as this object.
  template <class Repository>
  [[nodiscard]] Repository& get() {
    auto& made = repositories_[typeid(Repository)];
    if (!made) made = std::make_shared<Repository>(database_);
    return *static_cast<Repository*>(made.get());
  }

 private:
  LifeCycleRepository lifeCycle_;
  Backend backend_;
  PlatformiOS platform_;
  SQLiteProvider database_;
  std::map<std::type_index, std::shared_ptr<void>> repositories_;
};

}  // namespace pelorino
