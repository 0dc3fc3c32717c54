#include <gtest/gtest.h>

#include "CurlExchange.h"
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
      {"a refusal with a body", answer("500 Broken", "why"), 500, "why", false},
      {"a redirect is an answer", answer("302 Found", "", "Location: /else\r\n"), 302, {}, false},
      {"an interim answer before it", "HTTP/1.1 103 Early\r\n\r\n" + answer("200 OK", "{}"), 200,
       "{}", false},
      {"a body of the limit", answer("200 OK", full), 200, full, false},
      {"a body over it", answer("200 OK", full + 'x'), 200, {}, true},
      {"over it without a length", closing + "\r\n" + full + 'x', 200, {}, true},
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
  const std::vector<std::string> found = {answer("200 OK", "")};
  LoopbackServer proxy(found), direct(found), named(found), tunnel({answer("403 No", "")});
  ::setenv("http_proxy", named.url("").c_str(), 1);
  const std::string elsewhere = "//backend.invalid:1/p";
  const struct {
    std::string url;
    std::optional<std::string> proxy;
    LoopbackServer& reached;
    std::string want;
  } cases[] = {
      {"http:" + elsewhere, proxy.url(""), proxy, "GET http:" + elsewhere},
      {"https:" + elsewhere, tunnel.url(""), tunnel, "CONNECT backend.invalid:1"},
      {direct.url("/p"), "", direct, "GET /p"},
      {"http:" + elsewhere, {}, named, "GET http:" + elsewhere},
  };
  for (const auto& c : cases) {
    HttpRequest request = get(c.url);
    request.proxy = c.proxy;
    static_cast<void>(CurlExchange().perform(request));
    EXPECT_TRUE(c.reached.requests().at(0).starts_with(c.want + " HTTP/1.1\r\n")) << c.want;
  }
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

TEST(CurlExchange, TrustsTheCertificatesThatTheEnvironmentNames) {
  const SilentServer peer;
  ::setenv("SSL_CERT_FILE", "/no such file", 1);
  const auto response = CurlExchange().perform(get("https://127.0.0.1:" + peer.port()));
  ::unsetenv("SSL_CERT_FILE");
  EXPECT_NE(response.error.value_or("").find("/no such file"), std::string::npos);
}

}  // namespace
}  // namespace pelorino
