#include <cstdlib>
#include <mutex>

#include "BlackBoxTest.h"
#include "LoopbackServer.h"

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

/// A proxy that leads whatever name it is asked for to one port of this machine, and keeps all that
/// passes. Its clients end before it.
class ConnectProxy : public SilentServer {
 public:
  explicit ConnectProxy(int target)
      : target_(static_cast<std::uint16_t>(target)), thread_([this] { serve(); }) {}
  ~ConnectProxy() { ::shutdown(socket_, SHUT_RDWR); }

  [[nodiscard]] std::string passed() {
    const std::lock_guard lock(mutex_);
    return passed_;
  }

 private:
  void serve() {
    std::vector<std::jthread> relays;
    for (int client; (client = ::accept4(socket_, nullptr, nullptr, SOCK_CLOEXEC)) >= 0;) {
      relays.emplace_back([this, client] { relay(client); });
    }
  }

  void relay(int client) {
    const int backend = ::socket(AF_INET, SOCK_STREAM | SOCK_CLOEXEC, 0);
    const sockaddr_in address{AF_INET, htons(target_), {htonl(INADDR_LOOPBACK)}, {}};
    ::connect(backend, reinterpret_cast<const sockaddr*>(&address), sizeof address);
    receive(client);  // The head, in one piece.
    ::send(client, "HTTP/1.1 200 OK\r\n\r\n", 19, MSG_NOSIGNAL);
    std::jthread answers([&] { pump(backend, client); });
    pump(client, backend);
    answers.join();
    ::close(backend);
    ::close(client);
  }

  void pump(int from, int to) {
    for (std::string text; !(text = receive(from)).empty();) {
      ::send(to, text.data(), text.size(), MSG_NOSIGNAL);
    }
    ::shutdown(to, SHUT_WR);
  }
  std::string receive(int from) {
    char bytes[65536];
    const ssize_t count = ::recv(from, bytes, sizeof bytes, 0);
    const std::string text(bytes, static_cast<std::size_t>(std::max<ssize_t>(count, 0)));
    const std::lock_guard lock(mutex_);
    passed_ += text;
    return text;
  }

  const std::uint16_t target_;
  std::mutex mutex_;
  std::string passed_;
  const std::jthread thread_;
};

/// A certificate authority of its own, and the certificates of backends.
class Tls : public BlackBoxTest {
 protected:
  void SetUp() override {
    openssl("req -x509 " + newKey + " -days 2 -subj /CN=authority -keyout authority.key -out " +
            "authority.pem");
    issue("good", "IP:127.0.0.1", 2);
    issue("elsewhere", "DNS:backend.example", 2);
    issue("expired", "IP:127.0.0.1", -1);
  }

  [[nodiscard]] std::unique_ptr<BackendProcess> serverWith(const std::string& certificate) {
    return std::make_unique<BackendProcess>(
        folder_.file("tls.db"),
        std::vector<std::string>{"--tls", folder_.file(certificate + ".pem"),
                                 folder_.file(certificate + ".key")});
  }

  [[nodiscard]] json::object trusting(const std::string& file) const {
    return {{"certificateAuthorityFile", folder_.file(file)}};
  }

 private:
  const std::string newKey = "-newkey ec -pkeyopt ec_paramgen_curve:prime256v1 -nodes";

  void openssl(const std::string& arguments) {
    const std::string command =
        "cd '" + folder_.path() + "' && openssl " + arguments + " 2>openssl.log";
    ASSERT_EQ(std::system(command.c_str()), 0) << command;
  }

  void issue(const std::string& name, const std::string& subject, int days) {
    openssl("req " + newKey + " -subj /CN=backend -addext subjectAltName=" + subject + " -keyout " +
            name + ".key -out " + name + ".csr");
    openssl("x509 -req -in " + name + ".csr -CA authority.pem -CAkey authority.key " +
            "-CAcreateserial -copy_extensions copyall -days " + std::to_string(days) + " -out " +
            name + ".pem");
  }
};

