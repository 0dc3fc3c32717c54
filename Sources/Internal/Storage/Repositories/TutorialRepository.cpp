#include "TutorialRepository.h"

namespace pelorino {
namespace {

using Entry = SQLiteContracts::TutorialMarkEntry;

constexpr Column<TutorialMark> table[] = {
    column<&TutorialMark::idKey>(Entry::id),
    column<&TutorialMark::userId>(Entry::userId),
    column<&TutorialMark::step>(Entry::step),
};

}  // namespace

std::span<const Column<TutorialMark>> TutorialColumns::columns() {
  return table;
}

template class CachedRepository<TutorialMark, TutorialColumns>;

}  // namespace pelorino
