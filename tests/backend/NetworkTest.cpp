#include <gtest/gtest.h>

#include <chrono>
#include <limits>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "Base64.h"
#include "JSONContent.h"
#include "LogCapture.h"
#include "Network.h"
#include "RecordingExchange.h"

namespace pelorino {
namespace {

using Headers = std::vector<std::pair<std::string, std::string>>;

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
  const HttpRequest& request = http.requests[0];
  EXPECT_EQ(request.method, "POST");
  EXPECT_EQ(request.url, "http://h/p");
  EXPECT_EQ(*request.body, "{\"t\":\"\u00e9\"}");
  EXPECT_EQ(request.timeout, std::chrono::seconds(60));
  EXPECT_EQ(request.headers, (Headers{{"Content-Length", "10"},
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

}  // namespace
}  // namespace pelorino
