#pragma once

#include <map>
#include <optional>
#include <string>
#include <string_view>

namespace pelorino {

using KeyValues = std::map<std::string, std::string, std::less<>>;

/// The text of a key store file. Frozen on disk:
///
///     pelorino-keys 1
///     name=value
///
/// one value a line, each line with its line end. In names and values every byte but the printable
/// ASCII characters, and of those "%" and "=", is written as "%" and two hexadecimal digits.
namespace KeyFileFormat {

[[nodiscard]] std::string write(const KeyValues& values);

/// The lines that can be read; of two lines with one name the last. Absent when the file is of a
/// later version, which must be left as it is.
[[nodiscard]] std::optional<KeyValues> read(std::string_view text);

}  // namespace KeyFileFormat
}  // namespace pelorino