TEST_F(Tls, SendsNothingToABackendThatIsNotProvenAndLosesNothing) {
  json::object behindDeadProxy = trusting("authority.pem");
  behindDeadProxy["proxy"] = "http://127.0.0.1:1";
  const struct {
    const char* certificate;  ///< Empty: no TLS at all on its port.
    json::object description;
    const char* words;
  } cases[] = {
      {"elsewhere", trusting("authority.pem"), "SSL: no alternative certificate subject name"},
      {"expired", trusting("authority.pem"), "certificate has expired"},
      {"authority", trusting("good.pem"), "self-signed certificate"},
      {"good", {}, "unable to get local issuer certificate"},
      {"good", trusting("elsewhere.pem"), "unable to get local issuer certificate"},
      {"good", trusting("no such file"), "error setting certificate file"},
      {"good", behindDeadProxy, "port 1 "},
      {"", trusting("authority.pem"), "wrong version number"},
  };
  std::vector<std::string> names;
  for (const auto& c : cases) {
    SCOPED_TRACE(std::string(c.certificate) + " " + c.words);
    const std::string name = "event " + std::to_string(names.size());
    const auto server = *c.certificate != '\0' ? serverWith(c.certificate) : nullptr;
    BackendProcess& reached = server ? *server : backend_;
    HostProcess host(file_, "https://127.0.0.1:" + std::to_string(reached.port()), c.description);
    host.initialize();
    host.customEvent(name);
    host.sendBufferedEvents();
    ASSERT_TRUE(host.logs("submission failed"));
    EXPECT_FALSE(host.linesWith(c.words).empty());
    EXPECT_EQ(host.end(), 0);
    EXPECT_TRUE(reached.received("").empty());
    names.push_back(name);
  }

  const auto server = serverWith("good");
  HostProcess host(file_, server->url(), trusting("authority.pem"));
  host.initialize();
  EXPECT_TRUE(host.deliver());
  EXPECT_EQ(server->names(), names);
  EXPECT_EQ(server->findings(), std::vector<std::string>());
  EXPECT_EQ(host.end(), 0);
}

TEST_F(Tls, FollowsNoRedirectToPlainHttp) {
  const auto server = serverWith("good");
  server->fault("/analytics/report",
                {{"status", 307}, {"location", backend_.url() + "/v2/analytics/report"}});
  HostProcess host(file_, server->url(), trusting("authority.pem"));
  host.initialize();
  ASSERT_TRUE(host.logs("Failed to send Report, status code: 307"));
  EXPECT_NE(host.waiting(), "");
  EXPECT_TRUE(host.deliver());
  EXPECT_EQ(server->events("ss").size(), 1U) << "to the backend that is proven";
  EXPECT_EQ(host.end(), 0);
  EXPECT_TRUE(backend_.received("").empty());
}

TEST_F(Tls, PassesThroughAProxyThatLearnsTheNameOfTheBackendAlone) {
  const auto server = serverWith("elsewhere");
  const std::string name = "backend.example:" + std::to_string(server->port());
  ConnectProxy proxy(server->port());
  json::object description = trusting("authority.pem");
  description["proxy"] = "http://user:pw@127.0.0.1:" + proxy.port();
  HostProcess host(file_, "https://" + name, description);
  host.initialize();
  host.customEvent("secret");
  EXPECT_TRUE(host.deliver());
  EXPECT_EQ(server->names(), std::vector<std::string>{"secret"});
  EXPECT_EQ(server->findings(), std::vector<std::string>());
  EXPECT_EQ(host.end(), 0);
  const std::string passed = proxy.passed();
  EXPECT_TRUE(passed.starts_with("CONNECT " + name + " HTTP/1.1\r\n")) << passed.substr(0, 80);
  EXPECT_NE(passed.find("Authorization: Basic dXNlcjpwdw=="), std::string::npos);
  for (const char* word : {"/v2/", "DeviceId", "secret"}) {
    EXPECT_EQ(passed.find(word), std::string::npos) << word;
  }
}

TEST_F(Tls, SpeaksNoOlderVersion) {
  Process server({"/usr/bin/openssl", "s_server", "-tls1_1", "-cipher", "ALL:@SECLEVEL=0",
                  "-accept", "0", "-cert", folder_.file("good.pem"), "-key",
                  folder_.file("good.key")});
  const auto accepting =
      server.waitForLines([](const std::string& line) { return line.starts_with("ACCEPT "); });
  ASSERT_EQ(accepting.size(), 1U);
  const std::string port = accepting[0].substr(accepting[0].rfind(':') + 1);
  HostProcess host(file_, "https://127.0.0.1:" + port, trusting("authority.pem"));
  host.initialize();
  ASSERT_TRUE(host.logs("submission failed"));
  EXPECT_FALSE(host.linesWith("protocol version").empty());
  EXPECT_EQ(host.end(), 0);
}

}  // namespace
}  // namespace pelorino::blackbox
