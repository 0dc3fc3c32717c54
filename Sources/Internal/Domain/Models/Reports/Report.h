#pragma once

#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "Encodable.h"
#include "Identifiers.h"
#include "JsonCoding.h"

namespace pelorino {

/// Events, and the data that they have in common. Its JSON is frozen: it is sent as it is, and the
/// table of reports holds it.
struct Package {
  std::optional<std::string> language;
  std::optional<std::string> appVersion;
  std::optional<std::string> appBuildVersion;
  std::string sdkVersion;
  std::int64_t sdkCodeVersion = 0;
  std::optional<std::string> bundle;
  static constexpr std::string_view engine = "Unreal";
  /// The JSON text of each event, in their order.
  std::optional<std::vector<std::string>> events;

  /// All fields except the events.
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

/// Writes the events as JSON objects. An event whose text is not a JSON object is written as {}, so
/// that the list keeps its length.
void encode(JsonWriter& json, const Package& package);

/// Reads the events as texts. If they are not a list of objects, the package gets none. Any other
/// error throws PLRError.
void decode(const JsonView& json, Package& package);

/// The unit of delivery: one row of the table `reports`, one request, one success or failure.
///
/// It keeps the JSON text that is sent, because it may be sent many times until it is accepted. A
/// row may hold any text; it is checked when the report is first sent.
///
/// Threads: one at a time. The incomeQueue, except while a network queue sends it.
class Report final {
 public:
  /// A new report. `id` becomes its `uuid`.
  Report(const std::vector<Package>& with, std::string id);

  /// A report to be filled from its row. It has no `uuid` yet.
  Report() = default;

  std::int64_t idKey = -1;
  std::int64_t userId = -1;  ///< `idKey` of the owning user.
  /// The packages as read from the row. Absent for a new report, after body(), and while the
  /// packages have not been read from the row.
  std::optional<std::string> packagesJson;
  std::string uuid;                   ///< 36 characters. Names the report in the log; never sent.
  std::optional<std::string> appKey;  ///< Filled just before sending.
  std::optional<Identifiers> identifiers;  ///< Filled just before sending.

  /// False if the packages must still be read from the row.
  [[nodiscard]] bool hasPackages() const { return body_ || packagesJson; }

  /// The body of a request that delivers this report alone. It is the same text each time. If the
  /// row's text cannot be decoded, the body has no packages.
  [[nodiscard]] const JsonText& body();

  /// The packages as they are stored in the row.
  [[nodiscard]] std::optional<std::string> stored() const;

 private:
  JsonText body_;
};

/// The JSON object of a request that delivers reports.
struct Reports {
  std::vector<std::shared_ptr<Report>> reports;

  [[nodiscard]] JsonText json() const;
};

}  // namespace pelorino
