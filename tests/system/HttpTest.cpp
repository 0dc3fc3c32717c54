#include <gtest/gtest.h>

#include <array>
#include <atomic>
#include <cstdio>

#include "CurlExchange.h"
#include "HttpUrl.h"
#include "LoopbackServer.h"
#include "RealQueue.h"
#include "SystemTestSupport.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

std::string answer(const std::string& status, const std::string& body,
                   const std::string& headers = "") {
  return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n" +
         headers + "\r\n" + body;
}

HttpRequest get(const std::string& url) {
  HttpRequest request;
  request.method = "GET";
  request.url = url;
  return request;
}

HttpRequest post(const std::string& url, const std::string& body) {
  HttpRequest request;
  request.method = "POST";
  request.url = url;
  request.headers = {{"Content-Length", std::to_string(body.size())},
                     {"Content-Type", "application/json"}};
  request.body = body;
  return request;
}

TEST(HttpUrl, OnlyWhatARequestCanBeMadeOfIsValid) {
  const struct {
    std::string url;
    bool isValid;
  } cases[] = {
      {"https://a.example/v2/analytics/report?appId=1", true},
      {"http://127.0.0.1:8080", true},
      {"HTTPS://[::1]:1/", true},
      {"https://a.example/%20", true},
      {"", false},
      {"a.example/path", false},
      {"//a.example/", false},
      {"https://", false},
      {"https:///path", false},
      {"https:/a.example/?://", false},
      {"https:a.example", false},
      {"https://:80/", false},
      {"http://a.example:99999/", false},
      {"ftp://a.example/", false},
      {"file:///etc/passwd", false},
      {"javascript:alert(1)", false},
      {"https://a.example/?q=a b", false},
      {" https://a.example/", false},
      {"https://a.example/\n", false},
      {"https://a.example/\x7f", false},
      {"https://a.example/\xC3\xA9", false},
      {std::string("https://a.example/\0", 19), false},
  };
  for (const auto& c : cases) EXPECT_EQ(isValidHttpUrl(c.url), c.isValid) << c.url;
}

TEST(CurlExchange, PutsTheRequestOnTheWireAsItIs) {
  LoopbackServer server(std::vector<std::string>(4, answer("200 OK", "")));
  const std::string host = "Host: 127.0.0.1:" + server.port() + "\r\nAccept: */*\r\n";
  CurlExchange http;

  HttpRequest request = post(server.url("/a/../b?q=%zz"), std::string("{\"n\":1}\0\xFF", 9));
  request.headers.push_back({"X-Empty", ""});
  request.headers.push_back({"X-Split", "a\r\nX-Forged: b"});
  EXPECT_EQ(http.perform(request).status, 200);
  EXPECT_EQ(http.perform(get(server.url("/"))).status, 200);
  request = get(server.url("/get"));
  request.body = "{}";
  EXPECT_EQ(http.perform(request).status, 200);
  request = post(server.url("/long"), std::string(100000, 'x'));
  EXPECT_EQ(http.perform(request).status, 200);

  const auto seen = server.requests();
  ASSERT_EQ(seen.size(), 4U);
  EXPECT_EQ(seen[0], "POST /a/../b?q=%zz HTTP/1.1\r\n" + host +
                         "Content-Length: 9\r\nContent-Type: application/json\r\n"
                         "X-Empty:\r\nX-Split: a  X-Forged: b\r\n\r\n" +
                         std::string("{\"n\":1}\0\xFF", 9));
  EXPECT_EQ(seen[1], "GET / HTTP/1.1\r\n" + host + "\r\n");
  EXPECT_EQ(seen[2], "GET /get HTTP/1.1\r\n" + host + "Content-Length: 2\r\n\r\n{}");
  EXPECT_EQ(seen[3], "POST /long HTTP/1.1\r\n" + host +
                         "Content-Length: 100000\r\nContent-Type: application/json\r\n\r\n" +
                         request.body);
}

