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

/// The unit of delivery: one row of the table `reports`, one request, one success or failure.
///
/// Its packages are kept as the JSON text that goes out, since a report may wait through many
/// attempts. The text of a row, which may hold anything, is read when the report is first sent.
///
/// Threads: the incomeQueue; while a batch is under way the network queue alone.
class Report final {
 public:
  /// A report made in memory. `id` becomes its `uuid`.
  Report(const std::vector<Package>& with, std::string id);

  /// A report that is to be filled from its row: without a `uuid` so far.
  Report() = default;

  std::int64_t idKey = -1;
  std::int64_t userId = -1;  ///< `idKey` of the owning user.
  /// As read from the row, until the report is first sent; absent when made in memory, and where
  /// only the rest of the row has been read.
  std::optional<std::string> packagesJson;
  std::string uuid;  ///< 36 characters; names the report in the log and is never sent.
  std::optional<std::string> appKey;       ///< Filled just before sending.
  std::optional<Identifiers> identifiers;  ///< Filled just before sending.

  /// False where they still have to be read from the row.
  [[nodiscard]] bool hasPackages() const { return body_ || packagesJson; }

  /// The body of the request that delivers this report alone. The same text at each attempt; a row
  /// that holds no packages is delivered without any.
  [[nodiscard]] const JsonText& body();

  /// The packages as the row holds them.
  [[nodiscard]] std::optional<std::string> stored() const;

 private:
  JsonText body_;
};

/// The outermost JSON object of a delivery.
struct Reports {
  std::vector<std::shared_ptr<Report>> reports;

  [[nodiscard]] JsonText json() const;
};

}  // namespace pelorino
