#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "PeopleValueType.h"

namespace pelorino {

/// The keys of a user's card that have a fixed meaning and a fixed type. All other keys are free.
enum class PeopleReservedKeys { name, email, phone, photo, gender, age, cheater };

/// The key's text, as it is stored and sent.
[[nodiscard]] std::string_view rawValue(PeopleReservedKeys key);

/// The reserved key with this text, in upper or lower case; absent for any other text.
[[nodiscard]] std::optional<PeopleReservedKeys> reservedKey(std::string_view key);

/// Writes a reserved key in its usual case. Any other key stays as it is.
[[nodiscard]] std::string normalized(std::string key);

/// The type of the key's values, for log lines.
[[nodiscard]] std::string_view requiredType(PeopleReservedKeys key);

/// True if the value has that type.
[[nodiscard]] bool hasRequiredType(PeopleReservedKeys key, const PeopleValueType& value);

}  // namespace pelorino
