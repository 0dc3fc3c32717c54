#include <gtest/gtest.h>

#include <limits>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <variant>
#include <vector>

#include "Backend.h"
#include "BackendConfigUrl.h"
#include "BackendRepository.h"
#include "Base64.h"
#include "HttpExchange.h"
#include "JsonHelpers.h"
#include "LogCapture.h"
#include "Network.h"

namespace pelorino {
namespace {

using Headers = std::vector<std::pair<std::string, std::string>>;
using Lines = std::vector<std::string>;

/// Keeps every request and answers each with `answer`.
class RecordingExchange final : public HttpExchange {
 public:
  [[nodiscard]] bool isValidUrl(const std::string& url) const override {
    return url.find_first_of(" \r\n") == std::string::npos;
  }

  [[nodiscard]] HttpResponse perform(const HttpRequest& request) override {
    requests.push_back(request);
    return answer;
  }

  HttpResponse answer;
  std::vector<HttpRequest> requests;
};

JSONContent contentOf(AnyCodable::Object body, JSONContent::Headers headers = {},
                      std::vector<std::string> encodingKeys = {}) {
  return {Encodable(std::move(body)), std::move(headers), std::move(encodingKeys)};
}

TEST(Base64, PadsToFours) {
  EXPECT_EQ(base64(""), "");
  EXPECT_EQ(base64("fo"), "Zm8=");
  EXPECT_EQ(base64(std::string("\xff\x00\xfb\xff", 4)), "/wD7/w==");
}

TEST(PlatformRequest, SendsNothingThatHasNoUrlOrNoBody) {
  RecordingExchange http;
  http.answer = {.status = 200, .body = "x", .error = {}};
  const LogCapture log(PLRLogLevel::info);
  const auto expectNothing = [&](const char* host, AnyCodable::Object body, const Lines& lines) {
    SCOPED_TRACE(host);
    auto builder = Network(http).post(host);
    builder.requestContent = contentOf(std::move(body));
    EXPECT_EQ(builder.build().send().statusCode, 400);
    EXPECT_TRUE(http.requests.empty());
    EXPECT_EQ(log.lines(), lines);
  };
  expectNothing("http://a b", {}, {});
  expectNothing("http://not.json", {{"a", std::numeric_limits<double>::infinity()}},
                {"ERROR [Network Module] Can't parse response data. Error: getContent Error"});
}

TEST(PlatformRequest, NeverSendsAHeaderThatCouldForgeAnother) {
  RecordingExchange http;
  const LogCapture log(PLRLogLevel::error);
  auto builder = Network(http).post("http://h");
  builder.requestContent =
      contentOf({}, {{"A", "x\r\nB: y"}, {"C\n", "z"}, {"D", "x\r\n"}, {"E", "ok"}}, {"D"});
  (void)builder.build().send();
  EXPECT_EQ(http.requests.at(0).headers, (Headers{{"Content-Length", "2"},
                                                  {"Content-Type", "application/json"},
                                                  {"D", "eA0K"},
                                                  {"E", "ok"}}));
  EXPECT_EQ(log.lines().size(), 2U);
}

TEST(RequestBuilder, NeedsContent) {
  RecordingExchange http;
  EXPECT_THROW((void)Network(http).post("http://h").build(), PLRError);
}

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

  void answer(std::optional<int> status, std::optional<std::string> body) {
    http_.answer = {status, std::move(body), {}};
  }

  template <class Request, class Answer>
  [[nodiscard]] Answer ask(const Endpoint<Request, Answer>& endpoint,
                           const std::type_identity_t<Request>& request) {
    return backend_.ask(endpoint, "key", ids_, request).answer;
  }

