#include "RealPaymentRepository.h"

namespace pelorino {
namespace {

using Entry = SQLiteContracts::RealPaymentMarkEntry;

constexpr Column<RealPaymentMark> table[] = {
    column<&RealPaymentMark::idKey>(Entry::id),
    column<&RealPaymentMark::projectId>(Entry::projectId),
    column<&RealPaymentMark::orderId>(Entry::orderId),
};

}  // namespace

std::span<const Column<RealPaymentMark>> RealPaymentColumns::columns() {
  return table;
}

template class CachedRepository<RealPaymentMark, RealPaymentColumns>;

}  // namespace pelorino
