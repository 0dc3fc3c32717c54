// What an earlier generation may have left in its archive. An input is taken for a file, and for
// the choices by which an archive is made whose objects are of the right classes, and refer to each
// other in any way.

#include "Fuzz.h"
#include "LegacyArchive.h"
#include "LegacyChecks.h"

namespace pelorino::fuzz {
namespace {

LegacyArchive::Value anyValue(FuzzedDataProvider& choices) {
  switch (choices.ConsumeIntegralInRange(0, 5)) {
    case 0:
      return choices.ConsumeBool();
    case 1:
      return choices.ConsumeIntegral<std::int64_t>();
    case 2:
      return choices.ConsumeFloatingPoint<double>();
    case 3:
      return choices.ConsumeRandomLengthString(8);
    case 4:
      return std::vector<LegacyArchive::Reference>(
          choices.ConsumeIntegralInRange<std::size_t>(0, 3),
          choices.ConsumeIntegral<std::uint8_t>());
    default:
      return std::uint64_t{choices.ConsumeIntegralInRange<std::uint8_t>(0, 60)};
  }
}

/// Objects with references to any of them, also to those that come later.
std::string archiveOf(FuzzedDataProvider& choices) {
  static constexpr const char* classes[] = {"UsersStorages", "DataStorage",  "PlayerPreferences",
                                            "NSArray",       "NSDictionary", "NSNull",
                                            "NSString",      "NSNumber",     "NSMutableDictionary"};
  static constexpr const char* fields[] = {
      "activeUser", "dataStorages",   "trackingAvailable",   "level",       "userId",
      "prevId",     "transactionIds", "tutorCompletedSteps", "preferences", "NS.keys",
      "NS.objects", "$class",         "playerPreferences"};
  LegacyArchive archive;
  for (int count = choices.ConsumeIntegralInRange(1, 30); count > 0; --count) {
    if (choices.ConsumeBool()) {
      archive.add(anyValue(choices));
      continue;
    }
    LegacyArchive::Fields held;
    for (int more = choices.ConsumeIntegralInRange(0, 7); more > 0; --more) {
      held[choices.PickValueInArray(fields)] = anyValue(choices);
    }
    archive.add(choices.PickValueInArray(classes), held);
  }
  return archive.bytes(choices.ConsumeIntegralInRange<std::uint64_t>(0, 60), choices.ConsumeBool());
}

void check(std::string_view archive) {
  MemoryPeak::reset();
  try {
    checkMigration(migrationObjectOf(archive));
  } catch (const LegacyDataError& error) {
    FUZZ_REQUIRE(*error.what() != '\0');
  }
  checkCost();
}

}  // namespace
}  // namespace pelorino::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelorino::fuzz;
  check(textOf(data, size));
  FuzzedDataProvider choices(data, size);
  check(archiveOf(choices));
  return 0;
}
