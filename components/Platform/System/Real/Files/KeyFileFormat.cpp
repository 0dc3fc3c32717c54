#include "KeyFileFormat.h"

#include <charconv>
#include <cstddef>

namespace pelorino::KeyFileFormat {
namespace {

constexpr std::string_view versionKey = "pelorino-keys ";
constexpr std::string_view version = "1";
constexpr std::string_view hexDigits = "0123456789ABCDEF";

bool isPlain(char c) {
  return c > ' ' && c < '\x7f' && c != '%' && c != '=';
}

void appendEscaped(std::string& text, std::string_view bytes) {
  for (const char c : bytes) {
    if (isPlain(c)) {
      text += c;
      continue;
    }
    const auto byte = static_cast<unsigned char>(c);
    text += '%';
    text += hexDigits[byte >> 4U];
    text += hexDigits[byte & 0xFU];
  }
}

std::optional<char> byteOf(std::string_view digits) {
  unsigned char byte = 0;
  const char* end = digits.data() + digits.size();
  const auto [read, error] = std::from_chars(digits.data(), end, byte, 16);
  if (digits.size() != 2 || error != std::errc{} || read != end) return std::nullopt;
  return static_cast<char>(byte);
}

std::optional<std::string> unescaped(std::string_view text) {
  std::string bytes;
  for (std::size_t at = 0; at < text.size(); ++at) {
    if (isPlain(text[at])) {
      bytes += text[at];
      continue;
    }
    const auto byte = text[at] == '%' ? byteOf(text.substr(at + 1, 2)) : std::nullopt;
    if (!byte) return std::nullopt;
    bytes += *byte;
    at += 2;
  }
  return bytes;
}

void readLine(std::string_view line, KeyValues& values) {
  const std::size_t separator = line.find('=');
  if (separator == std::string_view::npos) return;
  auto name = unescaped(line.substr(0, separator));
  auto value = unescaped(line.substr(separator + 1));
  if (name && value) values.insert_or_assign(std::move(*name), std::move(*value));
}

bool isOtherVersion(std::string_view line) {
  return line.starts_with(versionKey) && line.substr(versionKey.size()) != version;
}

}  // namespace

std::string write(const KeyValues& values) {
  std::string text;
  text += versionKey;
  text += version;
  text += '\n';
  for (const auto& [name, value] : values) {
    appendEscaped(text, name);
    text += '=';
    appendEscaped(text, value);
    text += '\n';
  }
  return text;
}

std::optional<KeyValues> read(std::string_view text) {
  if (isOtherVersion(text.substr(0, text.find('\n')))) return std::nullopt;
  KeyValues values;
  // A last line without its end may have lost more than that.
  for (std::size_t end = text.find('\n'); end != std::string_view::npos; end = text.find('\n')) {
    readLine(text.substr(0, end), values);
    text.remove_prefix(end + 1);
  }
  return values;
}

}  // namespace pelorino::KeyFileFormat
