// A development backend on loopback: it stands in for the server that clients of the library talk
// to, checks what they send, keeps it, and answers what it is told to.

#include <signal.h>

#include <charconv>
#include <exception>
#include <iostream>
#include <optional>
#include <span>
#include <stdexcept>
#include <string>
#include <thread>

#include "Account.h"
#include "BackendServer.h"
#include "ExchangeStore.h"
#include "StoredEvents.h"

namespace {

using namespace pelorino::backend;

constexpr const char* usage =
    "usage: pelorino-backend --data FILE [--port PORT] [--tls CERT KEY]\n"
    "       pelorino-backend --data FILE --account [--host-output FILE]\n"
    "\n"
    "  --data FILE         SQLite file of everything received\n"
    "  --port PORT         on 127.0.0.1; 0, the default, takes a free one\n"
    "  --tls CERT KEY      serve HTTPS with these PEM files\n"
    "  --account           print what FILE holds as a table, and end; a server may be using FILE\n"
    "  --host-output FILE  what pelorino-host has written at log level info: the exit status is 1\n"
    "                      when not exactly the events that it stored have arrived, or when a\n"
    "                      request was wrong\n";

struct Options {
  std::string data;
  int port = 0;
  std::optional<TlsFiles> tls;
  bool account = false;
  std::string hostOutput;
};

int portOf(const std::string& text) {
  int port = -1;
  const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), port);
  if (error != std::errc() || end != text.data() + text.size() || port < 0 || port > 65535) {
    throw std::invalid_argument("no port: " + text);
  }
  return port;
}

Options parse(std::span<char*> arguments) {
  Options options;
  std::size_t next = 1;
  const auto take = [&]() -> std::string {
    if (next >= arguments.size()) throw std::invalid_argument("a value is missing");
    return arguments[next++];
  };
  while (next < arguments.size()) {
    const std::string option = take();
    if (option == "--data") {
      options.data = take();
    } else if (option == "--port") {
      options.port = portOf(take());
    } else if (option == "--tls") {
      std::string certificate = take();
      options.tls = TlsFiles{std::move(certificate), take()};
    } else if (option == "--account") {
      options.account = true;
    } else if (option == "--host-output") {
      options.hostOutput = take();
    } else {
      throw std::invalid_argument("unknown option: " + option);
    }
  }
  if (options.data.empty()) throw std::invalid_argument("--data is missing");
  return options;
}

int serve(const Options& options) {
  // Blocked before any thread starts, so that every thread inherits it and sigwait gets the signal.
  sigset_t signals;
  sigemptyset(&signals);
  sigaddset(&signals, SIGTERM);
  sigaddset(&signals, SIGINT);
  pthread_sigmask(SIG_BLOCK, &signals, nullptr);

  ExchangeStore store(options.data);
  BackendServer server(store, options.tls);
  const int port = server.bind(options.port);
  std::thread serving([&] { server.run(); });
  std::cout << "listening on " << (options.tls ? "https" : "http") << "://127.0.0.1:" << port
            << std::endl;

  int signal = 0;
  sigwait(&signals, &signal);
  server.stop();
  serving.join();
  return 0;
}

int run(const Options& options) {
  if (!options.account) return serve(options);
  ExchangeStore store(options.data);
  std::optional<EventMarks> stored;
  if (!options.hostOutput.empty()) stored = readStoredEvents(options.hostOutput);
  return printAccount(std::cout, summarize(store), stored) ? 0 : 1;
}

}  // namespace

int main(int argc, char** argv) {
  Options options;
  try {
    options = parse({argv, static_cast<std::size_t>(argc)});
  } catch (const std::exception& error) {
    std::cerr << "pelorino-backend: " << error.what() << "\n" << usage;
    return 2;
  }
  try {
    return run(options);
  } catch (const std::exception& error) {
    std::cerr << "pelorino-backend: " << error.what() << "\n";
    return 3;
  }
}
