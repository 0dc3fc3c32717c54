#include "JsonParser.h"

#include <algorithm>
#include <array>
#include <boost/json/basic_parser_impl.hpp>
// Compiles Boost.JSON, here and nowhere else.
#include <boost/json/src.hpp>
#include <charconv>
#include <cmath>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "PLRError.h"

namespace pelorino {
namespace {

using Error = boost::json::error_code;
using Text = boost::json::string_view;

Error refused() {
  return boost::json::make_error_code(boost::json::error::syntax);
}
Error tooLarge() {
  return boost::json::make_error_code(boost::json::error::array_too_large);
}

/// Reads a number exactly: the parser's own result may be wrong in the last digit, and 0e900 is too
/// much for it. Absent if the number is too large. `approximation` is the parser's own result.
std::optional<double> readDouble(std::string_view text, double approximation) {
  double number = 0;
  if (std::from_chars(text.data(), text.data() + text.size(), number).ec == std::errc()) {
    return number;
  }
  // Out of range means too large or too small; too small is zero.
  if (std::abs(approximation) < 1) return 0.0;
  return std::nullopt;
}

/// False if the digits are not a whole number in the range of `Integer`.
template <class Integer>
bool readWhole(std::string_view digits, AnyCodable& value) {
  Integer integer = 0;
  const char* end = digits.data() + digits.size();
  const auto result = std::from_chars(digits.data(), end, integer);
  if (result.ec != std::errc() || result.ptr != end) return false;
  value = AnyCodable(integer);
  return true;
}

bool readInteger(std::string_view digits, AnyCodable& value) {
  return readWhole<std::int64_t>(digits, value) || readWhole<std::uint64_t>(digits, value);
}

/// The digits of a whole number, also of one written 2.0 or 2e0. For any other number the text
/// itself, which readInteger() refuses.
std::string plainDigits(std::string_view text, double value) {
  if (text.find_first_of("eE") == std::string_view::npos) {
    const std::size_t point = text.find('.');
    const bool isWhole = text.find_first_not_of('0', point + 1) == std::string_view::npos;
    return std::string(isWhole ? text.substr(0, point) : text);
  }
  // A larger number is no 64-bit integer, so the digits of all others fit below.
  if (value != std::trunc(value) || std::abs(value) >= 0x1p64) return std::string(text);
  std::array<char, 32> digits{};
  const auto result = std::to_chars(digits.data(), digits.data() + digits.size(), value,
                                    std::chars_format::fixed, 0);
  return {digits.data(), result.ptr};
}

AnyCodable numberOf(std::string_view text, double number) {
  AnyCodable value;
  return readInteger(plainDigits(text, number), value) ? value : AnyCodable(number);
}

/// Builds a value from the parser's events. If an object has a key twice, the last one wins.
class Builder final {
 public:
  explicit Builder(std::size_t maximumValues) : remaining_(maximumValues) {}

  void open(bool isObject) { open_.push_back({isObject, {}, {}, {}}); }
  bool closeList(Error& error) {
    return add(AnyCodable::decoded(std::move(closed().items)), error);
  }
  bool closeObject(Error& error) {
    return add(AnyCodable::decoded(std::move(closed().members)), error);
  }
  void setKey(std::string key) { open_.back().key = std::move(key); }

  bool add(AnyCodable value, Error& error) {
    if (remaining_ == 0) {
      error = tooLarge();
      return false;
    }
    --remaining_;
    if (open_.empty()) {
      result_ = std::move(value);
    } else if (Container& container = open_.back(); container.isObject) {
      container.members.insert_or_assign(std::move(container.key), std::move(value));
    } else {
      container.items.push_back(std::move(value));
    }
    return true;
  }

  [[nodiscard]] AnyCodable take() { return std::move(result_); }

 private:
  struct Container {
    bool isObject;
    AnyCodable::List items;
    AnyCodable::Object members;
    std::string key;
  };

  Container closed() {
    Container container = std::move(open_.back());
    open_.pop_back();
    return container;
  }

  std::size_t remaining_;
  std::vector<Container> open_;
  AnyCodable result_;
};

/// Receives the parser's events. Without a builder it only checks the text and keeps no more than
/// the present number. One class serves both purposes because the parser is a large template.
class Handler final {
 public:
  static constexpr std::size_t max_object_size = std::size_t(-1);
  static constexpr std::size_t max_array_size = std::size_t(-1);
  static constexpr std::size_t max_key_size = std::size_t(-1);
  static constexpr std::size_t max_string_size = std::size_t(-1);

  explicit Handler(Builder* builder) : builder_(builder) {}

