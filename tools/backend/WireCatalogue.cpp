#include "WireCatalogue.h"

#include <algorithm>
#include <array>

// The wire format as data. Each table is one object, each row one key. The rows have the order in
// which clients encode them; readers must not depend on it.

namespace pelorino::backend {

namespace {

using enum WireType;
using enum Presence;

constexpr WireField timestamp{"timestamp", time};
constexpr WireField sessionId{"sessionId", time};
constexpr WireField level{"level", integer};
constexpr WireField inProgress{"inProgress", oneText, ifSet};
constexpr WireField inExperiments{"inExperiments", text, ifSet};

constexpr WireField code(std::string_view value) {
  return {"code", text, always, value};
}

constexpr std::array sessionStart = {code("ss"), timestamp, level, inProgress, inExperiments};

constexpr std::array userEngagement = {
    code("ue"), timestamp,  level,        WireField{"length", integer},
    sessionId,  inProgress, inExperiments};

constexpr std::array alive = {code("al"), timestamp, inExperiments};

constexpr std::array deviceInfo = {
    code("di"),
    timestamp,
    WireField{"osVersion", text},
    WireField{"os", text},
    WireField{"displayPpi", integer, ifSet},
    WireField{"displayResolution", text, ifSet},
    WireField{"displayDiagonal", number, ifSet},
    WireField{"manufacturer", text},
    WireField{"model", text},
    WireField{"timeZoneOffset", integer},
    WireField{"rooted", flag},
    WireField{"isLimitAdTrackingEnabled", boolean},
    WireField{"idfv", text, ifSet},
    WireField{"idfa", text, ifSet},
    WireField{"uuid", text},
    WireField{"sandboxState", integer, ifSet},
};

constexpr std::array levelUp = {
    code("lu"),
    sessionId,
    timestamp,
    level,
    WireField{"balance", amounts, ifSet},
    WireField{"spent", amounts, ifSet},
    WireField{"earned", amounts, ifSet},
    WireField{"bought", amounts, ifSet},
    inProgress,
    inExperiments,
};

constexpr std::array currentBalance = {
    code("cb"), timestamp, sessionId, level, WireField{"balance", amounts}, inExperiments};

constexpr std::array tutorial = {
    code("tr"), timestamp, sessionId, level, WireField{"step", integer}, inProgress, inExperiments};

constexpr std::array progressionParameters = {
    WireField{"success", boolean},
    WireField{"duration", integer, ifSet},
    WireField{"difficulty", integer, ifSet},
    WireField{"source", text, ifSet},
};
constexpr WireRecord progressionParametersRecord{"parameters", progressionParameters};

constexpr std::array progressionEvent = {
    code("pe"),
    timestamp,
    sessionId,
    level,
    WireField{"name", text},
    WireField{"spent", amounts, ifSet},
    WireField{"earned", amounts, ifSet},
    WireField{"parameters", record, always, {}, &progressionParametersRecord},
    inExperiments,
};

constexpr std::array realCurrencyPayment = {
    code("rp"),
    timestamp,
    sessionId,
    level,
    WireField{"productId", text},
    WireField{"orderId", text},
    WireField{"price", number},
    WireField{"currencyCode", text},
    inProgress,
    inExperiments,
};

constexpr std::array virtualCurrencyPayment = {
    code("vp"),
    timestamp,
    sessionId,
    level,
    WireField{"purchaseId", text},
    WireField{"purchaseAmount", integer},
    WireField{"purchasePrice", amounts},
    WireField{"purchaseType", text},
    inProgress,
    inExperiments,
};

constexpr std::array currencyAccrual = {
    code("ca"),
    timestamp,
    sessionId,
    level,
    WireField{"earned", amountsBySource, ifSet},
    WireField{"bought", amountsBySource, ifSet},
    inExperiments,
};

constexpr std::array customEvent = {
    code("ce"),
    timestamp,
    sessionId,
    level,
    WireField{"name", text},
    WireField{"parameters", scalars, ifSet},
    inProgress,
    inExperiments,
};

constexpr std::array socialNetworkConnect = {
    code("sc"), timestamp,     sessionId, level, WireField{"socialNetwork", text},
    inProgress, inExperiments,
};

constexpr std::array socialNetworkPost = {
    code("sp"),
    timestamp,
    sessionId,
    level,
    WireField{"socialNetwork", text},
    WireField{"postReason", text},
    inProgress,
    inExperiments,
};

constexpr std::array referral = {
    code("rf"),
    timestamp,
    sessionId,
    WireField{"source", text, ifSet},
    WireField{"campaign", text, ifSet},
    WireField{"content", text, ifSet},
    WireField{"medium", text, ifSet},
    WireField{"term", text, ifSet},
    inProgress,
    inExperiments,
};

constexpr std::array adImpression = {
    code("adrv"),
    timestamp,
    sessionId,
    WireField{"source", text, always, "sdk"},
    WireField{"ad_network", text},
    WireField{"placement", text, ifSet},
    WireField{"ad_unit", text, ifSet},
    WireField{"revenue", number},
    inProgress,
    inExperiments,
};

constexpr std::array trackingStatus = {code("ts"), timestamp, WireField{"trackingAllowed", boolean},
                                       inProgress, inExperiments};

constexpr std::array pushToken = {code("pt"), timestamp, WireField{"isAllowed", boolean},
                                  WireField{"token", text}, inExperiments};

constexpr std::array pushOpened = {code("po"), timestamp, WireField{"pushId", integer},
                                   WireField{"button", text, ifSet}, inExperiments};

constexpr std::array peopleEvent = {
    code("pl"), timestamp,     sessionId, level, WireField{"parameters", object, orNull},
    inProgress, inExperiments,
};

constexpr std::array subscriptionPayment = {
    code("sbs"),
    timestamp,
    sessionId,
    level,
    WireField{"orderId", text},
    WireField{"productId", text},
    WireField{"regionCode", text},
    WireField{"currencyCode", text},
    inProgress,
    inExperiments,
};

constexpr std::array restoredTransaction = {WireField{"productID", text},
                                            WireField{"transactionIds", texts}};
constexpr WireRecord restoredTransactionRecord{"transaction", restoredTransaction};

constexpr std::array restoredTransactions = {
    code("sbsr"), timestamp, WireField{"currencyCode", text},
    WireField{"transactions", records, always, {}, &restoredTransactionRecord}};

constexpr std::array subscriptionProduct = {
    WireField{"productId", text},
    WireField{"price", number},
    WireField{"regionCode", text},
    WireField{"currencyCode", text},
    WireField{"introductoryPrice", number, ifSet},
    WireField{"discounts", numbers, ifSet},
};
constexpr WireRecord subscriptionProductRecord{"product", subscriptionProduct};

constexpr std::array subscriptionProducts = {
    code("sbsp"), timestamp,
    WireField{"products", records, always, {}, &subscriptionProductRecord}};

constexpr auto everyEvent = std::to_array<WireRecord>({
    {"SessionStart", sessionStart},
    {"UserEngagement", userEngagement},
    {"Alive", alive},
    {"DeviceInfo", deviceInfo},
    {"LevelUp", levelUp},
    {"CurrentBalance", currentBalance},
    {"Tutorial", tutorial},
    {"ProgressionEvent", progressionEvent},
    {"RealCurrencyPayment", realCurrencyPayment},
    {"VirtualCurrencyPayment", virtualCurrencyPayment},
    {"CurrencyAccrual", currencyAccrual},
    {"CustomEvent", customEvent},
    {"SocialNetworkConnect", socialNetworkConnect},
    {"SocialNetworkPost", socialNetworkPost},
    {"Referral", referral},
    {"AdImpression", adImpression},
    {"TrackingStatus", trackingStatus},
    {"PushToken", pushToken},
    {"PushOpened", pushOpened},
    {"PeopleEvent", peopleEvent},
    {"SubscriptionPayment", subscriptionPayment},
    {"RestoredTransactionsEvent", restoredTransactions},
    {"SubscriptionProductsEvent", subscriptionProducts},
});

constexpr std::array package = {
    WireField{"language", text, orNull},         WireField{"appVersion", text, orNull},
    WireField{"appBuildVersion", text, orNull},  WireField{"sdkVersion", text},
    WireField{"sdkCodeVersion", integer},        WireField{"bundle", text, orNull},
    WireField{"engine", text, always, "Unreal"}, WireField{"events", events},
};
constexpr WireRecord packageRecord{"package", package};

constexpr std::array report = {WireField{"packages", records, always, {}, &packageRecord}};
constexpr WireRecord reportRecord{"report", report};

constexpr std::array reports = {WireField{"reports", records, always, {}, &reportRecord}};

constexpr std::array versions = {
    WireField{"sdkVersion", text},
    WireField{"sdkCodeVersion", integer},
    WireField{"appVersion", text, orNull},
    WireField{"excludeVersion", integer, ifSet},
    WireField{"sbsConfigVersion", integer, ifSet},
};

constexpr std::array attempt = {WireField{"attempt", integer}};

constexpr std::array receiptData = {WireField{"receipt-data", text}, WireField{"password", text}};
constexpr WireRecord receiptDataRecord{"receipt", receiptData};

constexpr std::array receipt = {
    WireField{"platform", text, always, "ios"},
    WireField{"receipt", record, always, {}, &receiptDataRecord},
    WireField{"bundle", text, ifSet},
};

constexpr std::array messagingRequest = {
    WireField{"sdkVersion", text},      WireField{"sdkCodeVersion", integer},
    WireField{"appVersion", text},      WireField{"categoriesVersion", integer},
    WireField{"language", text, ifSet},
};

struct Endpoint {
  std::string_view path;
  WireRecord body;
};

constexpr auto endpoints = std::to_array<Endpoint>({
    {"/analytics/config", {"Versions", versions}},
    {"/analytics/identification", {"Attempt", attempt}},
    {"/analytics/report", {"Reports", reports}},
    {"/verify/payment", {"Receipt", receipt}},
    {"/messaging/config", {"MessagingRequestObject", messagingRequest}},
});

}  // namespace

std::span<const WireRecord> eventRecords() {
  return everyEvent;
}

const WireRecord* eventRecord(std::string_view value) {
  const auto found = std::ranges::find_if(everyEvent, [&](const WireRecord& candidate) {
    return candidate.fields.front().constant == value;
  });
  return found == everyEvent.end() ? nullptr : &*found;
}

std::string endpointPaths() {
  std::string paths;
  for (const Endpoint& endpoint : endpoints) {
    paths.append(paths.empty() ? "" : "|").append(endpoint.path);
  }
  return paths;
}

const WireRecord* requestRecord(std::string_view path) {
  const auto found = std::ranges::find(endpoints, path, &Endpoint::path);
  return found == endpoints.end() ? nullptr : &found->body;
}

}  // namespace pelorino::backend
