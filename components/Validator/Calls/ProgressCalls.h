#pragma once

#include <cstdint>
#include <optional>
#include <string>

#include "Call.h"
#include "Resources.h"

// How far the player has come.

namespace pelorino {

struct LevelUpCall;
struct CurrentBalanceCall;
struct TutorialCall;
struct StartProgressionEventCall;
struct FinishProgressionEventCall;

namespace ValidatorRules {
[[nodiscard]] std::optional<LevelUpCall> validateLevelUp(LevelUpCall call);
[[nodiscard]] std::optional<CurrentBalanceCall> validateCurrentBalance(CurrentBalanceCall call);
[[nodiscard]] std::optional<TutorialCall> validateTutorial(TutorialCall call);
[[nodiscard]] std::optional<StartProgressionEventCall> validateStartProgressionEvent(
    StartProgressionEventCall call);
[[nodiscard]] std::optional<FinishProgressionEventCall> validateFinishProgressionEvent(
    FinishProgressionEventCall call);
}  // namespace ValidatorRules

struct LevelUpCall {
  std::int64_t level = 0;
  Resources balances;

  static constexpr const char* label = "levelUp(_:_:)";
  static constexpr auto rule = ValidatorRules::validateLevelUp;
  static constexpr auto exclusion = Exclusion::ofEvent("lu");
};

struct CurrentBalanceCall {
  Resources balance;

  static constexpr const char* label = "currentBalance(_:)";
  static constexpr auto rule = ValidatorRules::validateCurrentBalance;
  static constexpr auto exclusion = Exclusion::ofEvent("cb");
};

struct TutorialCall {
  std::int64_t step = 0;

  static constexpr const char* label = "tutorial(_:)";
  static constexpr auto rule = ValidatorRules::validateTutorial;
  static constexpr auto exclusion = Exclusion::withGiven("tr", &TutorialCall::step);
};

struct PLRStartProgressionEventParametersLocal {
  std::optional<std::int64_t> difficulty;
  std::optional<std::string> source;
};

struct StartProgressionEventCall {
  std::string eventName;
  PLRStartProgressionEventParametersLocal parameters;

  static constexpr const char* label = "startProgressionEvent(_:_:)";
  static constexpr auto rule = ValidatorRules::validateStartProgressionEvent;
  static constexpr auto exclusion =
      Exclusion::withGiven("pe", &StartProgressionEventCall::eventName);
};

struct PLRFinishProgressionEventParametersLocal {
  bool successfulCompletion = false;
  std::int64_t duration = 0;  ///< Seconds; 0 leaves it to the clock.
  Resources spent;
  Resources earned;
};

struct FinishProgressionEventCall {
  std::string eventName;
  PLRFinishProgressionEventParametersLocal parameters;

  static constexpr const char* label = "finishProgressionEvent(_:_:)";
  static constexpr auto rule = ValidatorRules::validateFinishProgressionEvent;
  static constexpr auto exclusion =
      Exclusion::withGiven("pe", &FinishProgressionEventCall::eventName);
};

}  // namespace pelorino