  RecordingExchange http_;
  Backend backend_{http_};
  Identifiers ids_;
};

TEST_F(BackendTest, SendsEachRequestToItsEndpoint) {
  (void)ask(BackendRepository::requestConfig,
            {.sdkVersion = "2.1.2", .sdkCodeVersion = 10, .sbsConfigVersion = 0});
  (void)ask(BackendRepository::requestIdentification, {3});
  BackendConfigUrl::setTestCustomUrl("/c");
  (void)ask(BackendRepository::sendAnalytics,
            {{std::make_shared<Report>(std::vector<Package>(), "uuid")}});
  (void)ask(BackendRepository::sendVerifyReceipt,
            {.platform = "ios", .receipt = {.data = "ZGF0YQ==", .password = ""}});
  BackendConfigUrl::setTestProxyUrl("");
  (void)ask(BackendRepository::requestMessagingConfig,
            {.sdkVersion = "2.1.2", .sdkCodeVersion = 10, .appVersion = "1"});
  Lines requests;
  for (const HttpRequest& each : http_.requests) {
    requests.push_back(each.method + " " + each.url + " " + *each.body);
  }
  EXPECT_EQ(
      requests,
      (Lines{
          R"(POST http://h/v2/analytics/config?appId=key {"sdkVersion":"2.1.2","sdkCodeVersion":10,"appVersion":null,"sbsConfigVersion":0})",
          R"(POST http://h/v2/analytics/identification?appId=key {"attempt":3})",
          R"(POST http://h/c/v2/analytics/report?appId=key {"reports":[{"packages":[]}]})",
          R"(POST http://h/c/v2/verify/payment?appId=key {"platform":"ios","receipt":{"receipt-data":"ZGF0YQ==","password":""}})",
          R"(POST https://api.pelorino.example/c/v2/messaging/config?appId=key {"sdkVersion":"2.1.2","sdkCodeVersion":10,"appVersion":"1","categoriesVersion":0})"}));
}

TEST_F(BackendTest, NamesDeviceAndUserInHeadersAndLogsTheWholeRequest) {
  ids_ = {.deviceId = "dev", .previousDeviceId = "p", .crossPlatformPelorinoId = 8};
  ids_.userId = "u\r\nX: \u00e9";
  ids_.previousUserId = "q";
  ids_.pelorinoIdTimestamp = -1;
  const auto report = std::make_shared<Report>(std::vector<Package>(), "uuid");
  const LogCapture log;
  (void)ask(BackendRepository::sendAnalytics, {{report}});
  EXPECT_EQ(http_.requests.at(0).timeout, std::chrono::seconds(60));
  EXPECT_EQ(http_.requests.at(0).headers, (Headers{{"Content-Length", "29"},
                                                   {"Content-Type", "application/json"},
                                                   {"CrossPlatformPelorinoId", "8"},
                                                   {"DeviceId", "ZGV2"},
                                                   {"PelorinoIdTimestamp", "-1"},
                                                   {"PreviousDeviceId", "cA=="},
                                                   {"PreviousUserId", "cQ=="},
                                                   {"UserId", "dQ0KWDogw6k="},
                                                   {"X-Id-Encoding", "base64"}}))
      << "and no PelorinoId";
  EXPECT_EQ(log.lines().at(0),
            "DEBUG [Network Module] \n Method: POST\n URL: http://h/v2/analytics/report?appId=key\n"
            " Content-type: application/json\n Headers: \n"
            "\t\tCrossPlatformPelorinoId: 8,\n\t\tDeviceId: dev,\n\t\tPelorinoIdTimestamp: -1,\n"
            "\t\tPreviousDeviceId: p,\n\t\tPreviousUserId: q,\n\t\tUserId: u\r\nX: "
            "\u00e9,\n\t\tX-Id-Encoding: base64\n"
            " EncodedHeaders: \n"
            "\t\tCrossPlatformPelorinoId: 8,\n\t\tDeviceId: ZGV2,\n\t\tPelorinoIdTimestamp: -1,\n"
            "\t\tPreviousDeviceId: cA==,\n\t\tPreviousUserId: cQ==,\n\t\tUserId: "
            "dQ0KWDogw6k=,\n\t\tX-Id-Encoding: base64\n"
            " Content UUID: uuid \n"
            " Content: {\n  \"reports\": [\n    {\n      \"packages\": []\n    }\n  ]\n} \n");
}

TEST_F(BackendTest, TellsTheCauseOfAFailure) {
  http_.answer = {.status = {}, .body = {}, .error = "Connection refused"};
  const auto refused = backend_.ask(BackendRepository::sendAnalytics, "key", ids_, {});
  EXPECT_EQ(refused.error.value().description(), "Connection refused");
  EXPECT_TRUE(refused.answer);
  answer(503, std::nullopt);
  const auto busy = backend_.ask(BackendRepository::requestConfig, "key", ids_, {});
  EXPECT_EQ(busy.statusCode, 503);
  EXPECT_TRUE(busy.answer.isDefault && !busy.error);
}

TEST_F(BackendTest, SaysWhyAnAnswerHasNoIdentifiers) {
  const auto expectError = [&](std::optional<int> status, std::optional<std::string> body,
                               const std::string& beginning) {
    answer(status, std::move(body));
    const auto outcome = ask(BackendRepository::requestIdentification, {1});
    const std::string got = std::get<BackendIdentifiers::Error>(outcome).text;
    EXPECT_TRUE(got.starts_with(beginning)) << got;
  };
  const std::string noIdentifiers = "[Backend Module] parse identifiers. Error:  ";
  expectError(200, "{\"pelorinoId\":\"7\"}", noIdentifiers + "E");
  expectError(200, std::nullopt, noIdentifiers + "T");
  expectError(202, "{}", "[Backend Module] parse retry parametr. Error:  T");
  expectError(201, "{\"pelorinoId\":7}", "[Backend Module] identifiers, unknown status code 201");
  expectError({}, {}, "[Backend Module] identifiers, unknown status code 400");
}

TEST_F(BackendTest, ReadsReceiptAnswers) {
  const std::string sandbox = "receiptStatus: [Receipt sandbox] verificationResult: [v]";
  const std::string internal = "receiptStatus: [Receipt internal error]";
  const struct {
    std::optional<int> status;
    std::optional<std::string> body;
    std::string description;
    std::string line;
  } cases[] = {
      {200, "{\"status\":3,\"verificationResult\":\"v\"}", sandbox,
       "INFO [Backend Module] Receipt verification result: \n\t" + sandbox},
      {200, "{\"status\":4294967296}", internal,
       "ERROR [Backend Module] Can't parse verification data"},
      {200, std::nullopt, internal,
       "ERROR [Backend Module] Can't create a request for receipt verification. Error: "},
      {500, "{\"status\":0}", "receiptStatus: [Receipt server error]",
       "ERROR [Backend Module] Failed to send a receipt, status code: 500"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.line);
    const LogCapture log(PLRLogLevel::info);
    answer(c.status, c.body);
    EXPECT_EQ(ask(BackendRepository::sendVerifyReceipt, {}).description(), c.description);
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_TRUE(log.lines()[0].starts_with(c.line)) << log.lines()[0];
  }
}

TEST_F(BackendTest, TakesCategoriesWhateverTheStatus) {
  answer(500, R"({"pushCategories":{"version":4,"categories":[{"id":"c","buttons":)"
              R"([{"id":"b","text":"t","activationMode":null}]}],"removed":["d"]}})");
  const auto config = ask(BackendRepository::requestMessagingConfig, {});
  EXPECT_EQ(config->version, 4);
  EXPECT_EQ(config->categories.at(0).buttons.at(0).text, "t");
  answer(200, R"({"pushCategories":{"version":4,"categories":null}})");
  EXPECT_TRUE(ask(BackendRepository::requestMessagingConfig, {})->categories.empty());
  for (const auto& body : {std::optional<std::string>("{}"), std::optional<std::string>()}) {
    answer(200, body);
    EXPECT_FALSE(ask(BackendRepository::requestMessagingConfig, {}));
  }
}

}  // namespace
}  // namespace pelorino
