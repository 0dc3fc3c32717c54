#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "JsonCoding.h"
#include "PeopleValueType.h"

namespace pelorino {

/// What is taken over of an earlier generation of the library: one user of one application key.
struct MigrationObject {
  std::optional<std::string> deviceId;      ///< For the log only.
  std::optional<std::string> prevDeviceId;  ///< For the log only.
  std::optional<std::string> userId;
  std::optional<std::string> prevUserId;
  bool trackingAvailable = false;
  std::optional<std::int64_t> level;
  PeopleProperties userCard;
  std::vector<std::string> transactionIds;
  std::vector<std::int64_t> tutorCompletedSteps;

  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit("deviceId", self.deviceId);
    visit("prevDeviceId", self.prevDeviceId);
    visit("userId", self.userId);
    visit("prevUserId", self.prevUserId);
    visit("trackingAvailable", self.trackingAvailable);
    visit("level", self.level);
    visit("userCard", self.userCard);
    visit("transactionIds", self.transactionIds);
    visit("tutorCompletedSteps", self.tutorCompletedSteps);
  }

  /// The object for the log, a line for each value.
  [[nodiscard]] std::string description() const;
};

/// Lists and objects among the values are dropped.
void decode(const JsonView& json, PeopleProperties& properties);

}  // namespace pelorino
