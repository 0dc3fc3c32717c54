#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "Backend.h"
#include "BackendConfigUrl.h"
#include "BackendRepository.h"
#include "ContentFactory.h"
#include "JsonHelpers.h"
#include "LogCapture.h"
#include "Network.h"
#include "RecordingExchange.h"

namespace pelorino {
namespace {

using Headers = std::vector<std::pair<std::string, std::string>>;
using Lines = std::vector<std::string>;

/// Fails every build, as a repository without content would.
class BrokenFactory final : public ContentFactoryProtocol {
 public:
  [[nodiscard]] std::shared_ptr<const RequestContentProtocol> makeContent(
      const BackendMessage&) const override {
    return nullptr;
  }
};

class BackendTest : public testing::Test {
 protected:
  BackendTest() {
    BackendConfigUrl::setTestProxyUrl("http://h");
    ids_.deviceId = "dev";
  }
  ~BackendTest() override {
    BackendConfigUrl::setTestProxyUrl("");
    BackendConfigUrl::setTestCustomUrl("");
  }

  [[nodiscard]] Backend makeBackend(
      std::shared_ptr<ContentFactoryProtocol> factory = std::make_shared<ContentFactory>()) {
    return Backend(std::make_shared<BackendRepository>(std::make_shared<Network>(http_), factory));
  }

  void answer(std::optional<int> status, std::optional<std::string> body) {
    http_.answer = {status, std::move(body), {}};
  }

