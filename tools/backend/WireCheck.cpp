#include "WireCheck.h"

#include <fmt/format.h>
#include <strings.h>

#include <algorithm>
#include <array>
#include <boost/json.hpp>
#include <optional>

#include "Base64.h"
#include "WireCatalogue.h"

namespace pelorino::backend {

namespace json = boost::json;

namespace {

// A verdict is for people: a thousand bad events need no thousand sentences.
constexpr std::size_t maximumFindings = 20;

/// Seconds where milliseconds belong are off by a factor of 1,000; these bounds tell them apart
/// until the year 2286.
constexpr std::int64_t minimumTime = 1'000'000'000'000;
constexpr std::int64_t maximumTime = 9'999'999'999'999;

class BodyCheck {
 public:
  void checkRecord(const std::string& path, const json::value& value, const WireRecord& record);
  Verdict take() { return std::move(verdict_); }

 private:
  void checkField(const std::string& path, const json::object& object, const WireField& field);
  void checkValue(const std::string& path, const json::value& value, const WireField& field);
  void checkEvent(const std::string& path, const json::value& value);

  template <class Check>
  void eachEntry(const std::string& path, const json::value& value, Check check);
  template <class Check>
  void eachElement(const std::string& path, const json::value& value, Check check);

  void expect(bool right, const std::string& path, std::string_view what) {
    if (!right) complain(fmt::format("{} is not {}", path, what));
  }
  void complain(std::string sentence) {
    if (verdict_.size() < maximumFindings) verdict_.push_back(std::move(sentence));
  }

