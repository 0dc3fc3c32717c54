#include <gtest/gtest.h>

#include <array>
#include <cstdio>

#include "CurlExchange.h"
#include "HttpUrl.h"
#include "LoopbackServer.h"
#include "RealQueue.h"
#include "SystemTestSupport.h"
#include "TemporaryFolder.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

std::string answer(const std::string& status, const std::string& body,
                   const std::string& headers = "") {
  return "HTTP/1.1 " + status + "\r\nContent-Length: " + std::to_string(body.size()) + "\r\n" +
         headers + "\r\n" + body;
}

HttpRequest get(const std::string& url) {
  return {"GET", url, {}, nullptr};
}

std::shared_ptr<const std::string> body(std::string text) {
  return std::make_shared<const std::string>(std::move(text));
}

TEST(HttpUrl, OnlyWhatARequestCanBeMadeOfIsValid) {
  for (const char* valid : {"https://a.example/v2/analytics/report?appId=1",
                            "http://127.0.0.1:8080", "HTTPS://[::1]:1/", "https://a.example/%20"}) {
    EXPECT_TRUE(isValidHttpUrl(valid)) << valid;
  }
  for (const std::string invalid :
       {"", "a.example/path", "//a.example/", "https:///path", "https:/a.example/?://",
        "https://:80/", "http://a.example:99999/", "file:///etc/passwd", "https://a.example/?q=a b",
        " https://a.example/", "https://a.example/\n", "https://a.example/\xC3\xA9"}) {
    EXPECT_FALSE(isValidHttpUrl(invalid)) << invalid;
  }
  EXPECT_FALSE(isValidHttpUrl(std::string("https://a.example/\0", 19)));
}

TEST(CurlExchange, PutsTheRequestOnTheWireAsItIs) {
  LoopbackServer server(std::vector<std::string>(3, answer("200 OK", "")));
  const std::string host = "Host: 127.0.0.1:" + server.port() + "\r\nAccept: */*\r\n";
  CurlExchange http;
  const std::string bytes("{\"n\":1}\0\xFF", 9);
  const std::string large(100000, 'x');
  const std::string strange = server.url("/a/../b?q=%zz");
  const HttpRequest requests[] = {
      {"POST", strange, {{"X-Empty", ""}, {"X-Split", "a\r\nX-Forged: b"}}, body(bytes)},
      {"GET", server.url("/get"), {}, body("{}")},
      {"POST",
       server.url("/"),
       {{"Content-Length", "100000"}, {"Content-Type", "x/y"}},
       body(large)},
  };
  for (const HttpRequest& request : requests) EXPECT_EQ(http.perform(request).status, 200);
  const std::vector<std::string> want = {
      "POST /a/../b?q=%zz HTTP/1.1\r\n" + host +
          "X-Empty:\r\nX-Split: a  X-Forged: b\r\nContent-Length: 9\r\n\r\n" + bytes,
      "GET /get HTTP/1.1\r\n" + host + "Content-Length: 2\r\n\r\n{}",
      "POST / HTTP/1.1\r\n" + host + "Content-Length: 100000\r\nContent-Type: x/y\r\n\r\n" + large,
  };
  EXPECT_EQ(server.requests(), want);
}

TEST(CurlExchange, SaysWhatBecameOfTheExchange) {
  const std::string full(HttpExchange::maximumBody, 'x');
  const std::string closing = "HTTP/1.1 200 OK\r\nConnection: close\r\n";
  const struct {
    const char* label;
    std::string answer;
    std::optional<int> status;
    std::optional<std::string> body;
    bool isError;
  } cases[] = {
      {"no body", answer("200 OK", ""), 200, {}, false},
      {"no content", "HTTP/1.1 204 No Content\r\n\r\n", 204, {}, false},
      {"a refusal with a body", answer("500 Broken", "why"), 500, "why", false},
      {"a redirect is an answer", answer("302 Found", "", "Location: /else\r\n"), 302, {}, false},
      {"an interim answer before it", "HTTP/1.1 103 Early\r\n\r\n" + answer("200 OK", "{}"), 200,
       "{}", false},
      {"a body of the limit", answer("200 OK", full), 200, full, false},
      {"a body over it", answer("200 OK", full + 'x'), 200, {}, true},
      {"over it without a length", closing + "\r\n" + full + 'x', 200, {}, true},
      {"closed without an answer", "", {}, {}, true},
      {"closed in the headers", closing + "Conte", {}, {}, true},
      {"closed in the body", closing + "Content-Length: 10\r\n\r\n12345", {}, {}, true},
      {"no HTTP", "SSH-2.0-x\r\nConnection: close\r\n\r\n", {}, {}, true},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    LoopbackServer server({c.answer});
    const HttpResponse response = CurlExchange().perform(get(server.url("/")));
    EXPECT_EQ(response.status, c.status);
    EXPECT_TRUE(response.body == c.body);
    EXPECT_EQ(response.error.has_value(), c.isError) << response.error.value_or("");
  }
  EXPECT_TRUE(CurlExchange().perform(get("file:///etc/passwd")).error) << "no other protocol";
}

