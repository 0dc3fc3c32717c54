// Command lines of pelorino-host, run on the whole library. The first line is the configuration
// that the backend answers.

#include <algorithm>
#include <boost/json.hpp>
#include <string>

#include "Arguments.h"
#include "Commands.h"
#include "FuzzedLibrary.h"
#include "Output.h"

namespace pelorino::host {

/// Answers are made and go nowhere.
void writeLine(const boost::json::object& line) {
  FUZZ_REQUIRE(!boost::json::serialize(line).empty());
}

}  // namespace pelorino::host

namespace pelorino::fuzz {
namespace {

/// The operations of the tool itself that would hold up or end the fuzzer, on virtual time. False
/// for any other line.
bool runHere(FuzzedLibrary& library, std::string_view line) {
  boost::system::error_code error;
  const auto value = boost::json::parse(line, error);
  const auto* object = error ? nullptr : value.if_object();
  const auto* op = object ? object->if_contains("op") : nullptr;
  const auto* name = op ? op->if_string() : nullptr;
  if (!name) return false;
  if (*name == "sleep") {
    const auto* span = object->if_contains("ms");
    library.advance(span && span->is_int64() ? span->get_int64() : 0);
    return true;
  }
  if (*name == "drain") library.system.runUntilIdle();
  return *name == "drain" || *name == "kill" || *name == "exit";
}

void run(FuzzedLibrary& library, std::string_view line) {
  if (runHere(library, line)) return;
  try {
    host::runCommand(line);
  } catch (const host::CommandError& error) {
    FUZZ_REQUIRE(*error.what() != '\0');
  }
}

std::string_view takeLine(std::string_view& lines) {
  const std::size_t end = std::min(lines.find('\n'), lines.size());
  const std::string_view line = lines.substr(0, end);
  lines.remove_prefix(std::min(end + 1, lines.size()));
  return line;
}

}  // namespace
}  // namespace pelorino::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelorino;
  std::string_view lines = fuzz::textOf(data, size);
  fuzz::FuzzedLibrary library;
  library.configuration = fuzz::takeLine(lines);
  while (!lines.empty()) fuzz::run(library, fuzz::takeLine(lines));
  library.system.runUntilIdle();
  return 0;
}
