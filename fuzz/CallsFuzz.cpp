// Operations in any order with any arguments, on the whole library. They and the form of their
// arguments are those of the table of commands.

#include <boost/json.hpp>
#include <string>

#include "Commands.h"
#include "FuzzedLibrary.h"
#include "Output.h"

namespace pelorino::host {

void writeLine(const boost::json::object& line) {
  const std::string_view op = line.at("op").as_string();
  if (op == "getDeviceId") FUZZ_REQUIRE(line.at("result").as_string().size() <= 64);
  if (op == "getCurrentLevel") FUZZ_REQUIRE(line.at("result").as_int64() >= 1);
}

}  // namespace pelorino::host

namespace pelorino::fuzz {
namespace {

namespace json = boost::json;

class Script final {
 public:
  Script(const std::uint8_t* data, std::size_t size) : input_(data, size) {
    library_.configuration = input_.ConsumeRandomLengthString();
    library_.identifiers = input_.ConsumeRandomLengthString();
    if (input_.ConsumeBool()) PLRAnalytics::initialize("key");
  }

  void run() {
    while (input_.remaining_bytes() > 0) step();
    library_.system.runUntilIdle();
  }

 private:
  void step() {
    switch (input_.ConsumeIntegralInRange(0, 19)) {
      case 0:
        return library_.advance(input_.ConsumeIntegralInRange(0, 60 * 60 * 1000));
      case 1:
        return library_.system.setTime(
            input_.ConsumeIntegralInRange<std::int64_t>(1'000'000'000'000, 9'000'000'000'000));
      case 2:
        return library_.system.runUntilIdle();
      case 3:
        library_.status = input_.PickValueInArray({200, 202, 422, 400, 500});
        return;
      default:
        return call();
    }
  }

  template <class Entries>
  const auto& pick(const Entries& entries) {
    const auto index = input_.ConsumeIntegralInRange<std::size_t>(0, entries.size() - 1);
    return *std::next(entries.begin(), static_cast<std::ptrdiff_t>(index));
  }

  void call() {
    const auto& [op, command] = pick(host::libraryCommands());
    const json::object& sample = pick(command.samples);
    const bool isAsGiven = input_.ConsumeBool();
    const json::object fields = isAsGiven ? sample : altered(sample);
    try {
      command.run(op, host::Arguments(fields));
    } catch (const host::CommandError&) {
      // A field that must be there has gone, or a name means nothing.
    }
  }

  // ---- Arguments of the sample's form ----

  json::value altered(const json::value& sample) {
    if (const auto* fields = sample.if_object()) return altered(*fields);
    if (const auto* elements = sample.if_array()) {
      json::array list;
      for (int i = input_.ConsumeIntegralInRange(0, 3); i > 0; --i) {
        list.push_back(altered(elements->front()));
      }
      return list;
    }
    if (input_.ConsumeBool()) return sample;
    if (sample.is_string()) return json::value(input_.ConsumeRandomLengthString(300));
    if (sample.is_bool()) return input_.ConsumeBool();
    if (sample.is_double()) return input_.ConsumeFloatingPoint<double>();
    return input_.ConsumeBool() ? input_.ConsumeIntegralInRange<std::int64_t>(-2, 10)
                                : input_.ConsumeIntegral<std::int64_t>();
  }

  /// Any field may be missing, or stand once more under a key that the host has made up.
  json::object altered(const json::object& sample) {
    json::object fields;
    for (const auto& [name, value] : sample) {
      const int choice = input_.ConsumeIntegralInRange(0, 7);
      if (choice > 0) fields.insert_or_assign(name, altered(value));
      if (choice > 5) {
        fields.insert_or_assign(input_.ConsumeRandomLengthString(300), altered(value));
      }
    }
    return fields;
  }

  FuzzedDataProvider input_;
  FuzzedLibrary library_;
};

}  // namespace
}  // namespace pelorino::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  pelorino::fuzz::Script(data, size).run();
  return 0;
}
