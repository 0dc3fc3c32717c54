#pragma once

#include <optional>
#include <utility>

#include "AnyCodable.h"
#include "Validator.h"

// The public operations, told once. A call is a plain record of what its operation takes: copied
// from the host's values on the caller's thread, carried out on the incomeQueue. Beside its values
// it holds what AnalyticsProxy needs to know of it:
//
//   label      what log lines call the operation;
//   rule       returns the repaired call, or nothing to reject it;
//   exclusion  how the backend may switch it off.
//
// A query is the record of an operation that answers: the type of its answer, its label, and what a
// library that has not been started answers.

namespace pelorino {

/// For a call without a rule.
inline constexpr auto noRule = [](auto call) { return std::optional(std::move(call)); };

/// Which exclusion of the backend stops a call: that of its event, or that of its event with one
/// value of the call. An exclusion takes the original call and returns a closure that judges the
/// repaired one. So the rule can take the call itself instead of a copy.
///
/// Threads: the incomeQueue.
class Exclusion final {
 public:
  Exclusion() = delete;

  static constexpr auto never = [](const auto&) { return [](const auto&) { return false; }; };

  static constexpr auto ofEvent(const char* code) {
    return
        [code](const auto&) { return [code](const auto&) { return Validator::isExcluded(code); }; };
  }

  /// With the value as the host gave it.
  template <class Call, class Value>
  static constexpr auto withGiven(const char* code, Value Call::*value) {
    return [code, value](const Call& call) {
      return [code, given = AnyCodable(call.*value)](const Call&) {
        return Validator::isExcluded(code, given);
      };
    };
  }

  /// With the value as the rule has repaired it.
  template <class Call, class Value>
  static constexpr auto withRepaired(const char* code, Value Call::*value) {
    return [code, value](const Call&) {
      return [code, value](const Call& repaired) {
        return Validator::isExcluded(code, AnyCodable(repaired.*value));
      };
    };
  }
};

}  // namespace pelorino
