#include "AnswerScript.h"

#include <fmt/format.h>

#include <boost/json.hpp>
#include <string_view>
#include <vector>

#include "WallClock.h"

namespace pelorino::backend {

namespace json = boost::json;

namespace {

/// The values that clients assume when no configuration has reached them.
json::value defaultConfiguration() {
  return {{"timeForRequest", 120'000},
          {"countForRequest", 10},
          {"eventParamsCount", 20},
          {"sessionTimeout", 600'000},
          {"serverTime", millisecondsNow()},
          {"aliveTimeout", 300'000},
          {"userCounting", true},
          {"currencyAggregationTimeout", 360'000}};
}

/// FNV-1a: the same numbers for a device at every start of this program.
std::int64_t numberOf(std::string_view text) {
  std::uint64_t hash = 14695981039346656037U;
  for (const char character : text) {
    hash = (hash ^ static_cast<unsigned char>(character)) * 1099511628211U;
  }
  return static_cast<std::int64_t>(hash % 999'999'999'999U) + 1;
}

json::value identifiersOf(const std::string& deviceId) {
  return {{"pelorinoId", numberOf(deviceId)},
          {"crossPlatformPelorinoId", numberOf("cross-platform " + deviceId)},
          {"pelorinoIdTimestamp", millisecondsNow()}};
}

Answer defaultAnswer(const std::string& endpoint, const std::string& deviceId) {
  if (endpoint == "/analytics/config") return {200, json::serialize(defaultConfiguration())};
  if (endpoint == "/analytics/identification") {
    return {200, json::serialize(identifiersOf(deviceId))};
  }
  if (endpoint == "/verify/payment") {
    return {200, R"({"status":0,"verificationResult":"A development backend accepts everything"})"};
  }
  if (endpoint == "/messaging/config") {
    return {200, R"({"pushCategories":{"version":0,"categories":[]}})"};
  }
  return {200, {}};
}

}  // namespace

std::string Fault::description() const {
  std::vector<std::string> parts;
  if (delay.count() > 0) parts.push_back(fmt::format("delay {} ms", delay.count()));
  if (drop == Drop::before) parts.emplace_back("dropped before reading");
  if (drop == Drop::after) parts.emplace_back("dropped after reading");
  if (status) parts.push_back(fmt::format("status {}", *status));
  if (truncate) parts.emplace_back("truncated");
  if (garbage) parts.emplace_back("garbage");
  if (hugeBody > 0) parts.push_back(fmt::format("{} bytes", hugeBody));
  return fmt::format("{}", fmt::join(parts, ", "));
}

void AnswerScript::setAnswer(const std::string& endpoint, Answer answer) {
  const std::lock_guard lock(mutex_);
  answers_[endpoint] = std::move(answer);
}

void AnswerScript::addFault(const std::string& endpoint, const Fault& fault) {
  const std::lock_guard lock(mutex_);
  faults_[endpoint].push_back(fault);
}

Answer AnswerScript::answer(const std::string& endpoint, const std::string& deviceId) const {
  const std::lock_guard lock(mutex_);
  const auto scripted = answers_.find(endpoint);
  return scripted == answers_.end() ? defaultAnswer(endpoint, deviceId) : scripted->second;
}

std::optional<Fault> AnswerScript::takeFault(const std::string& endpoint) {
  const std::lock_guard lock(mutex_);
  std::deque<Fault>& due = faults_[endpoint];
  if (due.empty()) return std::nullopt;
  const Fault fault = due.front();
  if (--due.front().times <= 0) due.pop_front();
  return fault;
}

void AnswerScript::reset() {
  const std::lock_guard lock(mutex_);
  answers_.clear();
  faults_.clear();
}

}  // namespace pelorino::backend
