#include <cstdlib>

#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

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
