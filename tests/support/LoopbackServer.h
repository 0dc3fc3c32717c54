#pragma once

#include <arpa/inet.h>
#include <netinet/in.h>
#include <sys/socket.h>
#include <unistd.h>

#include <atomic>
#include <cstdint>
#include <string>
#include <thread>
#include <utility>
#include <vector>

namespace pelorino {

/// A listening socket on 127.0.0.1: a peer that accepts connections and never says a word.
class SilentServer {
 public:
  SilentServer() : socket_(::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0)) {
    sockaddr_in address{};
    address.sin_family = AF_INET;
    address.sin_addr.s_addr = htonl(INADDR_LOOPBACK);
    socklen_t size = sizeof address;
    auto* general = reinterpret_cast<sockaddr*>(&address);
    if (::bind(socket_, general, size) == 0 && ::listen(socket_, SOMAXCONN) == 0 &&
        ::getsockname(socket_, general, &size) == 0) {
      port_ = ntohs(address.sin_port);
    }
  }
  ~SilentServer() { ::close(socket_); }
  SilentServer(const SilentServer&) = delete;
  SilentServer& operator=(const SilentServer&) = delete;

  [[nodiscard]] std::string port() const { return std::to_string(port_); }
  [[nodiscard]] std::string url(const std::string& path) const {
    return "http://127.0.0.1:" + port() + path;
  }

 protected:
  const int socket_;

 private:
  std::uint16_t port_ = 0;
};

/// Answers the requests that come, in turn, with the given bytes. An answer that is empty or says
/// "Connection: close" ends its connection. One connection at a time.
class LoopbackServer : public SilentServer {
 public:
  explicit LoopbackServer(std::vector<std::string> answers)
      : answers_(std::move(answers)), thread_([this] { serve(); }) {}

  /// The requests as they came. Ends the server, after the client is done.
  std::vector<std::string> requests() {
    if (thread_.joinable()) {
      ::shutdown(socket_, SHUT_RDWR);
      ::shutdown(connection_, SHUT_RDWR);
      thread_.join();
    }
    return requests_;
  }
  [[nodiscard]] int connections() const { return connections_; }
  ~LoopbackServer() { requests(); }

 private:
  void serve() {
    for (;;) {
      const int connection = ::accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC);
      if (connection < 0) return;
      connection_ = connection;
      ++connections_;
      while (answerOne(connection)) continue;
      connection_ = -1;
      ::close(connection);
    }
  }

  bool answerOne(int connection) {
    std::string request;
    std::size_t wanted = std::string::npos;
    while (request.size() < wanted) {
      char buffer[65536];
      const ssize_t count = ::recv(connection, buffer, sizeof buffer, 0);
      if (count <= 0) return false;
      request.append(buffer, static_cast<std::size_t>(count));
      const std::size_t head = request.find("\r\n\r\n");
      const std::size_t size = request.find("Content-Length: ");
      if (head == std::string::npos) continue;
      wanted = head + 4 + (size < head ? std::stoul(request.substr(size + 16)) : 0);
    }
    requests_.push_back(request);
    if (requests_.size() > answers_.size()) return false;
    const std::string& answer = answers_[requests_.size() - 1];  // A blocking send() takes it all.
    return ::send(connection, answer.data(), answer.size(), MSG_NOSIGNAL) > 0 &&
           answer.find("Connection: close") == std::string::npos;
  }

  const std::vector<std::string> answers_;
  std::vector<std::string> requests_;
  std::atomic<int> connections_{0};
  std::atomic<int> connection_{-1};
  std::thread thread_;
};

}  // namespace pelorino
