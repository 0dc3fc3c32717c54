#pragma once

#include <pelorino/PLRExport.h>

#include <cstdint>

/// Told of the identifier that the backend has given this user and device.
class PLR_EXPORT PLRIdentifiersListener {
 public:
  virtual ~PLRIdentifiersListener() = default;

  /// On one of the library's own threads, with an identifier other than 0.
  virtual void didReceivePelorinoIdWith(std::int64_t /*pelorinoId*/) {}
};
