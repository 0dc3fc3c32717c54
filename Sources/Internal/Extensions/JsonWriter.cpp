#include "JsonWriter.h"

#include <cmath>

#include "NumberText.h"
#include "PLRError.h"
#include "Text.h"

namespace pelorino {
namespace {

bool isAscii(std::string_view text) {
  unsigned char all = 0;
  for (const char c : text) all |= static_cast<unsigned char>(c);
  return all < 0x80;
}

bool needsEscape(char c) {
  return static_cast<unsigned char>(c) < 0x20 || c == '"' || c == '\\';
}

void appendEscape(std::string& out, char c) {
  constexpr std::string_view plain = "\"\\\b\f\n\r\t";
  constexpr std::string_view letters = "\"\\bfnrt";
  constexpr std::string_view hexadecimal = "0123456789abcdef";
  out += '\\';
  if (const std::size_t known = plain.find(c); known != std::string_view::npos) {
    out += letters[known];
    return;
  }
  const auto code = static_cast<unsigned char>(c);
  out.append("u00").append(1, hexadecimal[code >> 4U]).append(1, hexadecimal[code & 0xFU]);
}

void appendEscaped(std::string& out, std::string_view text) {
  std::size_t copied = 0;
  for (std::size_t i = 0; i < text.size(); ++i) {
    if (!needsEscape(text[i])) continue;
    out.append(text, copied, i - copied);
    appendEscape(out, text[i]);
    copied = i + 1;
  }
  out.append(text, copied);
}

}  // namespace

void JsonWriter::separate() {
  if (needsComma_) out_ += ',';
  needsComma_ = true;
}

void JsonWriter::open(char bracket) {
  separate();
  out_ += bracket;
  needsComma_ = false;
}

void JsonWriter::close(char bracket) {
  out_ += bracket;
  needsComma_ = true;
}

void JsonWriter::appendQuoted(std::string_view text) {
  out_ += '"';
  if (isAscii(text)) {  // The common case needs no copy.
    appendEscaped(out_, text);
  } else {
    appendEscaped(out_, repairUtf8(std::string(text)));
  }
  out_ += '"';
}

void JsonWriter::key(std::string_view name) {
  separate();
  appendQuoted(name);
  out_ += ':';
  needsComma_ = false;
}

void JsonWriter::raw(std::string_view json) {
  separate();
  out_ += json;
}

void JsonWriter::integer(std::int64_t value) {
  separate();
  appendNumber(out_, value);
}

void JsonWriter::unsignedInteger(std::uint64_t value) {
  separate();
  appendNumber(out_, value);
}

void JsonWriter::floating(double value) {
  if (!std::isfinite(value)) throw PLRError("JSON has no number that is not finite");
  separate();
  appendNumber(out_, value);
}

void JsonWriter::text(std::string_view value) {
  separate();
  appendQuoted(value);
}

void JsonWriter::value(const AnyCodable& value, std::size_t depth) {
  if (depth > maximumJsonDepth) throw PLRError("AnyCodable value cannot be encoded");
  switch (value.kind()) {
    case AnyCodable::Kind::null:
      return null();
    case AnyCodable::Kind::boolean:
      return boolean(*value.boolean());
    case AnyCodable::Kind::integer:
      return integer(*value.integer());
    case AnyCodable::Kind::unsignedInteger:
      return unsignedInteger(*value.unsignedInteger());
    case AnyCodable::Kind::floating:
      return floating(*value.floating());
    case AnyCodable::Kind::text:
      return text(*value.text());
    case AnyCodable::Kind::list:
      beginList();
      for (const AnyCodable& item : *value.list()) this->value(item, depth + 1);
      return endList();
    case AnyCodable::Kind::object:
      beginObject();
      for (const auto& [name, member] : *value.object()) {
        key(name);
        this->value(member, depth + 1);
      }
      return endObject();
  }
}

std::string indentedJson(std::string_view json) {
  std::string out;
  std::size_t depth = 0;
  bool inText = false;
  const auto newLine = [&] { out.append(1, '\n').append(2 * depth, ' '); };
  for (std::size_t i = 0; i < json.size(); ++i) {
    const char c = json[i];
    if (inText) {
      out += c;
      if (c == '\\') out += json[++i];  // An escaped quotation mark does not end the text.
      inText = c != '"';
      continue;
    }
    switch (c) {
      case ' ':
      case '\t':
      case '\r':
      case '\n':
        break;
      case '"':
        inText = true;
        out += c;
        break;
      case ':':
        out += ": ";
        break;
      case ',':
        out += c;
        newLine();
        break;
      case '{':
      case '[': {
        out += c;
        // An empty list or object stays on its line.
        const std::size_t inside = json.find_first_not_of(" \t\r\n", i + 1);
        if (json[inside] == '}' || json[inside] == ']') {
          out += json[i = inside];
        } else {
          ++depth;
          newLine();
        }
        break;
      }
      case '}':
      case ']':
        --depth;
        newLine();
        out += c;
        break;
      default:
        out += c;
    }
  }
  return out;
}

}  // namespace pelorino
