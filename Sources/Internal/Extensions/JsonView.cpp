#include "JsonView.h"

#include <algorithm>

#include "JsonParser.h"
#include "PLRError.h"

namespace pelorino {
namespace {

// Limits the memory for one answer of the backend: a value takes about 150 bytes at most.
constexpr std::size_t maximumValues = std::size_t{1} << 17U;

// The next functions need not look for the end of the text. It has been checked: every quotation
// mark and every bracket has its partner.

/// Length of the quoted text that `json` begins with.
std::size_t quotedLength(std::string_view json) {
  std::size_t end = 1;
  while (json[end] != '"') end += json[end] == '\\' ? 2U : 1U;
  return end + 1;
}

/// Length of the list or object that `json` begins with.
std::size_t bracketedLength(std::string_view json) {
  std::size_t depth = 0;
  std::size_t end = 0;
  do {
    const char c = json[end];
    if (c == '"') {
      end += quotedLength(json.substr(end));
      continue;
    }
    if (c == '{' || c == '[') ++depth;
    if (c == '}' || c == ']') --depth;
    ++end;
  } while (depth > 0);
  return end;
}

/// Length of the value that `json` begins with. Works for valid JSON only.
std::size_t valueLength(std::string_view json) {
  if (json.front() == '"') return quotedLength(json);
  if (json.front() == '{' || json.front() == '[') return bracketedLength(json);
  return std::min(json.find_first_of(",:]} \t\r\n"), json.size());
}

}  // namespace

JsonView::JsonView(std::string_view text) {
  checkJson(text, maximumDepth);
  constexpr std::string_view blanks = " \t\r\n";
  text.remove_suffix(text.size() - 1 - text.find_last_not_of(blanks));
  text_ = text.substr(text.find_first_not_of(blanks));
}

std::optional<std::string_view> JsonView::Scanner::next() {
  const std::size_t start = rest_.find_first_not_of(",: \t\r\n");
  if (start == std::string_view::npos) return std::nullopt;
  rest_.remove_prefix(start);
  if (rest_.front() == ']' || rest_.front() == '}') return std::nullopt;
  const std::size_t length = valueLength(rest_);
  const std::string_view value = rest_.substr(0, length);
  rest_.remove_prefix(length);
  return value;
}

std::string JsonView::unquoted(std::string_view quoted) {
  if (quoted.find('\\') != std::string_view::npos) {  // Rare: only the parser knows the escapes.
    return *parseJson(quoted, maximumDepth, 1).text();
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
  std::optional<JsonView> found;
  // To the end, also after a match: the key may be there twice.
  for (const auto& [name, value] : members_) {
    if (name != key) continue;
    if (found) throw PLRError("The key " + std::string(key) + " stands twice");
    found = value;
  }
  return found;
}

AnyCodable JsonView::value() const {
  return parseJson(text_, maximumDepth, maximumValues);
}

bool isJsonObject(std::string_view text) {
  try {
    return JsonView(text).isObject();
  } catch (const PLRError&) {
    return false;
  }
}

}  // namespace pelorino
