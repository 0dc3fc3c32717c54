// What an earlier generation of the engine's library may have left in its JSON file.

#include "Fuzz.h"
#include "LegacyChecks.h"

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelorino;
  fuzz::MemoryPeak::reset();
  try {
    fuzz::checkMigration(migrationObjectOfJson(fuzz::textOf(data, size)));
  } catch (const PLRError& error) {
    FUZZ_REQUIRE(!error.description().empty());
  }
  fuzz::checkCost();
  return 0;
}
