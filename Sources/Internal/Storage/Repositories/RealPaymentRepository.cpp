#include "RealPaymentRepository.h"

#include <utility>

#include "SQLiteContracts.h"

namespace pelorino {
namespace {

using Entry = SQLiteContracts::RealPaymentMarkEntry;

constexpr Column columns[] = {
    column<&RealPaymentMark::idKey>(Entry::id),
    column<&RealPaymentMark::projectId>(Entry::projectId),
    column<&RealPaymentMark::orderId>(Entry::orderId),
};

constexpr TableDescription table =
    describeOwnedTable<&RealPaymentMark::projectId>(Entry::tableName, columns);

}  // namespace

RealPaymentRepository::RealPaymentRepository(std::shared_ptr<DatabaseProtocol> with)
    : ProjectRowsRepository(table, std::move(with)) {}

}  // namespace pelorino
