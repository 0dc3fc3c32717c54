// The JSON reader: what it takes for JSON, what it reads, and what is written of that.

#include <optional>
#include <set>

#include "Fuzz.h"
#include "JsonHelpers.h"
#include "JsonParser.h"
#include "PlainJsonReader.h"
#include "Text.h"

namespace pelorino::fuzz {
namespace {

std::optional<JsonView> viewOf(std::string_view text) {
  try {
    return JsonView(text);
  } catch (const PLRError&) {
    return std::nullopt;
  }
}

std::optional<AnyCodable> valueOf(const JsonView& view) {
  try {
    return view.value();
  } catch (const PLRError&) {
    return std::nullopt;
  }
}

/// Puts the value together from looks at its parts. Absent when the reader must refuse it: a number
/// is beyond a double.
class Assembler final {
 public:
  std::optional<AnyCodable> value(const JsonView& view) {
    ++count;
    if (view.isObject()) return object(view);
    if (view.isList()) return list(view);
    return valueOf(view);
  }

  std::size_t count = 0;

 private:
  std::optional<AnyCodable> list(const JsonView& view) {
    bool good = true;
    AnyCodable::List items;
    view.forEachElement([&](const JsonView& element) {
      const auto item = value(element);
      good = good && item;
      if (item) items.push_back(*item);
    });
    if (!good) return std::nullopt;
    return AnyCodable(std::move(items));
  }

  std::optional<AnyCodable> object(const JsonView& view) {
    bool good = true;
    AnyCodable::Object members;
    view.forEachMember([&](const std::string& key, const JsonView& member) {
      const auto item = value(member);
      good = good && item;
      if (item) members.insert_or_assign(key, *item);
    });
    if (!good) return std::nullopt;
    for (const auto& [key, member] : members) {
      const auto found = view.find(key);
      FUZZ_REQUIRE(found && encodeJson(found->value()) == encodeJson(member));
    }
    return AnyCodable(std::move(members));
  }
};

bool isRefused(std::string_view text, std::size_t maximumValues) {
  try {
    (void)parseJson(text, maximumValues);
    return false;
  } catch (const PLRError&) {
    return true;
  }
}

void checkValue(const JsonView& view) {
  Assembler assembler;
  const auto assembled = assembler.value(view);
  const auto value = valueOf(view);
  FUZZ_REQUIRE(value.has_value() == assembled.has_value());
  if (!value) return;
  FUZZ_REQUIRE(!isRefused(view.text(), assembler.count));
  FUZZ_REQUIRE(isRefused(view.text(), assembler.count - 1));

  const std::string written = encodeJson(*value);
  FUZZ_REQUIRE(encodeJson(*assembled) == written);
  // A fraction that a double cannot hold is gone when the number is written, which makes it an
  // integer: 7440744693162310.1.
  const std::string again = encodeJson(JsonView(written).value());
  FUZZ_REQUIRE(encodeJson(JsonView(again).value()) == again);
  FUZZ_REQUIRE(encodeJson(JsonView(indentedJson(view.text())).value()) == written);
}

}  // namespace
}  // namespace pelorino::fuzz

int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  using namespace pelorino;
  const std::string_view text = fuzz::textOf(data, size);
  const auto view = fuzz::viewOf(text);
  fuzz::PlainJsonReader reader(text, maximumJsonDepth);
  const bool isOneValue = reader.isOneValue();
  if (reader.hasSkipped()) {
    FUZZ_REQUIRE(isOneValue || !view);
    FUZZ_REQUIRE(!view || !fuzz::valueOf(*view));
    return 0;
  }
  const bool isJson = isOneValue && repairUtf8(std::string(text)) == text;
  FUZZ_REQUIRE(view.has_value() == isJson || reader.hasHugeExponent());
  if (view) fuzz::checkValue(*view);
  return 0;
}
