#include "BackendRepository.h"

#include <algorithm>
#include <cstddef>
#include <exception>
#include <string_view>

#include "BackendConfigUrl.h"
#include "JsonHelpers.h"
#include "Logger.h"
#include "Receipt.h"

namespace pelorino {
namespace {

namespace status {
constexpr int ok = 200;
constexpr int accepted = 202;
constexpr int unprocessable = 422;
}  // namespace status

void logError(std::string_view message, std::string_view detail) {
  Logger::writeLog(PLRLogLevel::error, [&] { return std::string(message).append(detail); });
}

bool hasBody(const Response& response) {
  return response.data && !response.data->empty();
}

/// A real answer has some dozens of values. Each costs many times its bytes once it is built, so
/// the length of the body alone bounds too little.
constexpr std::ptrdiff_t maximumValues = 100'000;

/// Throws PLRError for an answer without a body, or with one of another shape or too many values.
template <class Value>
Value decodeBody(const Response& response) {
  if (!hasBody(response)) throw response.error.value_or(PLRError("The answer has no body"));
  if (std::ranges::count(*response.data, ',') >= maximumValues) {
    throw PLRError("The answer has too many values");
  }
  return decodeJson<Value>(*response.data);
}

/// The outcome that `read` makes of the answer, or the error that starts with `failure`.
template <class Value>
BackendIdentifiers::Outcome decodeOutcome(const Response& response, const char* failure) {
  try {
    return decodeBody<Value>(response);
  } catch (const std::exception& error) {
    return BackendIdentifiers::Error{std::string(failure) + error.what()};
  }
}

PLRVerifyResponse readReceiptResult(ReceiptResult result) {
  const auto status = result.status && *result.status >= 0 && *result.status <= 4
                          ? PLRReceiptStatusFromRaw(static_cast<int>(*result.status))
                          : std::nullopt;
  PLRVerifyResponse response = VerifyResponseMaker::make(
      status.value_or(PLRReceiptStatus::internalError), std::move(result.verificationResult));
  if (status) {
    Logger::writeLog(PLRLogLevel::info, [&] {
      return "[Backend Module] Receipt verification result: \n\t" + response.description();
    });
  } else {
    Logger::writeLog(PLRLogLevel::error, "[Backend Module] Can't parse verification data");
  }
  return response;
}

}  // namespace

Response BackendRepository::exchange(const char* path, const std::string& appID,
                                     const BackendMessage& message,
                                     const std::optional<std::string>& requestIdentifier) const {
  const auto builder = network_->post(BackendConfigUrl::baseApiUrl() + "/v2");
  builder->urlBuilder().path = path;
  builder->urlBuilder().setQueryParam("appId", appID);
  builder->requestContent = contentFactory_->makeContent(message);
  builder->requestIdentifier = requestIdentifier;
  return builder->build()->send();
}

ConfigAnswer BackendRepository::requestConfig(const std::string& appID,
                                              const BackendMessage& message) {
  try {
    const Response response = exchange("/analytics/config", appID, message);
    // An answer without a body is no failure to tell of, but one whose body was refused is.
    if (response.statusCode == status::ok && (hasBody(response) || response.error)) {
      return {decodeBody<Config>(response), false};
    }
  } catch (const std::exception& error) {
    logError("[Backend Module] Can't create a config request. Error: ", error.what());
  }
  return {Config::defaulConfiguration(), true};
}

BackendIdentifiers::Outcome BackendRepository::requestIdentification(
    const std::string& appID, const BackendMessage& message) {
  Response response;
  try {
    response = exchange("/analytics/identification", appID, message);
  } catch (const std::exception& error) {
    return BackendIdentifiers::Error{
        std::string("[Backend Module] Can't build the backend identifiers request. Error: ") +
        error.what()};
  }
  switch (response.statusCode) {
    case status::ok:
      return decodeOutcome<BackendIdentifiers::Identifiers>(
          response, "[Backend Module] parse identifiers. Error:  ");
    case status::accepted:
      return decodeOutcome<BackendIdentifiers::RetryAfter>(
          response, "[Backend Module] parse retry parametr. Error:  ");
    case status::unprocessable:
      return BackendIdentifiers::DoNotRetry{};
    default:
      return BackendIdentifiers::Error{"[Backend Module] identifiers, unknown status code " +
                                       std::to_string(response.statusCode)};
  }
}

std::optional<PLRError> BackendRepository::sendAnalytics(
    const std::string& appID, const BackendMessage& message,
    const std::optional<std::string>& requestIdentifier) {
  try {
    const Response response = exchange("/analytics/report", appID, message, requestIdentifier);
    if (response.statusCode == status::ok) return std::nullopt;
    return PLRError("[Backend Module] Failed to send Report, status code: " +
                    std::to_string(response.statusCode));
  } catch (const std::exception& error) {
    logError("[Backend Module] Can't create a send report request. Error: ", error.what());
    return PLRError(error.what());
  }
}

PLRVerifyResponse BackendRepository::sendVerifyReceipt(const std::string& appID,
                                                       const BackendMessage& message) {
  try {
    const Response response = exchange("/verify/payment", appID, message);
    if (response.statusCode == status::ok) {
      return readReceiptResult(decodeBody<ReceiptResult>(response));
    }
    logError("[Backend Module] Failed to send a receipt, status code: ",
             std::to_string(response.statusCode));
    return VerifyResponseMaker::make(PLRReceiptStatus::serverError);
  } catch (const std::exception& error) {
    logError("[Backend Module] Can't create a request for receipt verification. Error: ",
             error.what());
    return VerifyResponseMaker::make(PLRReceiptStatus::internalError);
  }
}

std::optional<MessagingConfig> BackendRepository::requestMessagingConfig(
    const std::string& appID, const BackendMessage& message) {
  Response response;
  try {
    response = exchange("/messaging/config", appID, message);
  } catch (const std::exception& error) {
    logError("[Backend Module] Can't create messaging config request. Error: ", error.what());
    return std::nullopt;
  }
  // Whatever the status: an answer that can be read is an answer.
  return from<MessagingConfig>(response.data.value_or(""));
}

}  // namespace pelorino
