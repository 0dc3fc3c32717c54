#include "PropertyList.h"

#include <plist/plist.h>

#include "PropertyListLimits.h"
#include "Text.h"

namespace pelorino {
namespace {

bool isOf(void* node, plist_type type) {
  return node != nullptr && plist_get_node_type(node) == type;
}

constexpr const char* referenceKey = "CF$UID";

void* read(std::string_view bytes) {
  plist_t root = nullptr;
  const auto size = static_cast<std::uint32_t>(bytes.size());
  if (isBinaryPropertyList(bytes)) {
    checkBinaryPropertyList(bytes);
    plist_from_bin(bytes.data(), size, &root);
  } else {
    checkXmlPropertyList(bytes);
    plist_from_xml(bytes.data(), size, &root);
  }
  if (root == nullptr) throw LegacyDataError("no property list");
  return root;
}

}  // namespace

std::optional<std::string> PropertyValue::text() const {
  if (!isOf(node_, PLIST_STRING)) return std::nullopt;
  std::uint64_t length = 0;
  const char* bytes = plist_get_string_ptr(node_, &length);
  return repairUtf8(std::string(bytes, length));
}

std::optional<bool> PropertyValue::boolean() const {
  if (!isOf(node_, PLIST_BOOLEAN)) return std::nullopt;
  std::uint8_t value = 0;
  plist_get_bool_val(node_, &value);
  return value != 0;
}

std::optional<std::int64_t> PropertyValue::integer() const {
  if (!isOf(node_, PLIST_UINT)) return std::nullopt;
  std::uint64_t value = 0;
  plist_get_uint_val(node_, &value);
  // The reader gives a negative number as its two's complement.
  return static_cast<std::int64_t>(value);
}

std::optional<double> PropertyValue::real() const {
  if (!isOf(node_, PLIST_REAL)) return std::nullopt;
  double value = 0;
  plist_get_real_val(node_, &value);
  return value;
}

std::optional<std::uint64_t> PropertyValue::reference() const {
  std::uint64_t value = 0;
  if (isOf(node_, PLIST_UID)) {
    plist_get_uid_val(node_, &value);
    return value;
  }
  // The XML form, where the reader has left it as it stands.
  const PropertyValue written = (*this)[referenceKey];
  if (!isOf(written.node_, PLIST_UINT) || plist_dict_get_size(node_) != 1) return std::nullopt;
  plist_get_uint_val(written.node_, &value);
  return value;
}

bool PropertyValue::isDictionary() const {
  return isOf(node_, PLIST_DICT);
}

PropertyValue PropertyValue::operator[](const char* key) const {
  return PropertyValue(isDictionary() ? plist_dict_get_item(node_, key) : nullptr);
}

bool PropertyValue::isList() const {
  return isOf(node_, PLIST_ARRAY);
}

std::uint32_t PropertyValue::size() const {
  return isList() ? plist_array_get_size(node_) : 0;
}

PropertyValue PropertyValue::at(std::uint32_t index) const {
  return PropertyValue(index < size() ? plist_array_get_item(node_, index) : nullptr);
}

PropertyList::PropertyList(std::string_view bytes) : root_(read(bytes), plist_free) {}

}  // namespace pelorino
