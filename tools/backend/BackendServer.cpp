#include "BackendServer.h"

#include <fmt/format.h>
#include <httplib.h>

#include <algorithm>
#include <stdexcept>
#include <thread>

#include "Connections.h"
#include "ControlApi.h"
#include "WallClock.h"
#include "WireCatalogue.h"

namespace pelorino::backend {

using namespace std::chrono_literals;

namespace {

/// A connection that is kept alive keeps its thread, and a client has one for each of its queues.
constexpr std::size_t maximumConnections = 128;

constexpr const char* jsonType = "application/json";

constexpr const char* anyOtherPattern = R"((?!/control/).*)";

/// Any text may come before "/v2": clients can be told to append one to their base URL.
std::string endpointPattern() {
  return "(.*)/v2(" + endpointPaths() + ")";
}

std::unique_ptr<httplib::Server> makeServer(const std::optional<TlsFiles>& tls) {
  if (!tls) return std::make_unique<httplib::Server>();
  return std::make_unique<httplib::SSLServer>(tls->certificate.c_str(), tls->key.c_str());
}

Exchange exchangeOf(const httplib::Request& request) {
  Exchange exchange;
  exchange.time = millisecondsNow();
  exchange.path = request.path;
  exchange.endpoint = request.matches.size() == 3 ? request.matches[2].str() : request.path;
  exchange.appId = request.get_param_value("appId");
  for (const auto& [name, value] : request.headers) {
    // The server adds these itself to tell who has connected.
    if (name.starts_with("REMOTE_") || name.starts_with("LOCAL_")) continue;
    exchange.headers[name] = value;
  }
  exchange.verdict = checkAndDecodeHeaders(exchange.headers);
  if (exchange.appId.empty()) exchange.verdict.emplace_back("the query key appId is missing");
  return exchange;
}

void readAndCheckBody(Exchange& exchange, const httplib::ContentReader& readContent) {
  const bool whole = readContent([&](const char* bytes, std::size_t count) {
    exchange.body.append(bytes, count);
    return true;
  });
  if (!whole) exchange.verdict.emplace_back("the body broke off");
  const Verdict findings = checkBody(exchange.endpoint, exchange.body);
  exchange.verdict.insert(exchange.verdict.end(), findings.begin(), findings.end());
}

/// Sends `body` repeatedly: the header says `announced` bytes, and `sent` are sent.
void streamBody(httplib::Response& response, std::string body, std::uint64_t announced,
                std::uint64_t sent) {
  response.set_content_provider(
      announced, jsonType,
      [body = std::move(body), sent](std::size_t offset, std::size_t, httplib::DataSink& sink) {
        if (offset >= sent) return false;
        const std::size_t from = offset % body.size();
        const std::size_t count = std::min<std::uint64_t>(body.size() - from, sent - offset);
        return sink.write(body.data() + from, count);
      });
}

void writeAnswer(httplib::Response& response, const Answer& answer, const Fault& fault) {
  response.status = fault.status.value_or(answer.status);
  if (!fault.location.empty()) response.set_header("Location", fault.location);
  if (fault.hugeBody > 0) {
    streamBody(response, std::string(std::size_t{64} * 1024, 'x'), fault.hugeBody, fault.hugeBody);
  } else if (fault.truncate) {
    const std::string body = answer.body.empty() ? "{}" : answer.body;
    streamBody(response, body, body.size(), body.size() / 2);
  } else if (fault.garbage) {
    response.set_content(std::string("\xFF\xFE\0{\"[garbage", 13), jsonType);
  } else if (!fault.status && !answer.body.empty()) {
    response.set_content(answer.body, jsonType);
  }
}

}  // namespace

BackendServer::BackendServer(ExchangeStore& store, const std::optional<TlsFiles>& tls)
    : store_(store), server_(makeServer(tls)) {
  if (!server_->is_valid()) throw std::runtime_error("cannot use this certificate and key");
  server_->set_tcp_nodelay(true);
  server_->new_task_queue = [] { return new httplib::ThreadPool(maximumConnections); };
  const auto receiver = [this](const httplib::Request& request, httplib::Response& response,
                               const httplib::ContentReader& readContent) {
    receive(request, response, readContent);
  };
  server_->Post(endpointPattern(), receiver);
  server_->Post(anyOtherPattern, receiver);
  serveControl(*server_, store_, script_);
}

BackendServer::~BackendServer() = default;

int BackendServer::bind(int port) {
  const bool bound = port == 0 ? (port_ = server_->bind_to_any_port("127.0.0.1")) > 0
                               : server_->bind_to_port("127.0.0.1", port_ = port);
  if (!bound) throw std::runtime_error(fmt::format("cannot listen on port {}", port));
  return port_;
}

void BackendServer::run() {
  server_->listen_after_bind();
}

void BackendServer::stop() {
  {
    const std::lock_guard lock(mutex_);
    stopping_ = true;
  }
  stopped_.notify_all();
  // The HTTP server ignores a stop() that comes before its loop has begun.
  while (!server_->is_running() && !ended_) std::this_thread::sleep_for(1ms);
  server_->stop();
  closeAcceptedConnections(port_);
}

bool BackendServer::wait(std::chrono::milliseconds delay) {
  std::unique_lock lock(mutex_);
  return !stopped_.wait_for(lock, delay, [this] { return stopping_; });
}

void BackendServer::receive(const httplib::Request& request, httplib::Response& response,
                            const httplib::ContentReader& readContent) {
  Exchange exchange = exchangeOf(request);
  const std::string deviceId = exchange.deviceId();
  const Fault fault = script_.takeFault(exchange.endpoint).value_or(Fault{});
  exchange.fault = fault.description();

  if (fault.drop != Fault::Drop::before) readAndCheckBody(exchange, readContent);
  if (!wait(fault.delay) || fault.drop != Fault::Drop::no) {
    store_.add(exchange);
    return closeAcceptedConnections(port_, request.remote_port);
  }
  const bool known = requestRecord(exchange.endpoint) != nullptr;
  writeAnswer(response, known ? script_.answer(exchange.endpoint, deviceId) : Answer{404, {}},
              fault);
  exchange.status = response.status;
  store_.add(exchange);
}

}  // namespace pelorino::backend
