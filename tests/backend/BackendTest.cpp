#include <gtest/gtest.h>

#include <chrono>
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
#include "ContentFactory.h"
#include "HttpExchange.h"
#include "JSONContent.h"
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

std::shared_ptr<JSONContent> contentOf(AnyCodable::Object body,
                                       RequestContentProtocol::Headers headers = {},
                                       std::vector<std::string> encodingKeys = {}) {
  return std::make_shared<JSONContent>(Encodable(std::move(body)), std::move(headers),
                                       std::move(encodingKeys), "application/json");
}

TEST(Base64, PadsToFours) {
  EXPECT_EQ(base64(""), "");
  EXPECT_EQ(base64("fo"), "Zm8=");
  EXPECT_EQ(base64(std::string("\xff\x00\xfb\xff", 4)), "/wD7/w==");
}

TEST(PlatformRequest, SendsTheBodyWithItsHeadersInOrder) {
  RecordingExchange http;
  http.answer = {.status = 201, .body = "answer", .error = {}};
  const LogCapture log;
  const auto builder = Network(http).post("http://h");
  builder->urlBuilder().path = "/p";
  builder->requestContent =
      contentOf({{"t", "\u00e9"}}, {{"Id", "x"}, {"A", "\u00e9"}, {"Z", "1"}}, {"A", "Id", "None"});
  builder->requestIdentifier = "uuid";
  const Response response = builder->build()->send();

  EXPECT_EQ(response.statusCode, 201);
  EXPECT_EQ(response.data, "answer");
  EXPECT_FALSE(response.error);
  ASSERT_EQ(http.requests.size(), 1U);
  EXPECT_EQ(http.requests[0].timeout, std::chrono::seconds(60));
  EXPECT_EQ(http.requests[0].headers, (Headers{{"Content-Length", "10"},
                                               {"Content-Type", "application/json"},
                                               {"A", "w6k="},
                                               {"Id", "eA=="},
                                               {"Z", "1"}}));
  EXPECT_EQ(log.lines(),
            std::vector<std::string>{"DEBUG [Network Module] \n Method: POST\n URL: http://h/p\n"
                                     " Content-type: application/json\n Headers: \n"
                                     "\t\tA: \u00e9,\n\t\tId: x,\n\t\tZ: 1\n EncodedHeaders: \n"
                                     "\t\tA: w6k=,\n\t\tId: eA==,\n\t\tZ: 1\n"
                                     " Content UUID: uuid \n"
                                     " Content: {\n  \"t\": \"\u00e9\"\n} \n"});
}

TEST(PlatformRequest, ReadsFailuresAsStatus400) {
  const auto expectFailure = [](const char* host, AnyCodable::Object body, HttpResponse answer,
                                std::size_t sent, const std::vector<std::string>& lines) {
    SCOPED_TRACE(host);
    RecordingExchange http;
    http.answer = std::move(answer);
    const LogCapture log(PLRLogLevel::info);
    const auto builder = Network(http).post(host);
    builder->requestContent = contentOf(std::move(body));
    const Response response = builder->build()->send();
    EXPECT_EQ(response.statusCode, 400);
    EXPECT_EQ(response.data, std::nullopt);
    EXPECT_EQ(response.error.has_value(), sent > 0);
    EXPECT_EQ(http.requests.size(), sent);
    EXPECT_EQ(log.lines(), lines);
  };
  expectFailure("http://a b", {}, {200, "x", {}}, 0, {});
  expectFailure("http://not.json", {{"a", std::numeric_limits<double>::infinity()}}, {200, "x", {}},
                0, {"ERROR [Network Module] Can't parse response data. Error: getContent Error"});
  expectFailure("http://no.answer", {}, {{}, {}, "refused"}, 1, {});
}

TEST(PlatformRequest, NeverSendsAHeaderThatCouldForgeAnother) {
  RecordingExchange http;
  const LogCapture log(PLRLogLevel::error);
  const auto builder = Network(http).post("http://h");
  builder->requestContent =
      contentOf({}, {{"A", "x\r\nB: y"}, {"C\n", "z"}, {"D", "x\r\n"}, {"E", "ok"}}, {"D"});
  (void)builder->build()->send();
  EXPECT_EQ(http.requests.at(0).headers, (Headers{{"Content-Length", "2"},
                                                  {"Content-Type", "application/json"},
                                                  {"D", "eA0K"},
                                                  {"E", "ok"}}));
  EXPECT_EQ(log.lines().size(), 2U);
}

