#include "BackendModel.h"

#include <fmt/format.h>

#include <algorithm>
#include <boost/json.hpp>

namespace pelorino {

using std::chrono::milliseconds;

milliseconds BackendModel::latency(const HttpRequest& request) {
  plan_ = dice_.chance(percentFailing_) ? failingPlan(request) : Plan();
  if (plan_.latency <= request.timeout) {
    plan_.latency = dice_.chance(percentSlow_) ? milliseconds(dice_.below(request.timeout.count()))
                                               : milliseconds(dice_.pick({0, 0, 3, 200}));
  }
  return plan_.latency;
}

HttpResponse BackendModel::answer(const HttpRequest& request) {
  const std::string path = request.url.substr(0, request.url.find('?'));
  const bool isAnswered = plan_.isAccepted && plan_.isWhole && plan_.status == 200;
  HttpResponse response{.status = plan_.status, .body = "sorry", .error = {}};
  if (plan_.status == 200) response.body = plan_.isGarbage ? "\xFF{\"[" : bodyFor(path, request);
  if (!plan_.isWhole) response = {.status = {}, .body = {}, .error = "connection reset"};
  listener_(Record::Kind::request,
            {path, request.body ? *request.body : "", plan_.isAccepted ? "accepted" : "refused",
             isAnswered ? "answered" : "lost",
             std::to_string(plan_.status) + " after " + std::to_string(plan_.latency.count()),
             response.body});
  return response;
}

BackendModel::Plan BackendModel::failingPlan(const HttpRequest& request) {
  switch (dice_.below(6)) {
    case 0:  // Connection refused.
      return {.isAccepted = false, .isWhole = false};
    case 1:
      return {.isAccepted = false, .status = dice_.pick({500, 503, 502})};
    case 2:
      return {.isAccepted = false, .status = dice_.pick({400, 403, 404, 302, 204})};
    case 3:  // Too slow: it may have been received.
      return {.latency = request.timeout + milliseconds(1),
              .isAccepted = dice_.chance(50),
              .isWhole = false};
    case 4:  // The connection dies before or within the answer.
      return {.isWhole = false};
    default:
      return {.isGarbage = true};
  }
}

std::string BackendModel::bodyFor(const std::string& path, const HttpRequest& request) {
  if (path.ends_with("/analytics/config")) return configuration();
  if (path.ends_with("/messaging/config")) return categories();
  if (path.ends_with("/verify/payment")) {
    const auto asked = boost::json::parse(*request.body);
    return fmt::format(R"({{"status":0,"verificationResult":{}}})",
                       boost::json::serialize(asked.at("receipt").at("receipt-data")));
  }
  if (!path.ends_with("/analytics/identification")) return {};
  if (dice_.chance(20)) return fmt::format(R"({{"retryAfter":{}}})", dice_.below(100'000));
  return R"({"pelorinoId":7,"crossPlatformPelorinoId":8,"pelorinoIdTimestamp":9})";
}

/// Changes of four categories, whatever the client has: a new version each time.
std::string BackendModel::categories() {
  std::string added, removed;
  for (const char* id : {"a", "b", "c", "d"}) {
    if (dice_.chance(40)) added += fmt::format(R"(,{{"id":"{}","buttons":[]}})", id);
    if (dice_.chance(25)) removed += fmt::format(R"(,"{}")", id);
  }
  const auto list = [](const std::string& items) {
    return items.empty() ? items : items.substr(1);
  };
  return fmt::format(R"({{"pushCategories":{{"version":{},"categories":[{}],"removed":[{}]}}}})",
                     ++categoriesVersion_, list(added), list(removed));
}

std::string BackendModel::configuration() {
  std::string json = fmt::format(
      R"({{"timeForRequest":{},"countForRequest":{},"eventParamsCount":20,"sessionTimeout":{},)"
      R"("serverTime":1,"aliveTimeout":{},"userCounting":{})",
      dice_.pick({120'000, 60'000, 60'000, 20'000, 20'000, 1'999}),
      dice_.pick({10, 10, 3, 1, 0, 50}), dice_.pick({600'000, 600'000, 30'000, 1, 0}),
      dice_.pick({300'000, 20'000}), dice_.chance(80));
  if (dice_.chance(70)) {
    json += fmt::format(R"(,"currencyAggregationTimeout":{})",
                        dice_.pick({360'000, 20'000, 20'000, 20'000, 20'000, 999}));
  }
  if (dice_.chance(20)) {
    json += fmt::format(
        R"(,"exclude":{{"version":{},"all":{},"events":{{{}}}}})", dice_.below(1'000'000),
        dice_.chance(15),
        dice_.pick({"", R"("ce":[])", R"("ca":["shop"])", R"("lu":[])", R"("ca":[],"di":[])"}));
  }
  return json + "}";
}

}  // namespace pelorino
