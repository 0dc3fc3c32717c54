#pragma once

#include <memory>
#include <string>

#include "Clock.h"
#include "Executor.h"
#include "Facts.h"
#include "Files.h"
#include "HttpExchange.h"
#include "KeyStore.h"
#include "NotificationCenter.h"
#include "Random.h"

namespace pelorino {

/// The operating system as the library sees it. Everything above this folder reaches threads,
/// waiting, time, randomness, sockets and files through here and nowhere else.
///
/// One instance serves the process and is never destroyed: work may still be running while the
/// process exits.
class System {
 public:
  virtual ~System() = default;

  virtual Clock& clock() = 0;
  virtual Executor& executor() = 0;
  virtual HttpExchange& http() = 0;
  virtual NotificationCenter& notifications() = 0;
  virtual Random& random() = 0;
  virtual Files& files() = 0;
  virtual Facts& facts() = 0;

  /// The store of small values in the file at `path`, which is made when first written.
  [[nodiscard]] virtual std::unique_ptr<KeyStore> openKeyStore(const std::string& path) = 0;

  /// The system in use: the real one, unless another was installed before the first call.
  static System& current();

  /// Puts another system in place of the real one, for the life of the process. Call it before
  /// anything else of the library.
  static void install(System& system);

 private:
  /// Defined by the row of the real system, which nothing here can include.
  static System& real();
};

}  // namespace pelorino
