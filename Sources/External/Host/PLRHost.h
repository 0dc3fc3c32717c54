#pragma once

#include <pelorino/PLRExport.h>
#include <pelorino/PLRHostDescription.h>
#include <pelorino/PLRStore.h>

#include <memory>

/// Whether the application is in use. The numbers are part of the interface.
enum class PLRApplicationState : int {
  active = 0,
  inactive = 1,
  background = 2,
};

/// Tells the library what the application is, and when it enters and leaves the foreground. A
/// desktop program need not use it. Any thread; nothing throws.
class PLR_EXPORT PLRHost {
 public:
  PLRHost() = delete;

  /// Replaces the description. Call it before PLRAnalytics::initialize. It only copies the values;
  /// files and the system are read later.
  static void describe(const PLRHostDescription& description) noexcept;

  /// Sets the state and does nothing else; it is `active` at first. The first three operations
  /// below set it, too.
  static void setApplicationState(PLRApplicationState state) noexcept;

  /// The store that the library asks for subscription products; null removes it. Set it before
  /// PLRAnalytics::initialize: a request that finds no store fails and is repeated only after one
  /// minute or more.
  static void setStore(std::shared_ptr<PLRStore> store) noexcept;

  /// The application has come to the foreground.
  static void didBecomeActive() noexcept;

  /// The application leaves the foreground. These three store everything reported so far before
  /// they return. They do not wait for the network. If the start itself is still held back in the
  /// background, they do not wait for it, and nothing is stored yet.
  static void willResignActive() noexcept;
  static void didEnterBackground() noexcept;
  static void willTerminate() noexcept;
};
