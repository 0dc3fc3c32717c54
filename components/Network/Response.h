#pragma once

#include <optional>
#include <string>

#include "PLRError.h"

namespace pelorino {

/// The end of one exchange. Without an HTTP answer the status reads 400, like a refusal.
struct Response {
  int statusCode = 400;
  std::optional<std::string> data;
  std::optional<PLRError> error;
};

}  // namespace pelorino