  bool on_document_begin(Error&) { return true; }
  bool on_document_end(Error&) { return true; }
  bool on_array_begin(Error&) { return open(false); }
  bool on_object_begin(Error&) { return open(true); }
  bool on_array_end(std::size_t, Error& error) {
    return builder_ == nullptr || builder_->closeList(error);
  }
  bool on_object_end(std::size_t, Error& error) {
    return builder_ == nullptr || builder_->closeObject(error);
  }
  bool on_string_part(Text part, std::size_t, Error&) { return keepText(part); }
  bool on_string(Text part, std::size_t, Error& error) {
    return builder_ == nullptr || builder_->add(AnyCodable(whole(part)), error);
  }
  bool on_key_part(Text part, std::size_t, Error&) { return keepText(part); }
  bool on_key(Text part, std::size_t, Error&) {
    if (builder_ != nullptr) builder_->setKey(whole(part));
    return true;
  }
  bool on_number_part(Text part, Error&) { return keep(part); }
  bool on_int64(std::int64_t value, Text, Error& error) { return addInteger(value, error); }
  bool on_uint64(std::uint64_t value, Text, Error& error) { return addInteger(value, error); }
  bool on_double(double approximation, Text part, Error& error) {
    const std::string text = whole(part);
    const auto number = readDouble(text, approximation);
    if (!number) {
      error = refused();
      return false;
    }
    return builder_ == nullptr || builder_->add(numberOf(text, *number), error);
  }
  bool on_bool(bool value, Error& error) {
    return builder_ == nullptr || builder_->add(AnyCodable(value), error);
  }
  bool on_null(Error& error) { return builder_ == nullptr || builder_->add(AnyCodable(), error); }
  bool on_comment_part(Text, Error&) { return true; }
  bool on_comment(Text, Error&) { return true; }

 private:
  bool open(bool isObject) {
    if (builder_ != nullptr) builder_->open(isObject);
    return true;
  }

  template <class Integer>
  bool addInteger(Integer value, Error& error) {
    parts_.clear();
    return builder_ == nullptr || builder_->add(AnyCodable(value), error);
  }

  bool keepText(Text part) { return builder_ == nullptr || keep(part); }
  bool keep(Text part) {
    parts_.append(part.data(), part.size());
    return true;
  }

  /// All parts of a text or a number.
  std::string whole(Text last) {
    keep(last);
    return std::exchange(parts_, {});
  }

  Builder* builder_;   ///< Null to check only.
  std::string parts_;  ///< The parts before the last one.
};

using Parser = boost::json::basic_parser<Handler>;

boost::json::parse_options options() {
  boost::json::parse_options options;
  options.max_depth = maximumJsonDepth;
  return options;
}

/// Gives the parser the next part of a text. Does nothing after an error.
void feed(Parser& parser, std::string_view part, bool isLast, Error& error) {
  if (error) return;
  const std::size_t used = parser.write_some(!isLast, part.data(), part.size(), error);
  // The parser stops after the first value.
  if (!error && used < part.size()) error = make_error_code(boost::json::error::extra_data);
}

void throwIf(const Error& error) {
  if (error) throw PLRError("The text is not valid JSON: " + error.message());
}

// The next functions stop at the end of the text, which may break off anywhere.

/// Length of the quoted text that `json` begins with.
std::size_t quotedLength(std::string_view json) {
  std::size_t end = 1;
  while (end < json.size() && json[end] != '"') end += json[end] == '\\' ? 2U : 1U;
  return std::min(end + 1, json.size());
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
  } while (depth > 0 && end < json.size());
  return end;
}

/// Checks a text that has values nested too deep. The parser gets a null for each of them: it calls
/// itself at each level, and the stack is limited.
void checkWithoutTheDeep(std::string_view text) {
  Parser parser(options(), nullptr);
  Error error;
  std::size_t depth = 0;
  std::size_t fed = 0;
  for (std::size_t at = 0; at < text.size();) {
    const char c = text[at];
    const bool opens = c == '{' || c == '[';
    if (opens && depth == maximumJsonDepth) {
      feed(parser, text.substr(fed, at - fed), false, error);
      feed(parser, "null", false, error);
      at += bracketedLength(text.substr(at));
      fed = at;
      continue;
    }
    if (opens) ++depth;
    if ((c == '}' || c == ']') && depth > 0) --depth;
    at += c == '"' ? quotedLength(text.substr(at)) : 1;
  }
  feed(parser, text.substr(fed), true, error);
  throwIf(error);
}

}  // namespace

void checkJson(std::string_view text) {
  Parser parser(options(), nullptr);
  Error error;
  feed(parser, text, true, error);
  if (error == boost::json::error::too_deep) return checkWithoutTheDeep(text);
  throwIf(error);
}

AnyCodable parseJson(std::string_view text, std::size_t maximumValues) {
  Builder builder(maximumValues);
  Parser parser(options(), &builder);
  Error error;
  feed(parser, text, true, error);
  throwIf(error);
  return builder.take();
}

std::size_t jsonValueLength(std::string_view json) {
  if (json.front() == '"') return quotedLength(json);
  if (json.front() == '{' || json.front() == '[') return bracketedLength(json);
  return std::min(json.find_first_of(",:]} \t\r\n"), json.size());
}

}  // namespace pelorino