TEST(RequestBuilder, NeedsContent) {
  RecordingExchange http;
  EXPECT_THROW((void)Network(http).post("http://h")->build(), PLRError);
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

  RecordingExchange http_;
  Backend backend_{std::make_shared<BackendRepository>(std::make_shared<Network>(http_),
                                                       std::make_shared<ContentFactory>())};
  Identifiers ids_;
};

std::string outcomeText(const BackendIdentifiers::Outcome& outcome) {
  if (const auto* ids = std::get_if<BackendIdentifiers::Identifiers>(&outcome)) {
    return "identifiers " + encodeJson(*ids);
  }
  if (const auto* retry = std::get_if<BackendIdentifiers::RetryAfter>(&outcome)) {
    return "retryAfter " + std::to_string(retry->retryAfter);
  }
  const auto* error = std::get_if<BackendIdentifiers::Error>(&outcome);
  return error ? error->text : "doNotRetry";
}

TEST_F(BackendTest, SendsEachRequestToItsEndpoint) {
  const Versions versions{.sdkVersion = "2.1.2", .sdkCodeVersion = 10, .sbsConfigVersion = 0};
  (void)backend_.requestConfig("key", ids_, versions);
  (void)backend_.requestIdentification("key", 3, ids_);
  BackendConfigUrl::setTestCustomUrl("/c");
  (void)backend_.sendAnalytics("key", ids_, {{std::make_shared<Report>(std::vector<Package>())}});
  (void)backend_.sendVerifyReceipt(
      "key", {.platform = "ios", .receipt = {.data = "ZGF0YQ==", .password = ""}}, ids_);
  BackendConfigUrl::setTestProxyUrl("");
  (void)backend_.requestMessagingConfig(
      "key", {.sdkVersion = "2.1.2", .sdkCodeVersion = 10, .appVersion = "1"}, ids_);
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

TEST_F(BackendTest, NamesDeviceAndUserInHeaders) {
  ids_ = {.deviceId = "dev", .previousDeviceId = "p", .crossPlatformPelorinoId = 8};
  ids_.userId = "u\r\nX: y";
  ids_.previousUserId = "q";
  ids_.pelorinoIdTimestamp = -1;
  (void)backend_.requestIdentification("key", 1, ids_);
  EXPECT_EQ(http_.requests.at(0).headers, (Headers{{"Content-Length", "13"},
                                                   {"Content-Type", "application/json"},
                                                   {"CrossPlatformPelorinoId", "8"},
                                                   {"DeviceId", "ZGV2"},
                                                   {"PelorinoIdTimestamp", "-1"},
                                                   {"PreviousDeviceId", "cA=="},
                                                   {"PreviousUserId", "cQ=="},
                                                   {"UserId", "dQ0KWDogeQ=="},
                                                   {"X-Id-Encoding", "base64"}}))
      << "and no PelorinoId";
}

TEST_F(BackendTest, FallsBackOnTheDefaultConfiguration) {
  const auto expectConfig = [&](std::optional<int> status, std::optional<std::string> body,
                                bool isDefault, bool logs) {
    SCOPED_TRACE(body.value_or("no body"));
    const LogCapture log(PLRLogLevel::info);
    answer(status, body);
    const ConfigAnswer got = backend_.requestConfig("key", ids_, {});
    EXPECT_EQ(got.isDefault, isDefault);
    EXPECT_EQ(got.config.countForRequest, isDefault ? 10 : 77);
    ASSERT_EQ(log.lines().size(), logs ? 1U : 0U);
    if (logs) {
      EXPECT_TRUE(log.lines()[0].starts_with(
          "ERROR [Backend Module] Can't create a config request. Error: "));
    }
  };
  const std::string whole = encodeJson(Config{.countForRequest = 77});
  expectConfig(200, whole, false, false);
  expectConfig(200, std::nullopt, true, false);
  expectConfig(200, "", true, false);
  expectConfig(201, whole, true, false);
  expectConfig(std::nullopt, std::nullopt, true, false);
  expectConfig(200, "{\"countForRequest\":77}", true, true);
  expectConfig(200, "<html>", true, true);
}

TEST_F(BackendTest, TellsWhatBecameOfAnIdentification) {
  const auto expectOutcome = [&](std::optional<int> status, std::optional<std::string> body,
                                 const std::string& beginning) {
    answer(status, std::move(body));
    const std::string got = outcomeText(backend_.requestIdentification("key", 1, ids_));
    EXPECT_TRUE(got.starts_with(beginning)) << got;
  };
  const LogCapture log(PLRLogLevel::info);
  expectOutcome(200, "{\"pelorinoId\":7,\"crossPlatformPelorinoId\":null}",
                "identifiers {\"pelorinoId\":7}");
  expectOutcome(200, "{}", "identifiers {}");
  const std::string noIdentifiers = "[Backend Module] parse identifiers. Error:  ";
  expectOutcome(200, "{\"pelorinoId\":\"7\"}", noIdentifiers + "E");
  expectOutcome(200, std::nullopt, noIdentifiers + "T");
  expectOutcome(200, "", noIdentifiers + "T");
  expectOutcome(202, "{\"retryAfter\":1500}", "retryAfter 1500");
  expectOutcome(202, "{}", "[Backend Module] parse retry parametr. Error:  T");
  expectOutcome(422, "{\"pelorinoId\":7}", "doNotRetry");
  expectOutcome(201, "{\"pelorinoId\":7}", "[Backend Module] identifiers, unknown status code 201");
  expectOutcome(std::nullopt, std::nullopt,
                "[Backend Module] identifiers, unknown status code 400");
  EXPECT_EQ(log.lines(), Lines{});
}

TEST_F(BackendTest, ReadsReceiptAnswers) {
  const auto expectReceipt = [&](std::optional<int> status, std::optional<std::string> body,
                                 const std::string& description, const std::string& beginning) {
    SCOPED_TRACE(body.value_or("no body"));
    const LogCapture log(PLRLogLevel::info);
    answer(status, std::move(body));
    EXPECT_EQ(backend_.sendVerifyReceipt("key", {}, ids_).description(), description);
    ASSERT_EQ(log.lines().size(), 1U);
    EXPECT_TRUE(log.lines()[0].starts_with(beginning)) << log.lines()[0];
  };
  const std::string result = "INFO [Backend Module] Receipt verification result: \n\t";
  const std::string sandbox = "receiptStatus: [Receipt sandbox] verificationResult: [v]";
  expectReceipt(200, "{\"status\":3,\"verificationResult\":\"v\"}", sandbox, result + sandbox);
  const std::string valid = "receiptStatus: [Receipt valid]";
  expectReceipt(200, "{\"status\":0}", valid, result + valid);
  const std::string internal = "receiptStatus: [Receipt internal error]";
  const std::string noData = "ERROR [Backend Module] Can't parse verification data";
  expectReceipt(200, "{\"status\":7,\"verificationResult\":\"v\"}",
                internal + " verificationResult: [v]", noData);
  expectReceipt(200, "{\"status\":4294967296}", internal, noData);
  expectReceipt(200, "{}", internal, noData);
  const std::string noAnswer =
      "ERROR [Backend Module] Can't create a request for receipt verification. Error: ";
  expectReceipt(200, "{\"status\":\"0\"}", internal, noAnswer);
  expectReceipt(200, std::nullopt, internal, noAnswer);
  const std::string failed = "ERROR [Backend Module] Failed to send a receipt, status code: ";
  expectReceipt(500, "{\"status\":0}", "receiptStatus: [Receipt server error]", failed + "500");
  expectReceipt(std::nullopt, std::nullopt, "receiptStatus: [Receipt server error]",
                failed + "400");
}

TEST_F(BackendTest, TakesCategoriesWhateverTheStatus) {
  answer(500, "{\"pushCategories\":{\"version\":4,\"categories\":null}}");
  EXPECT_EQ(backend_.requestMessagingConfig("key", {}, ids_)->version, 4);
  for (const auto& body : {std::optional<std::string>("{}"), std::optional<std::string>()}) {
    answer(200, body);
    EXPECT_FALSE(backend_.requestMessagingConfig("key", {}, ids_));
  }
}

}  // namespace
}  // namespace pelorino
