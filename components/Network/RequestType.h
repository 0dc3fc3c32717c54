#pragma once

namespace pelorino {

enum class RequestType { GET, POST };

/// The method's name on the wire.
[[nodiscard]] constexpr const char* rawValue(RequestType type) noexcept {
  return type == RequestType::GET ? "GET" : "POST";
}

}  // namespace pelorino
