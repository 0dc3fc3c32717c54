#pragma once

#include <optional>

namespace pelorino::backend {

/// Shuts down the connections that this process has accepted on a local port, or the one whose
/// other end has `remotePort`. The HTTP server, which has no operation for this, closes them when
/// its next read or write fails. Any thread.
void closeAcceptedConnections(int localPort, std::optional<int> remotePort = std::nullopt);

}  // namespace pelorino::backend
