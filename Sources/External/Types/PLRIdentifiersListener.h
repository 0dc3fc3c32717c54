#pragma once

#include <pelorino/PLRExport.h>

#include <cstdint>

/// Receives the identifier that the backend has given to this user and device. The library keeps
/// the listener until another one is set.
class PLR_EXPORT PLRIdentifiersListener {
 public:
  virtual ~PLRIdentifiersListener() = default;

  /// Called on a thread of the library. `pelorinoId` is never 0. An exception is logged.
  virtual void didReceivePelorinoIdWith(std::int64_t /*pelorinoId*/) {}
};
