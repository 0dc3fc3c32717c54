#include "UsersStoragesMigration.h"

#include <algorithm>
#include <utility>

namespace pelorino {
namespace {

/// The elements of a list, empty if one of them is not of the type that `read` gives.
template <class Element>
std::vector<Element> elementsOf(const ArchivedObject& archived,
                                std::optional<Element> (ArchivedObject::*read)() const) {
  std::vector<Element> elements;
  for (const ArchivedObject& one : archived.list().value_or(std::vector<ArchivedObject>())) {
    auto element = (one.*read)();
    if (!element) return {};
    elements.push_back(*std::move(element));
  }
  return elements;
}

}  // namespace

PlayerPreferencesMigration::PlayerPreferencesMigration(const ArchivedObject& archived)
    : preferences(
          archived["preferences"].dictionary().value_or(std::map<std::string, ArchivedObject>())) {}

DataStorageMigration::DataStorageMigration(const ArchivedObject& archived)
    : level(archived["level"].integer().value_or(0)),
      userUid(archived["userId"].text()),
      prevUid(archived["prevId"].text()),
      transactionIds(elementsOf(archived["transactionIds"], &ArchivedObject::text)),
      tutorCompletedSteps(elementsOf(archived["tutorCompletedSteps"], &ArchivedObject::integer)) {
  const ArchivedObject preferences = archived["playerPreferences"];
  if (preferences.className() == "PlayerPreferences") playerPreferences.emplace(preferences);
}

bool DataStorageMigration::isClassOf(const ArchivedObject& archived) {
  return archived.className() == "DataStorage";
}

UsersStoragesMigration::UsersStoragesMigration(const ArchivedObject& archived)
    : activeUserId(archived["activeUser"].text().value_or(std::string())),
      dataStorages(
          archived["dataStorages"].dictionary().value_or(std::map<std::string, ArchivedObject>())),
      trackingAvailable(archived["trackingAvailable"].boolean().value_or(false)) {
  if (archived.className() != "UsersStorages") throw LegacyDataError("another class");
  const bool areAll = std::ranges::all_of(dataStorages, [](const auto& entry) {
    return DataStorageMigration::isClassOf(entry.second);
  });
  if (!areAll) dataStorages.clear();
}

}  // namespace pelorino
