#pragma once

#include <optional>
#include <string>
#include <string_view>

#include "PeopleValueType.h"

namespace pelorino {

/// The keys of a user's card that have a fixed meaning and a fixed type. All other keys are free.
enum class PeopleReservedKeys { name, email, phone, photo, gender, age, cheater };

/// The key in the card and on the wire.
[[nodiscard]] std::string_view rawValue(PeopleReservedKeys key);

/// The reserved key that a host's key stands for, in upper or lower case.
[[nodiscard]] std::optional<PeopleReservedKeys> reservedKey(std::string_view key);

/// A key that stands for a reserved one becomes that one; another stays as it is.
[[nodiscard]] std::string normalized(std::string key);

/// What messages call the type of the key's values.
[[nodiscard]] std::string_view requiredType(PeopleReservedKeys key);

[[nodiscard]] bool hasRequiredType(PeopleReservedKeys key, const PeopleValueType& value);

}  // namespace pelorino