TEST(CurlExchange, SaysWhatBecameOfTheExchange) {
  const std::string full(HttpExchange::maximumBody, 'x');
  const struct {
    const char* label;
    std::string answer;
    std::optional<int> status;
    std::optional<std::string> body;
    bool isError;
  } cases[] = {
      {"an answer", answer("200 OK", "{}"), 200, "{}", false},
      {"no body", answer("200 OK", ""), 200, std::nullopt, false},
      {"no content", "HTTP/1.1 204 No Content\r\n\r\n", 204, std::nullopt, false},
      {"a refusal with a body", answer("500 Broken", "why"), 500, "why", false},
      {"a redirect is an answer", answer("302 Found", "", "Location: /else\r\n"), 302, std::nullopt,
       false},
      {"an interim answer before it",
       "HTTP/1.1 103 Early\r\nLink: x\r\n\r\n" + answer("200 OK", "{}"), 200, "{}", false},
      {"chunks", "HTTP/1.1 200 OK\r\nTransfer-Encoding: chunked\r\n\r\n2\r\nab\r\n0\r\n\r\n", 200,
       "ab", false},
      {"a body of the limit", answer("200 OK", full), 200, full, false},
      {"a body over it", answer("200 OK", full + 'x'), 200, std::nullopt, true},
      {"a body over it, without a length",
       "HTTP/1.1 404 No\r\nConnection: close\r\n\r\n" + full + 'x', 404, std::nullopt, true},
      {"closed without an answer", "", std::nullopt, std::nullopt, true},
      {"closed in the headers", "HTTP/1.1 200 OK\r\nConnection: close\r\nConte", std::nullopt,
       std::nullopt, true},
      {"closed in the body",
       "HTTP/1.1 200 OK\r\nConnection: close\r\nContent-Length: 10\r\n\r\n12345", std::nullopt,
       std::nullopt, true},
      {"no HTTP", "SSH-2.0-x\r\nConnection: close\r\n\r\n", std::nullopt, std::nullopt, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    LoopbackServer server({c.answer});
    const HttpResponse response = CurlExchange().perform(get(server.url("/")));
    EXPECT_EQ(response.status, c.status);
    EXPECT_TRUE(response.body == c.body);
    EXPECT_EQ(response.error.has_value(), c.isError) << response.error.value_or("");
  }
}

TEST(CurlExchange, RefusesOtherProtocolsAndUnreachableHosts) {
  std::string closedPort;
  { closedPort = SilentServer().url("/"); }
  for (const std::string url : {"file:///etc/passwd", "no url", closedPort.c_str()}) {
    const HttpResponse response = CurlExchange().perform(get(url));
    EXPECT_EQ(response.status, std::nullopt) << url;
    EXPECT_NE(response.error.value_or(""), "") << url;
  }
}

TEST(CurlExchange, EndsWhenNothingMovesForTheTimeOut) {
  const SilentServer silent;
  const auto meetSilence = [&](const std::string& scheme) {
    HttpRequest request = post(scheme + "://127.0.0.1:" + silent.port(), "{}");
    request.timeout = 1000ms;
    const auto start = std::chrono::steady_clock::now();
    const HttpResponse response = CurlExchange().perform(request);
    const auto took = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(response.status, std::nullopt);
    EXPECT_NE(response.error.value_or(""), "");
    EXPECT_GE(took, 900ms);
    EXPECT_LT(took, 8s);
  };
  const std::jthread connecting(meetSilence, "https");
  const std::jthread waiting(meetSilence, "http");
}

TEST(CurlExchange, EachQueueKeepsItsConnection) {
  LoopbackServer server(std::vector<std::string>(5, answer("200 OK", "{}")));
  CurlExchange http;
  const auto outlet = std::make_shared<ExceptionOutlet>();
  RealQueue queue("network", outlet, 1ms);
  std::atomic<int> answered{0};
  for (int i = 0; i < 4; ++i) {
    queue.add([&] { answered += http.perform(get(server.url("/"))).status == 200 ? 1 : 0; });
    queue.waitUntilAllBlocksAreFinished();
    std::this_thread::sleep_for(10ms);  // The queue goes on on another thread.
  }
  EXPECT_EQ(answered, 4);
  EXPECT_EQ(server.connections(), 1);
}

TEST(CurlExchange, AnExchangeOnAConnectionThatDiedIsMadeOnANewOne) {
  // The peer says that it keeps the connection, and then ends it at the next request.
  LoopbackServer server({answer("200 OK", "1"), "", answer("200 OK", "3")});
  CurlExchange http;
  RealQueue queue("network", std::make_shared<ExceptionOutlet>());
  HttpResponse last;
  for (int i = 0; i < 2; ++i) queue.add([&] { last = http.perform(get(server.url("/"))); });
  queue.waitUntilAllBlocksAreFinished();
  EXPECT_EQ(last.body, "3");
  EXPECT_EQ(server.connections(), 2);
}

/// `openssl s_server` with a certificate of its own for the name "localhost".
class TlsServer {
 public:
  TlsServer() {
    const std::string make =
        "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes " + files() +
        " -subj /CN=localhost -days 2 " + "-addext subjectAltName=DNS:localhost 2>/dev/null";
    if (std::system(make.c_str()) != 0) return;
    const std::string serve =
        "cd / && exec openssl s_server -accept 127.0.0.1:0 -www -naccept 3 -cert '" +
        certificate() + "' -key '" + folder_.file("key") + "' 2>/dev/null </dev/null";
    output_ = ::popen(serve.c_str(), "r");
    std::array<char, 256> line;
    while (output_ != nullptr && std::fgets(line.data(), line.size(), output_) != nullptr) {
      const std::string text = line.data();
      if (!text.starts_with("ACCEPT")) continue;
      port = text.substr(text.rfind(':') + 1);
      port.erase(port.find_last_not_of(" \n") + 1);
      return;
    }
  }
  ~TlsServer() {
    if (output_ != nullptr) ::pclose(output_);
  }
  TlsServer(const TlsServer&) = delete;
  TlsServer& operator=(const TlsServer&) = delete;

  [[nodiscard]] std::string certificate() const { return folder_.file("certificate"); }

  std::string port;

 private:
  [[nodiscard]] std::string files() const {
    return "-keyout '" + folder_.file("key") + "' -out '" + certificate() + "'";
  }

  ScratchFolder folder_;
  std::FILE* output_ = nullptr;
};

TEST(CurlExchange, TrustsNoPeerWithoutAValidCertificateForItsName) {
  TlsServer server;
  ASSERT_NE(server.port, "");
  ::unsetenv("SSL_CERT_FILE");
  const auto status = [&](const char* host) {
    return CurlExchange().perform(get("https://" + std::string(host) + ":" + server.port)).status;
  };
  EXPECT_EQ(status("localhost"), std::nullopt);
  ::setenv("SSL_CERT_FILE", server.certificate().c_str(), 1);
  EXPECT_EQ(status("127.0.0.1"), std::nullopt);
  EXPECT_EQ(status("localhost"), 200);
  ::unsetenv("SSL_CERT_FILE");
}

}  // namespace
}  // namespace pelorino
