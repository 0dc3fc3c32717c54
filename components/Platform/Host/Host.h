#pragma once

#include <pelorino/PLRStore.h>

#include <memory>

#include "HostCode.h"
#include "HostDescription.h"

namespace pelorino {

class HttpExchange;
class ResolvedHost;

enum class ApplicationState : int {
  active = 0,
  inactive = 1,
  background = 2,
};

/// What the host has told the library. Process-wide, never destroyed; any thread.
class Host final {
 public:
  Host() = delete;

  /// Replaces the description. Reads no file and asks no system: that is done where the facts are
  /// used.
  static void describe(HostDescription description);
  [[nodiscard]] static std::shared_ptr<const HostDescription> description();

  /// `active` until told otherwise.
  [[nodiscard]] static ApplicationState applicationState();
  static void setApplicationState(ApplicationState state);

  /// None until told otherwise.
  using HeldStore = HostSlot<std::shared_ptr<PLRStore>>::Held;
  [[nodiscard]] static HeldStore store();
  static void setStore(std::shared_ptr<PLRStore> store);

  /// At each read: the description of that time, completed from the current system.
  [[nodiscard]] static ResolvedHost& facts();

  /// The current system's exchanges, each with the proxy and the certificates of the description
  /// at its time.
  [[nodiscard]] static HttpExchange& http();
};

}  // namespace pelorino
