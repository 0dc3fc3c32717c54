#include "JsonView.h"

#include <algorithm>

#include "JsonParser.h"
#include "PLRError.h"

namespace pelorino {
namespace {

// Limits the memory for one answer of the backend: a value takes about 150 bytes at most.
constexpr std::size_t maximumValues = std::size_t{1} << 17U;

}  // namespace

JsonView::JsonView(std::string_view text) {
  checkJson(text);
  constexpr std::string_view blanks = " \t\r\n";
  text.remove_suffix(text.size() - 1 - text.find_last_not_of(blanks));
  text_ = text.substr(text.find_first_not_of(blanks));
}

std::optional<std::string_view> JsonView::Scanner::next() {
  const std::size_t start = rest_.find_first_not_of(",: \t\r\n");
  if (start == std::string_view::npos) return std::nullopt;
  rest_.remove_prefix(start);
  if (rest_.front() == ']' || rest_.front() == '}') return std::nullopt;
  const std::size_t length = jsonValueLength(rest_);
  const std::string_view value = rest_.substr(0, length);
  rest_.remove_prefix(length);
  return value;
}

std::string JsonView::unquoted(std::string_view quoted) {
  if (quoted.find('\\') != std::string_view::npos) {  // Rare: only the parser knows the escapes.
    return *parseJson(quoted, 1).text();
  }
  return std::string(quoted.substr(1, quoted.size() - 2));
}

std::optional<JsonView> JsonView::find(std::string_view key) const {
  return JsonMembers(*this).find(key);
}

JsonMembers::JsonMembers(const JsonView& object) {
  object.forEachMember([this](std::string key, const JsonView& value) {
    members_.emplace_back(std::move(key), value);
  });
}

std::optional<JsonView> JsonMembers::find(std::string_view key) const {
  // From the end: if a key is there twice, the last one wins.
  const auto found = std::find_if(members_.rbegin(), members_.rend(),
                                  [key](const auto& member) { return member.first == key; });
  if (found == members_.rend()) return std::nullopt;
  return found->second;
}

AnyCodable JsonView::value() const {
  return parseJson(text_, maximumValues);
}

bool isJsonObject(std::string_view text) {
  try {
    return JsonView(text).isObject();
  } catch (const PLRError&) {
    return false;
  }
}

}  // namespace pelorino
