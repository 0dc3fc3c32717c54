#pragma once

#include <string_view>

namespace pelorino {

[[nodiscard]] bool isBinaryPropertyList(std::string_view bytes);

// Each throws LegacyDataError when reading the list would go beyond the limits of PropertyList.
// They limit its cost. Its grammar is checked by the reader.

/// Follows the references of all objects. Also throws for references in circles, and for integers
/// of more than 64 bits.
void checkBinaryPropertyList(std::string_view bytes);

/// Counts the tags.
void checkXmlPropertyList(std::string_view text);

}  // namespace pelorino
