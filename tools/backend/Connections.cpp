#include "Connections.h"

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>

#include <charconv>
#include <filesystem>
#include <string>
#include <system_error>

namespace pelorino::backend {

namespace {

using NameOfEnd = int (*)(int, sockaddr*, socklen_t*);

/// The port of one end of a connected IPv4 socket; none for any other descriptor.
std::optional<int> portOf(int descriptor, NameOfEnd nameOfEnd) {
  sockaddr_in address{};
  socklen_t size = sizeof address;
  if (nameOfEnd(descriptor, reinterpret_cast<sockaddr*>(&address), &size) != 0) return std::nullopt;
  if (address.sin_family != AF_INET) return std::nullopt;
  return ntohs(address.sin_port);
}

int peerName(int descriptor, sockaddr* address, socklen_t* size) {
  return getpeername(descriptor, address, size);
}
int socketName(int descriptor, sockaddr* address, socklen_t* size) {
  return getsockname(descriptor, address, size);
}

}  // namespace

void closeAcceptedConnections(int localPort, std::optional<int> remotePort) {
  std::error_code error;
  for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd", error)) {
    const std::string name = entry.path().filename();
    int descriptor = -1;
    std::from_chars(name.data(), name.data() + name.size(), descriptor);
    const std::optional<int> peer = portOf(descriptor, peerName);
    if (!peer || portOf(descriptor, socketName) != localPort) continue;
    if (!remotePort || peer == remotePort) shutdown(descriptor, SHUT_RDWR);
  }
}

}  // namespace pelorino::backend