  Verdict verdict_;
};

bool isInteger(const json::value& value) {
  return value.is_int64() || value.is_uint64();
}

bool isTime(const json::value& value) {
  return value.is_int64() && value.get_int64() >= minimumTime && value.get_int64() <= maximumTime;
}

bool isScalar(const json::value& value) {
  return value.is_primitive() && !value.is_null();
}

template <class Check>
void BodyCheck::eachEntry(const std::string& path, const json::value& value, Check check) {
  if (!value.is_object()) return complain(path + " is not an object");
  for (const auto& [key, entry] : value.get_object()) {
    check(fmt::format("{}.{}", path, std::string_view(key)), entry);
  }
}

template <class Check>
void BodyCheck::eachElement(const std::string& path, const json::value& value, Check check) {
  if (!value.is_array()) return complain(path + " is not a list");
  std::size_t index = 0;
  for (const json::value& element : value.get_array()) {
    check(fmt::format("{}[{}]", path, index++), element);
  }
}

void BodyCheck::checkRecord(const std::string& path, const json::value& value,
                            const WireRecord& record) {
  if (!value.is_object()) return complain(path + " is not an object");
  const json::object& object = value.get_object();
  for (const WireField& field : record.fields) checkField(path, object, field);
  for (const auto& [key, ignored] : object) {
    if (std::ranges::find(record.fields, std::string_view(key), &WireField::key) ==
        record.fields.end()) {
      complain(fmt::format("{}.{} is no key of {}", path, std::string_view(key), record.name));
    }
  }
}

void BodyCheck::checkField(const std::string& path, const json::object& object,
                           const WireField& field) {
  const std::string fieldPath = fmt::format("{}.{}", path, field.key);
  const json::value* value = object.if_contains(field.key);
  if (!value) {
    if (field.presence != Presence::ifSet) complain(fieldPath + " is missing");
    return;
  }
  if (value->is_null()) {
    if (field.presence != Presence::orNull) complain(fieldPath + " is null");
    return;
  }
  checkValue(fieldPath, *value, field);
  if (!field.constant.empty() && value->is_string() && value->get_string() != field.constant) {
    complain(fmt::format("{} is not \"{}\"", fieldPath, field.constant));
  }
}

void BodyCheck::checkValue(const std::string& path, const json::value& value,
                           const WireField& field) {
  const auto integers = [&](const std::string& at, const json::value& entry) {
    expect(isInteger(entry), at, "an integer");
  };
  switch (field.type) {
    case WireType::text:
      return expect(value.is_string(), path, "a text");
    case WireType::integer:
      return expect(isInteger(value), path, "an integer");
    case WireType::time:
      return expect(isTime(value), path, "a time in milliseconds");
    case WireType::flag:
      return expect(isInteger(value) && (value == 0 || value == 1), path, "1 or 0");
    case WireType::number:
      return expect(value.is_number(), path, "a number");
    case WireType::boolean:
      return expect(value.is_bool(), path, "a boolean");
    case WireType::texts:
    case WireType::oneText:
      eachElement(path, value, [&](const std::string& at, const json::value& element) {
        expect(element.is_string(), at, "a text");
      });
      if (field.type == WireType::oneText && value.is_array()) {
        expect(value.get_array().size() == 1, path, "a list of one");
      }
      return;
    case WireType::amounts:
      return eachEntry(path, value, integers);
    case WireType::amountsBySource:
      return eachEntry(path, value, [&](const std::string& at, const json::value& entry) {
        eachEntry(at, entry, integers);
      });
    case WireType::numbers:
      return eachEntry(path, value, [&](const std::string& at, const json::value& entry) {
        expect(entry.is_number(), at, "a number");
      });
    case WireType::scalars:
      eachEntry(path, value, [&](const std::string& at, const json::value& entry) {
        expect(isScalar(entry), at, "a number, text or boolean");
      });
      if (value.is_object() && value.get_object().empty()) complain(path + " is empty");
      return;
    case WireType::object:
      return expect(value.is_object(), path, "an object");
    case WireType::record:
      return checkRecord(path, value, *field.record);
    case WireType::records:
      return eachElement(path, value, [&](const std::string& at, const json::value& element) {
        checkRecord(at, element, *field.record);
      });
    case WireType::events:
      return eachElement(path, value, [&](const std::string& at, const json::value& element) {
        checkEvent(at, element);
      });
  }
}

void BodyCheck::checkEvent(const std::string& path, const json::value& value) {
  const json::object* object = value.if_object();
  const json::value* code = object ? object->if_contains("code") : nullptr;
  if (!code || !code->is_string()) return complain(path + " is no object with a text \"code\"");
  const WireRecord* record = eventRecord(code->get_string());
  if (!record) {
    return complain(
        fmt::format("{} has the unknown code \"{}\"", path, std::string_view(code->get_string())));
  }
  checkRecord(fmt::format("{}({})", path, std::string_view(code->get_string())), value, *record);
}

constexpr std::array base64Headers = {"DeviceId", "PreviousDeviceId", "UserId", "PreviousUserId"};
constexpr std::array decimalHeaders = {"PelorinoId", "CrossPlatformPelorinoId",
                                       "PelorinoIdTimestamp"};

bool isDecimal(std::string_view text) {
  if (text.starts_with('-')) text.remove_prefix(1);
  return !text.empty() && text.find_first_not_of("0123456789") == std::string_view::npos;
}

void requireHeader(const HeaderMap& headers, const char* name, std::string_view start,
                   Verdict& verdict) {
  const auto found = headers.find(name);
  if (found == headers.end()) {
    verdict.push_back(fmt::format("the header {} is missing", name));
  } else if (!found->second.starts_with(start)) {
    verdict.push_back(fmt::format("the header {} is not \"{}\"", name, start));
  }
}

}  // namespace

bool HeaderNameLess::operator()(const std::string& left, const std::string& right) const {
  return strcasecmp(left.c_str(), right.c_str()) < 0;
}

Verdict checkAndDecodeHeaders(HeaderMap& headers) {
  Verdict verdict;
  requireHeader(headers, "Content-Type", "application/json", verdict);
  requireHeader(headers, "X-Id-Encoding", "base64", verdict);
  requireHeader(headers, "DeviceId", "", verdict);
  for (const char* name : base64Headers) {
    const auto found = headers.find(name);
    if (found == headers.end()) continue;
    if (const auto text = decodeBase64(found->second)) {
      found->second = *text;
    } else {
      verdict.push_back(fmt::format("the header {} is no Base64", name));
    }
  }
  for (const char* name : decimalHeaders) {
    const auto found = headers.find(name);
    if (found != headers.end() && !isDecimal(found->second)) {
      verdict.push_back(fmt::format("the header {} is no decimal number", name));
    }
  }
  return verdict;
}

Verdict checkBody(std::string_view endpoint, std::string_view body) {
  const WireRecord* record = requestRecord(endpoint);
  if (!record) return {"there is no such endpoint"};
  boost::system::error_code error;
  const json::value value = json::parse(body, error);
  if (error) return {"the body is no JSON: " + error.message()};
  BodyCheck check;
  check.checkRecord("body", value, *record);
  return check.take();
}

}  // namespace pelorino::backend
