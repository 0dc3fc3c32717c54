#include "TrackingCommands.h"

#include <fmt/format.h>
#include <pelorino/PLRAnalytics.h>

#include <map>
#include <string>

#include "Names.h"

namespace pelorino::host {

namespace json = boost::json;

namespace {

void levelUp(const Arguments& arguments) {
  const std::int64_t level = arguments.integer("level");
  if (!arguments.has("balances")) return PLRAnalytics::levelUp(level);
  PLRAnalytics::levelUp(level, arguments.integers("balances"));
}

void currentBalance(const Arguments& arguments) {
  PLRAnalytics::currentBalance(arguments.integers("balance"));
}

void customEvent(const Arguments& arguments) {
  const std::string name = arguments.text("eventName");
  if (!arguments.has("parameters")) return PLRAnalytics::customEvent(name);
  PLRCustomEventParameters parameters;
  const Arguments values = arguments.object("parameters");
  for (const auto& [key, ignored] : values.fields()) {
    const std::string_view parameter = key;
    values.scalar(parameter, [&](auto value) { parameters.add(parameter, value); });
  }
  PLRAnalytics::customEvent(name, parameters);
}

void virtualCurrencyPayment(const Arguments& arguments) {
  const std::string id = arguments.text("purchaseId");
  const std::string type = arguments.text("purchaseType");
  const std::int64_t amount = arguments.integer("purchaseAmount");
  const bool hasOnePrice = arguments.has("purchasePrice") || arguments.has("purchaseCurrency");
  if (!hasOnePrice) {
    return PLRAnalytics::virtualCurrencyPayment(id, type, amount, arguments.integers("resources"));
  }
  if (arguments.has("resources")) {
    throw CommandError("\"resources\" and \"purchasePrice\" exclude each other");
  }
  PLRAnalytics::virtualCurrencyPayment(id, type, amount, arguments.integer("purchasePrice"),
                                       arguments.text("purchaseCurrency"));
}

void currencyAccrual(const Arguments& arguments) {
  PLRAnalytics::currencyAccrual(arguments.text("currencyName"), arguments.integer("currencyAmount"),
                                arguments.text("source"),
                                accrualTypeOf(arguments.text("accrualType")));
}

void startProgressionEvent(const Arguments& arguments) {
  const std::string name = arguments.text("eventName");
  if (!arguments.has("parameters")) return PLRAnalytics::startProgressionEvent(name);
  const Arguments fields = arguments.object("parameters");
  fields.allowOnly({"source", "difficulty"});
  PLRStartProgressionEventParameters parameters;
  parameters.source = fields.maybeText("source");
  parameters.difficulty = fields.maybeInteger("difficulty");
  PLRAnalytics::startProgressionEvent(name, parameters);
}

void finishProgressionEvent(const Arguments& arguments) {
  const std::string name = arguments.text("eventName");
  if (!arguments.has("parameters")) return PLRAnalytics::finishProgressionEvent(name);
  const Arguments fields = arguments.object("parameters");
  fields.allowOnly({"successfulCompletion", "duration", "spent", "earned"});
  PLRFinishProgressionEventParameters parameters;
  if (fields.has("successfulCompletion")) {
    parameters.successfulCompletion = fields.boolean("successfulCompletion");
  }
  parameters.duration = fields.maybeInteger("duration").value_or(parameters.duration);
  if (fields.has("spent")) parameters.spent = fields.integers("spent");
  if (fields.has("earned")) parameters.earned = fields.integers("earned");
  PLRAnalytics::finishProgressionEvent(name, parameters);
}

void realCurrencyPayment(const Arguments& arguments) {
  PLRAnalytics::realCurrencyPayment(arguments.text("orderId"), arguments.number("price"),
                                    arguments.text("productId"), arguments.text("currencyCode"));
}

void socialNetworkConnect(const Arguments& arguments) {
  PLRAnalytics::socialNetworkConnect(PLRSocialNetwork(arguments.text("socialNetwork")));
}

void socialNetworkPost(const Arguments& arguments) {
  PLRAnalytics::socialNetworkPost(PLRSocialNetwork(arguments.text("socialNetwork")),
                                  arguments.text("reason"));
}

void referrer(const Arguments& arguments) {
  const Arguments fields = arguments.object("utmData");
  std::map<PLRReferralProperty, std::string> utmData;
  for (const auto& [key, ignored] : fields.fields()) {
    utmData.emplace(PLRReferralProperty(std::string(key)), fields.text(key));
  }
  PLRAnalytics::referrer(utmData);
}

void adImpression(const Arguments& arguments) {
  PLRAnalytics::adImpression(arguments.text("network"), arguments.number("revenue"),
                             arguments.maybeText("placement"), arguments.maybeText("unit"));
}

}  // namespace

CommandTable trackingCommands() {
  return {
      {"levelUp", command({R"({"level":4,"balances":{"gold":5}})"}, levelUp)},
      {"currentBalance", command({R"({"balance":{"gold":5}})"}, currentBalance)},
      {"customEvent", command({R"({"eventName":"plain"})",
                               R"({"eventName":"full","parameters":
                    {"boss":"hydra","heads":9,"ratio":0.25,"alone":true,"rank":-1}})"},
                              customEvent)},
      {"virtualCurrencyPayment",
       command({R"({"purchaseId":"sword","purchaseType":"weapon","purchaseAmount":1,
                    "resources":{"gold":5}})",
                R"({"purchaseId":"sword","purchaseType":"weapon","purchaseAmount":1,
                    "purchasePrice":5,"purchaseCurrency":"gold"})"},
               virtualCurrencyPayment)},
      {"currencyAccrual", command({R"({"currencyName":"gold","currencyAmount":5,"source":"quest",
                    "accrualType":"earned"})"},
                                  currencyAccrual)},
      {"startProgressionEvent",
       command({R"({"eventName":"world","parameters":{"source":"menu","difficulty":2}})"},
               startProgressionEvent)},
      {"finishProgressionEvent",
       command({R"({"eventName":"world","parameters":{"successfulCompletion":true,"duration":0,
                    "spent":{"gold":1},"earned":{"gold":2}}})"},
               finishProgressionEvent)},
      {"realCurrencyPayment",
       command({R"({"orderId":"order","price":4.99,"productId":"product","currencyCode":"USD"})"},
               realCurrencyPayment)},
      {"socialNetworkConnect", command({R"({"socialNetwork":"fb"})"}, socialNetworkConnect)},
      {"socialNetworkPost",
       command({R"({"socialNetwork":"tw","reason":"victory"})"}, socialNetworkPost)},
      {"tutorial", withInteger("step", PLRAnalytics::tutorial)},
      {"referrer", command({R"({"utmData":{"source":"friend"}})"}, referrer)},
      {"adImpression",
       command({R"({"network":"network","revenue":0.1,"placement":"menu","unit":"banner"})"},
               adImpression)},
      {"sendBufferedEvents", plain(PLRAnalytics::sendBufferedEvents)},
  };
}

}  // namespace pelorino::host
