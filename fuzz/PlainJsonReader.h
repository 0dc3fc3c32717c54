#pragma once

#include <cmath>
#include <cstdlib>
#include <string>
#include <string_view>

namespace pelorino::fuzz {

/// A second opinion on what one JSON value is, read letter by letter from the grammar. It leaves
/// UTF-8 to the caller and builds nothing.
class PlainJsonReader final {
 public:
  PlainJsonReader(std::string_view text, std::size_t maximumDepth)
      : text_(text), maximumDepth_(maximumDepth) {}

  [[nodiscard]] bool isOneValue() {
    skipBlanks();
    if (!value(0)) return false;
    skipBlanks();
    return at_ == text_.size();
  }

  /// An exponent has been met that readers may refuse for its size, whatever the number is.
  [[nodiscard]] bool hasHugeExponent() const { return hasHugeExponent_; }

  /// Something has been met that is nested deeper than the maximum.
  [[nodiscard]] bool hasSkipped() const { return hasSkipped_; }

 private:
  [[nodiscard]] char peek() const { return at_ < text_.size() ? text_[at_] : '\0'; }
  bool take(char wanted) {
    if (at_ >= text_.size() || text_[at_] != wanted) return false;
    ++at_;
    return true;
  }
  bool takeWord(std::string_view word) {
    if (!text_.substr(at_).starts_with(word)) return false;
    at_ += word.size();
    return true;
  }
  void skipBlanks() {
    while (peek() == ' ' || peek() == '\t' || peek() == '\r' || peek() == '\n') ++at_;
  }
  bool takeDigits() {
    const std::size_t start = at_;
    while (peek() >= '0' && peek() <= '9') ++at_;
    return at_ > start;
  }

  bool value(std::size_t depth) {
    switch (peek()) {
      case '"':
        return string();
      case '[':
        return depth < maximumDepth_ ? list(depth + 1) : skipBrackets();
      case '{':
        return depth < maximumDepth_ ? object(depth + 1) : skipBrackets();
      case 't':
        return takeWord("true");
      case 'f':
        return takeWord("false");
      case 'n':
        return takeWord("null");
      default:
        return number();
    }
  }

  /// Nobody reads what is nested deeper: brackets and quotes alone are looked at.
  bool skipBrackets() {
    hasSkipped_ = true;
    std::size_t open = 0;
    bool isQuoted = false;
    while (at_ < text_.size()) {
      const char c = text_[at_++];
      if (isQuoted && c == '\\') ++at_;
      if (c == '"') isQuoted = !isQuoted;
      if (isQuoted) continue;
      if (c == '[' || c == '{') ++open;
      if ((c == ']' || c == '}') && --open == 0) return true;
    }
    return false;
  }

  bool list(std::size_t depth) {
    take('[');
    skipBlanks();
    if (take(']')) return true;
    do {
      skipBlanks();
      if (!value(depth)) return false;
      skipBlanks();
    } while (take(','));
    return take(']');
  }

  bool object(std::size_t depth) {
    take('{');
    skipBlanks();
    if (take('}')) return true;
    do {
      skipBlanks();
      if (!string()) return false;
      skipBlanks();
      if (!take(':')) return false;
      skipBlanks();
      if (!value(depth)) return false;
      skipBlanks();
    } while (take(','));
    return take('}');
  }

  /// Four hexadecimal digits, or -1.
  int codeUnit() {
    int unit = 0;
    for (int i = 0; i < 4; ++i) {
      const char c = peek();
      const int digit = c >= '0' && c <= '9'   ? c - '0'
                        : c >= 'a' && c <= 'f' ? c - 'a' + 10
                        : c >= 'A' && c <= 'F' ? c - 'A' + 10
                                               : -1;
      if (digit < 0) return -1;
      unit = unit * 16 + digit;
      ++at_;
    }
    return unit;
  }

  bool escape() {
    constexpr std::string_view letters = "\"\\/bfnrt";
    if (at_ < text_.size() && letters.find(text_[at_]) != std::string_view::npos) {
      ++at_;
      return true;
    }
    if (!take('u')) return false;
    const int unit = codeUnit();
    if (unit < 0 || (unit >= 0xDC00 && unit <= 0xDFFF)) return false;
    if (unit < 0xD800 || unit > 0xDBFF) return true;
    if (!takeWord("\\u")) return false;
    const int low = codeUnit();
    return low >= 0xDC00 && low <= 0xDFFF;
  }

  bool string() {
    if (!take('"')) return false;
    while (at_ < text_.size()) {
      const auto c = static_cast<unsigned char>(text_[at_++]);
      if (c == '"') return true;
      if (c < 0x20) return false;
      if (c == '\\' && !escape()) return false;
    }
    return false;
  }

  bool number() {
    const std::size_t start = at_;
    take('-');
    if (!take('0') && !takeDigits()) return false;
    if (take('.') && !takeDigits()) return false;
    if (take('e') || take('E')) {
      if (!take('-')) take('+');
      const std::size_t exponent = at_;
      if (!takeDigits()) return false;
      hasHugeExponent_ |= at_ - exponent > 8;
    }
    const std::string digits(text_.substr(start, at_ - start));
    return std::isfinite(std::strtod(digits.c_str(), nullptr));
  }

  std::string_view text_;
  std::size_t maximumDepth_;
  bool hasSkipped_ = false;
  std::size_t at_ = 0;
  bool hasHugeExponent_ = false;
};

}  // namespace pelorino::fuzz
