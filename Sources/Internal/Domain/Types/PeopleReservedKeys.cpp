#include "PeopleReservedKeys.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <utility>

namespace pelorino {
namespace {

template <class Kind>
bool holds(const PeopleValueType& value) {
  return value.get<Kind>() != nullptr;
}

struct ReservedKey {
  std::string_view rawValue;
  std::string_view requiredType;
  bool (*hasRequiredType)(const PeopleValueType&);
};

/// In the order of the enumeration.
constexpr std::array<ReservedKey, 7> table = {{
    {"name", "String", holds<std::string>},
    {"email", "String", holds<std::string>},
    {"phone", "String", holds<std::string>},
    {"photo", "String", holds<std::string>},
    {"gender", "PLRGender", holds<PLRGender>},
    {"age", "Int", holds<std::int64_t>},
    {"cheater", "Bool", holds<bool>},
}};

const ReservedKey& row(PeopleReservedKeys key) {
  return table[static_cast<std::size_t>(key)];
}

// ASCII is enough: no other letter becomes a letter of a reserved key in lower case.
char lowerCase(char letter) {
  return letter >= 'A' && letter <= 'Z' ? static_cast<char>(letter - 'A' + 'a') : letter;
}

}  // namespace

std::string_view rawValue(PeopleReservedKeys key) {
  return row(key).rawValue;
}

std::optional<PeopleReservedKeys> reservedKey(std::string_view key) {
  const auto found = std::ranges::find_if(table, [key](const ReservedKey& reserved) {
    return std::ranges::equal(key, reserved.rawValue, {}, lowerCase);
  });
  if (found == table.end()) return std::nullopt;
  return static_cast<PeopleReservedKeys>(found - table.begin());
}

std::string normalized(std::string key) {
  const auto reserved = reservedKey(key);
  return reserved ? std::string(rawValue(*reserved)) : std::move(key);
}

std::string_view requiredType(PeopleReservedKeys key) {
  return row(key).requiredType;
}

bool hasRequiredType(PeopleReservedKeys key, const PeopleValueType& value) {
  return row(key).hasRequiredType(value);
}

}  // namespace pelorino
