#include "BackendRepository.h"

#include <algorithm>
#include <cstddef>
#include <string>
#include <string_view>
#include <utility>

#include "JsonHelpers.h"
#include "Logger.h"

namespace pelorino {
namespace {

using Identification = BackendIdentifiers::Outcome;
using ReportFailure = std::optional<PLRError>;
using Categories = std::optional<MessagingConfig>;

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

ConfigAnswer defaultConfig() {
  return {Config::defaulConfiguration(), true};
}

ConfigAnswer readConfig(const Response& response) {
  // An answer without a body is no failure to tell of, but one whose body was refused is.
  if (!hasBody(response) && !response.error) return defaultConfig();
  return {decodeBody<Config>(response), false};
}

/// The value in the body, or the error that starts with `failure`.
template <class Value>
Identification readIdentification(const Response& response, const char* failure) {
  try {
    return decodeBody<Value>(response);
  } catch (const std::exception& error) {
    return BackendIdentifiers::Error{std::string(failure) + error.what()};
  }
}

PLRVerifyResponse readReceiptResult(const Response& response) {
  auto result = decodeBody<ReceiptResult>(response);
  const auto status = result.status && *result.status >= 0 && *result.status <= 4
                          ? PLRReceiptStatusFromRaw(static_cast<int>(*result.status))
                          : std::nullopt;
  PLRVerifyResponse verified = VerifyResponseMaker::make(
      status.value_or(PLRReceiptStatus::internalError), std::move(result.verificationResult));
  if (status) {
    Logger::writeLog(PLRLogLevel::info, [&] {
      return "[Backend Module] Receipt verification result: \n\t" + verified.description();
    });
  } else {
    Logger::writeLog(PLRLogLevel::error, "[Backend Module] Can't parse verification data");
  }
  return verified;
}

}  // namespace

constinit const Endpoint<Versions, ConfigAnswer> BackendRepository::requestConfig{
    .path = "/analytics/config",
    .accepted = {{{status::ok, readConfig}}},
    .otherwise = [](const Response&) { return defaultConfig(); },
    .failed =
        [](const std::exception& error) {
          logError("[Backend Module] Can't create a config request. Error: ", error.what());
          return defaultConfig();
        },
};

constinit const Endpoint<BackendIdentifiers::Attempt, Identification>
    BackendRepository::requestIdentification{
        .path = "/analytics/identification",
        .accepted = {{
            {status::ok,
             [](const Response& response) {
               return readIdentification<BackendIdentifiers::Identifiers>(
                   response, "[Backend Module] parse identifiers. Error:  ");
             }},
            {status::accepted,
             [](const Response& response) {
               return readIdentification<BackendIdentifiers::RetryAfter>(
                   response, "[Backend Module] parse retry parametr. Error:  ");
             }},
            {status::unprocessable,
             [](const Response&) -> Identification { return BackendIdentifiers::DoNotRetry{}; }},
        }},
        .otherwise = [](const Response& response) -> Identification {
          return BackendIdentifiers::Error{"[Backend Module] identifiers, unknown status code " +
                                           std::to_string(response.statusCode)};
        },
        .failed = [](const std::exception& error) -> Identification {
          return BackendIdentifiers::Error{
              std::string("[Backend Module] Can't build the backend identifiers request. Error: ") +
              error.what()};
        },
    };

constinit const Endpoint<Reports, ReportFailure> BackendRepository::sendAnalytics{
    .path = "/analytics/report",
    .accepted = {{{status::ok, [](const Response&) -> ReportFailure { return std::nullopt; }}}},
    .otherwise = [](const Response& response) -> ReportFailure {
      return PLRError("[Backend Module] Failed to send Report, status code: " +
                      std::to_string(response.statusCode));
    },
    .failed = [](const std::exception& error) -> ReportFailure {
      logError("[Backend Module] Can't create a send report request. Error: ", error.what());
      return PLRError(error.what());
    },
};

constinit const Endpoint<Receipt, PLRVerifyResponse> BackendRepository::sendVerifyReceipt{
    .path = "/verify/payment",
    .accepted = {{{status::ok, readReceiptResult}}},
    .otherwise =
        [](const Response& response) {
          logError("[Backend Module] Failed to send a receipt, status code: ",
                   std::to_string(response.statusCode));
          return VerifyResponseMaker::make(PLRReceiptStatus::serverError);
        },
    .failed =
        [](const std::exception& error) {
          logError("[Backend Module] Can't create a request for receipt verification. Error: ",
                   error.what());
          return VerifyResponseMaker::make(PLRReceiptStatus::internalError);
        },
};

constinit const Endpoint<MessagingRequestObject, Categories>
    BackendRepository::requestMessagingConfig{
        .path = "/messaging/config",
        .accepted = {},
        // Whatever the status: an answer that can be read is an answer.
        .otherwise = [](const Response& response) -> Categories {
          try {
            return decodeBody<MessagingConfig>(response);
          } catch (const PLRError&) {
            return std::nullopt;
          }
        },
        .failed = [](const std::exception& error) -> Categories {
          logError("[Backend Module] Can't create messaging config request. Error: ", error.what());
          return std::nullopt;
        },
    };

}  // namespace pelorino
