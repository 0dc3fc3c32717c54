#include "PropertyListLimits.h"

#include <algorithm>
#include <cstdint>
#include <optional>
#include <vector>

#include "PropertyList.h"

namespace pelorino {
namespace {

constexpr std::string_view binaryMark = "bplist00";
constexpr std::size_t trailerSize = 32;

[[noreturn]] void refuse(const char* why) {
  throw LegacyDataError(why);
}

/// The objects of a binary list, as bytes: a table of their places, and a trailer that describes
/// the table. A container holds the numbers of its objects.
class BinaryObjects final {
 public:
  explicit BinaryObjects(std::string_view bytes) : bytes_(bytes) {
    if (bytes.size() < binaryMark.size() + trailerSize) refuse("cut off");
    const std::size_t trailer = bytes.size() - trailerSize;
    placeSize_ = number(trailer + 6, 1);
    numberSize_ = number(trailer + 7, 1);
    count_ = number(trailer + 8, 8);
    top_ = number(trailer + 16, 8);
    table_ = number(trailer + 24, 8);
    if (placeSize_ == 0 || placeSize_ > 8 || numberSize_ == 0 || numberSize_ > 8)
      refuse("no property list");
    if (count_ > PropertyList::maximalValues) refuse("too many objects");
    if (top_ >= count_ || table_ > trailer || count_ * placeSize_ > trailer - table_)
      refuse("cut off");
    weights_.resize(count_);
  }

  void check() {
    const Weight all = weightOf(top_, PropertyList::maximalDepth);
    if (all.values > PropertyList::maximalValues) refuse("too many values");
    if (all.bytes > PropertyList::maximalTextBytes) refuse("too long texts");
  }

 private:
  /// What an object costs together with all that it refers to.
  struct Weight {
    std::uint64_t values = 1;
    std::uint64_t bytes = 0;
    int height = 1;
    bool isKnown = false;  ///< Else it is being weighed.
  };

  struct Object {
    unsigned kind;
    std::uint64_t count;
    std::uint64_t content;  ///< Where it begins.
  };

  [[nodiscard]] std::uint64_t number(std::uint64_t at, std::uint64_t size) const {
    if (at > bytes_.size() || size > bytes_.size() - at) refuse("cut off");
    std::uint64_t value = 0;
    for (std::uint64_t i = 0; i < size; ++i) {
      value = value << 8U | static_cast<unsigned char>(bytes_[at + i]);
    }
    return value;
  }

  [[nodiscard]] Object object(std::uint64_t index) const {
    const std::uint64_t at = number(table_ + index * placeSize_, placeSize_);
    const std::uint64_t mark = number(at, 1);
    Object found{static_cast<unsigned>(mark >> 4U), mark & 0xFU, at + 1};
    const bool isCounted = found.kind >= 4 && found.kind != 8;
    if (isCounted && found.count == 0xF) {  // The count follows as an integer.
      const std::uint64_t size = std::uint64_t{1} << (number(at + 1, 1) & 0xFU);
      if (size > 8) refuse("a number out of range");
      found.count = number(at + 2, size);
      found.content = at + 2 + size;
    }
    return found;
  }

  Weight weightOf(std::uint64_t index, int depth) {
    if (index >= count_) refuse("a reference to nothing");
    if (depth == 0) refuse("nested too deep");
    if (auto& weight = weights_[index]) {
      if (!weight->isKnown) refuse("references in a circle");
      if (weight->height > depth) refuse("nested too deep");
      return *weight;
    }
    weights_[index] = Weight();
    Weight weight = ownWeightOf(object(index), depth);
    weight.isKnown = true;
    weights_[index] = weight;
    return weight;
  }

  Weight ownWeightOf(const Object& found, int depth) {
    constexpr unsigned integer = 1, wide = 6, list = 0xA, set = 0xC, dictionary = 0xD;
    Weight weight;
    if (found.kind == integer && found.count > 3) refuse("a number out of range");
    const bool isContainer = found.kind == list || found.kind == set || found.kind == dictionary;
    if (!isContainer) {
      if (found.kind > 3 && found.kind != 8) {
        if (found.count > bytes_.size()) refuse("cut off");
        weight.bytes = found.count * (found.kind == wide ? 3 : 1);  // As UTF-8, at most.
      }
      return weight;
    }
    if (found.count > PropertyList::maximalValues) refuse("too many values");
    const std::uint64_t children = found.count * (found.kind == dictionary ? 2 : 1);
    for (std::uint64_t i = 0; i < children; ++i) {
      const Weight child =
          weightOf(number(found.content + i * numberSize_, numberSize_), depth - 1);
      weight.values += child.values;
      weight.bytes += child.bytes;
      weight.height = std::max(weight.height, child.height + 1);
      if (weight.values > PropertyList::maximalValues) refuse("too many values");
      if (weight.bytes > PropertyList::maximalTextBytes) refuse("too long texts");
    }
    return weight;
  }

  std::string_view bytes_;
  std::uint64_t placeSize_ = 0;
  std::uint64_t numberSize_ = 0;
  std::uint64_t count_ = 0;
  std::uint64_t top_ = 0;
  std::uint64_t table_ = 0;
  std::vector<std::optional<Weight>> weights_;
};

}  // namespace

bool isBinaryPropertyList(std::string_view bytes) {
  return bytes.starts_with(binaryMark);
}

void checkBinaryPropertyList(std::string_view bytes) {
  BinaryObjects(bytes).check();
}

void checkXmlPropertyList(std::string_view text) {
  if (text.size() > PropertyList::maximalTextBytes) refuse("too long texts");
  std::uint64_t tags = 0;
  int depth = 0;
  for (std::size_t at = text.find('<'); at != std::string_view::npos; at = text.find('<', at + 1)) {
    if (++tags > 2 * PropertyList::maximalValues) refuse("too many values");
    const std::string_view tag = text.substr(at, text.find('>', at) - at);
    // An archive has no comments. In one, tags would count that the reader does not see.
    if (tag.starts_with("<!") && !tag.starts_with("<!DOCTYPE")) refuse("no property list");
    if (tag.starts_with("</")) {
      --depth;
    } else if (!tag.starts_with("<!") && !tag.starts_with("<?") && !tag.ends_with('/')) {
      ++depth;
    }
    if (depth > PropertyList::maximalDepth) refuse("nested too deep");
  }
}

}  // namespace pelorino
