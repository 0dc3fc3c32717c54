#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "JsonCoding.h"

namespace pelorino {

/// Events with the metadata that they share. Its JSON is frozen: it is both the wire form and what
/// the table of reports holds.
struct Package {
  std::optional<std::string> language;
  std::optional<std::string> appVersion;
  std::optional<std::string> appBuildVersion;
  std::string sdkVersion;
  std::int64_t sdkCodeVersion = 0;
  std::optional<std::string> bundle;
  static constexpr std::string_view engine = "Unreal";
  /// The stored JSON text of each event, in the order of the events.
  std::optional<std::vector<std::string>> events;

  /// All fields but the events.
  template <class Self, class Visit>
  static void describe(Self& self, Visit& visit) {
    visit(Field("language").nullWhenAbsent(), self.language);
    visit(Field("appVersion").nullWhenAbsent(), self.appVersion);
    visit(Field("appBuildVersion").nullWhenAbsent(), self.appBuildVersion);
    visit("sdkVersion", self.sdkVersion);
    visit("sdkCodeVersion", self.sdkCodeVersion);
    visit(Field("bundle").nullWhenAbsent(), self.bundle);
    visit("engine", engine);
  }
};

/// The events go out as JSON objects; one whose text is no JSON object goes out as {}, so that the
/// list keeps its length.
void encode(JsonWriter& json, const Package& package);

/// The events come back as the texts that were put in. Where they are no list of objects, the
/// package has none; any other fault throws PLRError.
void decode(const JsonView& json, Package& package);

}  // namespace pelorino
