#include "Rules.h"

namespace pelorino {

using Kind = Record::Kind;

namespace {
constexpr const char* verification = "antiCheat.verifyPayment";
constexpr const char* categories = "eventsRouter.getMessagingCategories";
}  // namespace

void AnswerRule::onRecord(const Record& record, View& view) {
  const std::string& name = record.text(1);
  if (record.kind == Kind::hostCall) {
    if (name == "destroySDK") teardowns_.insert(record.text(0));
    // What is called before a teardown takes effect goes with the front that took the call.
    const bool isDropped = name == categories && !teardowns_.empty();
    if ((name == verification || name == categories) && !isDropped) due_[record.text(0)] = name;
  }
  if (record.kind == Kind::callBegins) teardowns_.erase(record.text(0));
  const bool isRefused =
      record.kind == Kind::log &&
      record.text(0).starts_with("ERROR In the getPushCategories(_:) method an error");
  if (isRefused && view.call) due_.erase(view.call->number);
  if (record.kind == Kind::request && record.text(0).ends_with("/verify/payment")) {
    const auto body = boost::json::parse(record.text(1));
    asked_ = boost::json::value_to<std::string>(body.at("receipt").at("receipt-data"));
    isAnswered_ = record.text(3) == "answered";
  }
  if (record.kind == Kind::answer) {
    const auto due = due_.find(record.text(0));
    if (due == due_.end()) return view.fail("a handler is called twice: " + record.text(0));
    if (due->second == verification) checkReceipt(record, view);
    due_.erase(due);
  }
  view.failIf(record.kind == Kind::settled && !due_.empty(),
              "a handler is never called: " + (due_.empty() ? "" : due_.begin()->second));
}

void AnswerRule::checkReceipt(const Record& answer, const View& view) const {
  const std::string& status = answer.text(1);
  const bool isValid = status == "Receipt valid" && answer.text(2) == asked_;
  const bool isOwn = answer.text(0) == asked_;
  const bool isRight = !isOwn        ? status == "Receipt internal error"
                       : isAnswered_ ? isValid || status == "Receipt internal error"
                                     : status == "Receipt server error";
  view.failIf(!isRight, "the receipt " + answer.text(0) + " is answered with " + status);
}

}  // namespace pelorino
