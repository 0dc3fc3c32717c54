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
      {"levelUp", command({"level", "balances"}, levelUp)},
      {"currentBalance", command({"balance"}, currentBalance)},
      {"customEvent", command({"eventName", "parameters"}, customEvent)},
      {"virtualCurrencyPayment", command({"purchaseId", "purchaseType", "purchaseAmount",
                                          "resources", "purchasePrice", "purchaseCurrency"},
                                         virtualCurrencyPayment)},
      {"currencyAccrual",
       command({"currencyName", "currencyAmount", "source", "accrualType"}, currencyAccrual)},
      {"startProgressionEvent", command({"eventName", "parameters"}, startProgressionEvent)},
      {"finishProgressionEvent", command({"eventName", "parameters"}, finishProgressionEvent)},
      {"realCurrencyPayment",
       command({"orderId", "price", "productId", "currencyCode"}, realCurrencyPayment)},
      {"socialNetworkConnect", command({"socialNetwork"}, socialNetworkConnect)},
      {"socialNetworkPost", command({"socialNetwork", "reason"}, socialNetworkPost)},
      {"tutorial", withInteger("step", PLRAnalytics::tutorial)},
      {"referrer", command({"utmData"}, referrer)},
      {"adImpression", command({"network", "revenue", "placement", "unit"}, adImpression)},
      {"sendBufferedEvents", plain(PLRAnalytics::sendBufferedEvents)},
  };
}

}  // namespace pelorino::host