TEST(CurlExchange, TakesTheProxyOfTheRequestOrElseOfTheEnvironment) {
  const auto headOf = [](const std::string& url, const std::optional<std::string>& proxy,
                         LoopbackServer& server) {
    HttpRequest request = get(url);
    request.proxy = proxy;
    static_cast<void>(CurlExchange().perform(request));
    const auto requests = server.requests();
    return requests.empty() ? "" : requests[0].substr(0, requests[0].find('\r'));
  };
  const std::string elsewhere = "//backend.invalid:1/p";
  const auto plain = std::vector<std::string>{answer("200 OK", "")};
  LoopbackServer proxy(plain);
  EXPECT_EQ(headOf("http:" + elsewhere, proxy.url(""), proxy),
            "GET http:" + elsewhere + " HTTP/1.1");
  LoopbackServer tunnel({answer("403 No", "")});
  EXPECT_EQ(headOf("https:" + elsewhere, tunnel.url(""), tunnel),
            "CONNECT backend.invalid:1 HTTP/1.1");

  LoopbackServer named(plain);
  LoopbackServer direct(plain);
  ::setenv("http_proxy", named.url("").c_str(), 1);
  EXPECT_EQ(headOf(direct.url("/p"), "", direct), "GET /p HTTP/1.1");
  EXPECT_EQ(headOf("http:" + elsewhere, std::nullopt, named),
            "GET http:" + elsewhere + " HTTP/1.1");
  ::unsetenv("http_proxy");
}

TEST(CurlExchange, EndsWhenNothingMovesForTheTimeOut) {
  const SilentServer silent;
  const auto meetSilence = [&](const std::string& scheme) {
    const auto start = std::chrono::steady_clock::now();
    const HttpResponse response = CurlExchange().perform(
        {"POST", scheme + "://127.0.0.1:" + silent.port(), {}, body("{}"), 1000ms});
    const auto took = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(response.status, std::nullopt);
    EXPECT_NE(response.error.value_or(""), "");
    EXPECT_GE(took, 900ms);
    EXPECT_LT(took, 8s);
  };
  const std::jthread connecting(meetSilence, "https");
  const std::jthread waiting(meetSilence, "http");
}

TEST(CurlExchange, AQueueKeepsItsConnectionAndReplacesOneThatDied) {
  // The peer says that it keeps the connection, and then ends it at the third request.
  LoopbackServer server({answer("200 OK", "1"), answer("200 OK", "2"), "", answer("200 OK", "4")});
  CurlExchange http;
  RealQueue queue("network", std::make_shared<ExceptionOutlet>(), 1ms);
  std::string bodies;
  for (int i = 1; i <= 3; ++i) {
    queue.add([&] { bodies += http.perform(get(server.url("/"))).body.value_or("none"); });
    queue.waitUntilAllBlocksAreFinished();
    EXPECT_EQ(server.connections(), i < 3 ? 1 : 2);
    std::this_thread::sleep_for(10ms);  // The queue goes on on another thread.
  }
  EXPECT_EQ(bodies, "124");
}

/// `openssl s_server` with a certificate of its own for the name "localhost".
class TlsServer {
 public:
  TlsServer() {
    const std::string make =
        "openssl req -x509 -newkey ec -pkeyopt ec_paramgen_curve:P-256 -nodes -days 2 "
        "-subj /CN=localhost -addext subjectAltName=DNS:localhost 2>/dev/null -keyout " +
        key_ + " -out " + certificate;
    if (std::system(make.c_str()) != 0) return;
    const std::string serve = "exec openssl s_server -accept 127.0.0.1:0 -www -naccept 3 -cert " +
                              certificate + " -key " + key_ + " 2>/dev/null </dev/null";
    output_ = ::popen(serve.c_str(), "r");
    std::array<char, 256> line;
    while (port == 0 && std::fgets(line.data(), line.size(), output_) != nullptr) {
      const std::string text = line.data();
      if (text.starts_with("ACCEPT")) port = std::stoi(text.substr(text.rfind(':') + 1));
    }
  }
  ~TlsServer() {
    if (output_ != nullptr) ::pclose(output_);
  }
  TlsServer(const TlsServer&) = delete;
  TlsServer& operator=(const TlsServer&) = delete;

 private:
  TemporaryFolder folder_;
  const std::string key_ = folder_.file("key");
  std::FILE* output_ = nullptr;

 public:
  const std::string certificate = folder_.file("certificate");
  int port = 0;
};

TEST(CurlExchange, TrustsNoPeerWithoutAValidCertificateForItsName) {
  const TlsServer server;
  ASSERT_NE(server.port, 0);
  const auto status = [port = ":" + std::to_string(server.port)](const std::string& host) {
    return CurlExchange().perform(get("https://" + host + port)).status;
  };
  ::unsetenv("SSL_CERT_FILE");
  EXPECT_EQ(status("localhost"), std::nullopt);
  ::setenv("SSL_CERT_FILE", server.certificate.c_str(), 1);
  EXPECT_EQ(status("127.0.0.1"), std::nullopt);
  EXPECT_EQ(status("localhost"), 200);
  ::unsetenv("SSL_CERT_FILE");
}

}  // namespace
}  // namespace pelorino
