#pragma once

#include <pelorino/PLRExport.h>
#include <pelorino/PLRHostDescription.h>
#include <pelorino/PLRStore.h>

#include <memory>

/// Where the application is.
enum class PLRApplicationState : int {
  active = 0,
  inactive = 1,
  background = 2,
};

/// Through this class a host tells the library what its platform would: what the application is,
/// and when it comes and goes. A desktop program may ignore it. Any thread; nothing throws.
class PLR_EXPORT PLRHost {
 public:
  PLRHost() = delete;

  /// Before PLRAnalytics::initialize. Only remembered here; files and the system are asked later.
  static void describe(const PLRHostDescription& description) noexcept;

  /// A process starts `active`. The operations below set the state by themselves.
  static void setApplicationState(PLRApplicationState state) noexcept;

  /// Where the library asks for the subscription products that the backend names; none forgets it.
  /// Best set before PLRAnalytics::initialize: a request that finds no store fails, and is made
  /// again after a minute or more.
  static void setStore(std::shared_ptr<PLRStore> store) noexcept;

  /// The application has come to the foreground.
  static void didBecomeActive() noexcept;

  /// The application leaves the foreground. These three return when everything reported so far has
  /// been stored; they do not wait for the network.
  static void willResignActive() noexcept;
  static void didEnterBackground() noexcept;
  static void willTerminate() noexcept;
};