  RecordingExchange http_;
  Identifiers ids_;
};

std::string outcomeText(const BackendIdentifiers::Outcome& outcome) {
  struct Visitor {
    std::string operator()(const BackendIdentifiers::Identifiers& ids) const {
      return "identifiers " + encodeJson(ids);
    }
    std::string operator()(const BackendIdentifiers::RetryAfter& retry) const {
      return "retryAfter " + std::to_string(retry.retryAfter);
    }
    std::string operator()(const BackendIdentifiers::Error& error) const { return error.text; }
    std::string operator()(const BackendIdentifiers::DoNotRetry&) const { return "doNotRetry"; }
  };
  return std::visit(Visitor{}, outcome);
}

bool startsWith(const std::string& text, const std::string& beginning) {
  return text.compare(0, beginning.size(), beginning) == 0;
}

TEST_F(BackendTest, ComposesTheBaseUrl) {
  struct Case {
    const char* proxy;
    const char* custom;
    const char* base;
  };
  const Case cases[] = {{"", "", "https://api.pelorino.example"},
                        {"", "/x", "https://api.pelorino.example/x"},
                        {"http://p:1", "", "http://p:1"},
                        {"http://p:1", "/x", "http://p:1/x"}};
  for (const Case& c : cases) {
    BackendConfigUrl::setTestProxyUrl(c.proxy);
    BackendConfigUrl::setTestCustomUrl(c.custom);
    EXPECT_EQ(BackendConfigUrl::baseApiUrl(), c.base);
  }
}

TEST_F(BackendTest, SendsEachRequestToItsEndpoint) {
  struct Case {
    std::string path;
    std::function<void(Backend&)> call;
    std::string body;
  };
  const Case cases[] = {
      {"/analytics/config",
       [&](Backend& backend) {
         Versions versions{.sdkVersion = "2.1.2", .sdkCodeVersion = 10, .sbsConfigVersion = 0};
         versions.appBuildVersion = "7";
         (void)backend.requestConfig("key", ids_, versions);
       },
       R"({"sdkVersion":"2.1.2","sdkCodeVersion":10,"appVersion":null,"sbsConfigVersion":0})"},
      {"/analytics/identification",
       [&](Backend& backend) { (void)backend.requestIdentification("key", 3, ids_); },
       R"({"attempt":3})"},
      {"/analytics/report",
       [&](Backend& backend) {
         (void)backend.sendAnalytics("key", ids_,
                                     {{std::make_shared<Report>(std::vector<Package>())}});
       },
       R"({"reports":[{"packages":[]}]})"},
      {"/verify/payment",
       [&](Backend& backend) {
         (void)backend.sendVerifyReceipt(
             "key", {.platform = "ios", .receipt = {.data = "ZGF0YQ==", .password = ""}}, ids_);
       },
       R"({"platform":"ios","receipt":{"receipt-data":"ZGF0YQ==","password":""}})"},
      {"/messaging/config",
       [&](Backend& backend) {
         (void)backend.requestMessagingConfig(
             "key", {.sdkVersion = "2.1.2", .sdkCodeVersion = 10, .appVersion = "1"}, ids_);
       },
       R"({"sdkVersion":"2.1.2","sdkCodeVersion":10,"appVersion":"1","categoriesVersion":0})"},
  };
  BackendConfigUrl::setTestCustomUrl("/c");
  for (const Case& c : cases) {
    SCOPED_TRACE(c.path);
    http_.requests.clear();
    Backend backend = makeBackend();
    c.call(backend);
    ASSERT_EQ(http_.requests.size(), 1U);
    EXPECT_EQ(http_.requests[0].method, "POST");
    EXPECT_EQ(http_.requests[0].url, "http://h/c/v2" + c.path + "?appId=key");
    EXPECT_EQ(http_.requests[0].body, c.body);
  }
}

TEST_F(BackendTest, NamesDeviceAndUserInHeaders) {
  ids_.userId = "u\r\nX: y";
  ids_.pelorinoId = 7;
  ids_.pelorinoIdTimestamp = -1;
  (void)makeBackend().requestIdentification("key", 1, ids_);
  EXPECT_EQ(http_.requests.at(0).headers, (Headers{{"Content-Length", "13"},
                                                   {"Content-Type", "application/json"},
                                                   {"DeviceId", "ZGV2"},
                                                   {"PelorinoId", "7"},
                                                   {"PelorinoIdTimestamp", "-1"},
                                                   {"UserId", "dQ0KWDogeQ=="},
                                                   {"X-Id-Encoding", "base64"}}));
  ids_ = {.deviceId = "dev", .previousDeviceId = "p", .userId = {}, .previousUserId = "q"};
  ids_.crossPlatformPelorinoId = 8;
  (void)makeBackend().requestIdentification("key", 1, ids_);
  EXPECT_EQ(http_.requests.at(1).headers, (Headers{{"Content-Length", "13"},
                                                   {"Content-Type", "application/json"},
                                                   {"CrossPlatformPelorinoId", "8"},
                                                   {"DeviceId", "ZGV2"},
                                                   {"PreviousDeviceId", "cA=="},
                                                   {"PreviousUserId", "cQ=="},
                                                   {"X-Id-Encoding", "base64"}}));
}

TEST_F(BackendTest, SendsNothingForAKeyThatIsNoPartOfAUrl) {
  EXPECT_TRUE(makeBackend().requestConfig("a b", ids_, {}).isDefault);
  EXPECT_EQ(http_.requests.size(), 0U);
}

TEST_F(BackendTest, FallsBackOnTheDefaultConfiguration) {
  const std::string whole = encodeJson(Config{.countForRequest = 77});
  struct Case {
    const char* label;
    std::optional<int> status;
    std::optional<std::string> body;
    bool isDefault;
    bool logs;
  };
  const Case cases[] = {{"whole answer", 200, whole, false, false},
                        {"no body", 200, std::nullopt, true, false},
                        {"empty body", 200, "", true, false},
                        {"another status", 201, whole, true, false},
                        {"no answer", std::nullopt, std::nullopt, true, false},
                        {"required key missing", 200, "{\"countForRequest\":77}", true, true},
                        {"no JSON", 200, "<html>", true, true}};
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    const LogCapture log(PLRLogLevel::info);
    answer(c.status, c.body);
    const ConfigAnswer got = makeBackend().requestConfig("key", ids_, {});
    EXPECT_EQ(got.isDefault, c.isDefault);
    EXPECT_EQ(got.config.countForRequest, c.isDefault ? 10 : 77);
    ASSERT_EQ(log.lines().size(), c.logs ? 1U : 0U);
    if (c.logs) {
      EXPECT_TRUE(startsWith(log.lines()[0],
                             "ERROR [Backend Module] Can't create a config request. Error: "));
    }
  }
}

TEST_F(BackendTest, TellsWhatBecameOfAnIdentification) {
  struct Case {
    std::optional<int> status;
    std::optional<std::string> body;
    std::string outcome;  ///< How it begins.
  };
  const Case cases[] = {
      {200, "{\"pelorinoId\":7,\"crossPlatformPelorinoId\":null}",
       "identifiers {\"pelorinoId\":7}"},
      {200, "{}", "identifiers {}"},
      {200, "{\"pelorinoId\":\"7\"}", "[Backend Module] parse identifiers. Error:  E"},
      {200, std::nullopt, "[Backend Module] parse identifiers. Error:  T"},
      {200, "", "[Backend Module] parse identifiers. Error:  T"},
      {202, "{\"retryAfter\":1500}", "retryAfter 1500"},
      {202, "{}", "[Backend Module] parse retry parametr. Error:  T"},
      {202, std::nullopt, "[Backend Module] parse retry parametr. Error:  T"},
      {422, "{\"pelorinoId\":7}", "doNotRetry"},
      {201, "{\"pelorinoId\":7}", "[Backend Module] identifiers, unknown status code 201"},
      {std::nullopt, std::nullopt, "[Backend Module] identifiers, unknown status code 400"},
  };
  const LogCapture log(PLRLogLevel::info);
  for (const Case& c : cases) {
    answer(c.status, c.body);
    const std::string got = outcomeText(makeBackend().requestIdentification("key", 1, ids_));
    EXPECT_TRUE(startsWith(got, c.outcome)) << got;
  }
  EXPECT_EQ(log.lines(), Lines{});
  const BackendIdentifiers::Identifiers ids{
      .pelorinoId = 1, .crossPlatformPelorinoId = 2, .pelorinoIdTimestamp = 3};
  EXPECT_EQ(ids.description(),
            "\tpelorinoId: 1\n\tcrossPlatformPelorinoId: 2\n\tpelorinoIdTimestamp: 3");
}

TEST_F(BackendTest, CountsOnlyStatus200AsDelivered) {
  const Reports reports{{std::make_shared<Report>(std::vector<Package>()),
                         std::make_shared<Report>(std::vector<Package>())}};
  for (const int status : {200, 201, 204, 302, 400, 500}) {
    answer(status, "anything");
    const auto failure = makeBackend().sendAnalytics("key", ids_, reports);
    ASSERT_EQ(failure.has_value(), status != 200);
    if (failure) {
      EXPECT_EQ(failure->description(),
                "[Backend Module] Failed to send Report, status code: " + std::to_string(status));
    }
  }
  const LogCapture log;
  (void)makeBackend().sendAnalytics("key", ids_, reports);
  EXPECT_NE(log.lines().at(0).find("\n Content UUID: " + reports.reports[0]->uuid + ", " +
                                   reports.reports[1]->uuid + " \n Content: {"),
            std::string::npos);
}

TEST_F(BackendTest, ReadsReceiptAnswers) {
  struct Case {
    std::optional<int> status;
    std::optional<std::string> body;
    std::string description;
    std::string log;  ///< How the one line begins.
  };
  const std::string internal = "receiptStatus: [Receipt internal error]";
  const std::string cannotCreate =
      "ERROR [Backend Module] Can't create a request for receipt verification. Error: ";
  const Case cases[] = {
      {200, "{\"status\":3,\"verificationResult\":\"v\"}",
       "receiptStatus: [Receipt sandbox] verificationResult: [v]",
       "INFO [Backend Module] Receipt verification result: \n\treceiptStatus: [Receipt sandbox] "
       "verificationResult: [v]"},
      {200, "{\"status\":0}", "receiptStatus: [Receipt valid]",
       "INFO [Backend Module] Receipt verification result: \n\treceiptStatus: [Receipt valid]"},
      {200, "{\"status\":7,\"verificationResult\":\"v\"}", internal + " verificationResult: [v]",
       "ERROR [Backend Module] Can't parse verification data"},
      {200, "{\"status\":4294967296}", internal,
       "ERROR [Backend Module] Can't parse verification data"},
      {200, "{}", internal, "ERROR [Backend Module] Can't parse verification data"},
      {200, "{\"status\":\"0\"}", internal, cannotCreate},
      {200, std::nullopt, internal, cannotCreate},
      {500, "{\"status\":0}", "receiptStatus: [Receipt server error]",
       "ERROR [Backend Module] Failed to send a receipt, status code: 500"},
      {std::nullopt, std::nullopt, "receiptStatus: [Receipt server error]",
       "ERROR [Backend Module] Failed to send a receipt, status code: 400"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.body.value_or("no body"));
    const LogCapture log(PLRLogLevel::info);
    answer(c.status, c.body);
    EXPECT_EQ(makeBackend().sendVerifyReceipt("key", {}, ids_).description(), c.description);
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_TRUE(startsWith(log.lines()[0], c.log)) << log.lines()[0];
  }
}

TEST_F(BackendTest, TakesCategoriesWhateverTheStatus) {
  const LogCapture log(PLRLogLevel::info);
  answer(500, "{\"pushCategories\":{\"version\":4,\"categories\":null}}");
  const auto config = makeBackend().requestMessagingConfig("key", {}, ids_);
  ASSERT_TRUE(config);
  EXPECT_EQ(config->version, 4);
  for (const auto& body : {std::optional<std::string>("{}"), std::optional<std::string>()}) {
    answer(200, body);
    EXPECT_FALSE(makeBackend().requestMessagingConfig("key", {}, ids_));
  }
  EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(BackendTest, TurnsARequestThatCannotBeBuiltIntoAFailure) {
  const std::string nil = "[Network Module] requestContent is nil";
  const LogCapture log(PLRLogLevel::info);
  Backend backend = makeBackend(std::make_shared<BrokenFactory>());
  EXPECT_TRUE(backend.requestConfig("key", ids_, {}).isDefault);
  EXPECT_EQ(outcomeText(backend.requestIdentification("key", 1, ids_)),
            "[Backend Module] Can't build the backend identifiers request. Error: " + nil);
  EXPECT_EQ(backend.sendAnalytics("key", ids_, {})->description(), nil);
  EXPECT_EQ(backend.sendVerifyReceipt("key", {}, ids_).receiptStatus(),
            PLRReceiptStatus::internalError);
  EXPECT_FALSE(backend.requestMessagingConfig("key", {}, ids_));
  EXPECT_EQ(
      log.lines(),
      (Lines{
          "ERROR [Backend Module] Can't create a config request. Error: " + nil,
          "ERROR [Backend Module] Can't create a send report request. Error: " + nil,
          "ERROR [Backend Module] Can't create a request for receipt verification. Error: " + nil,
          "ERROR [Backend Module] Can't create messaging config request. Error: " + nil}));
  EXPECT_EQ(http_.requests.size(), 0U);
}

}  // namespace
}  // namespace pelorino
