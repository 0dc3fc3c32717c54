// What the backend answers. An input is the endpoint's letter, three digits of status, the body.

#include <algorithm>

#include "BackendRepository.h"
#include "Fuzz.h"
#include "JsonHelpers.h"

namespace pelorino::fuzz {
namespace {

class FixedExchange final : public HttpExchange {
 public:
  [[nodiscard]] bool isValidUrl(const std::string&) const override { return true; }
  [[nodiscard]] HttpResponse perform(const HttpRequest&) override { return answer; }

  HttpResponse answer;
};

/// What is read must be written so that the same is read again.
template <class Value>
void checkRoundTrip(const Value& value) {
  const std::string written = encodeJson(value);
  const auto again = from<Value>(written);
  FUZZ_REQUIRE(again && encodeJson(*again) == written);
}

class Answers final {
 public:
  Answers(int status, std::string body) : status_(status), body_(std::move(body)) {
    http_.answer = {.status = status, .body = body_, .error = {}};
  }

  void checkConfiguration() {
    const ConfigAnswer answer = ask(BackendRepository::requestConfig);
    const auto expected = status_ == 200 ? readable<Config>() : std::nullopt;
    FUZZ_REQUIRE(answer.isDefault == !expected);
    if (expected) FUZZ_REQUIRE(encodeJson(answer.config) == encodeJson(*expected));
    checkRoundTrip(answer.config);
  }

  void checkIdentifiers() {
    const auto outcome = ask(BackendRepository::requestIdentification);
    const auto* identifiers = std::get_if<BackendIdentifiers::Identifiers>(&outcome);
    const auto* retry = std::get_if<BackendIdentifiers::RetryAfter>(&outcome);
    FUZZ_REQUIRE((identifiers != nullptr) ==
                 (status_ == 200 && readable<BackendIdentifiers::Identifiers>()));
    FUZZ_REQUIRE((retry != nullptr) ==
                 (status_ == 202 && readable<BackendIdentifiers::RetryAfter>()));
    if (identifiers) {
      checkRoundTrip(*identifiers);
      (void)identifiers->description();
    }
    if (retry) checkRoundTrip(*retry);
  }

  void checkReceipt() {
    const PLRVerifyResponse answer = ask(BackendRepository::sendVerifyReceipt);
    const auto expected = readable<ReceiptResult>();
    if (status_ != 200) {
      FUZZ_REQUIRE(answer.receiptStatus() == PLRReceiptStatus::serverError);
    } else if (expected) {
      checkRoundTrip(*expected);
      FUZZ_REQUIRE(answer.verificationResult() == expected->verificationResult);
      const bool isKnown = expected->status.value_or(-1) >= 0 && *expected->status <= 4;
      FUZZ_REQUIRE(static_cast<int>(answer.receiptStatus()) == (isKnown ? *expected->status : 4));
    } else {
      FUZZ_REQUIRE(answer.receiptStatus() == PLRReceiptStatus::internalError);
    }
    FUZZ_REQUIRE(!answer.description().empty());
  }

  void checkCategories() {
    const auto answer = ask(BackendRepository::requestMessagingConfig);
    const auto expected = from<MessagingConfig>(body_);
    FUZZ_REQUIRE(answer.has_value() == expected.has_value());
    if (answer) checkRoundTrip(answer->categories);
  }

 private:
  template <class Request, class Answer>
  [[nodiscard]] Answer ask(const Endpoint<Request, Answer>& endpoint) {
    return backend_.ask(endpoint, "key", {}, {}).answer;
  }

  /// The body's value where the backend's answer to the library counts as one.
  template <class Value>
  [[nodiscard]] std::optional<Value> readable() const {
    if (body_.empty() || std::ranges::count(body_, ',') >= 100'000) return std::nullopt;
    return from<Value>(body_);
  }

  int status_;
  std::string body_;
  FixedExchange http_;
  Backend backend_{http_};
};

}  // namespace
}  // namespace pelorino::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelorino;
  fuzz::makeAllLogLines();
  constexpr std::size_t head = 4;
  if (size < head) return 0;
  const std::string status(fuzz::textOf(data + 1, head - 1));
  fuzz::Answers answers(std::atoi(status.c_str()),
                        std::string(fuzz::textOf(data + head, size - head)));
  switch (data[0]) {
    case 'c':
      answers.checkConfiguration();
      break;
    case 'i':
      answers.checkIdentifiers();
      break;
    case 'r':
      answers.checkReceipt();
      break;
    case 'm':
      answers.checkCategories();
      break;
    default:
      return -1;  // Not worth keeping.
  }
  return 0;
}
