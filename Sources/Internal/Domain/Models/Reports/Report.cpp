#include "Report.h"

#include <utility>

#include "System.h"

namespace pelorino {

Report::Report(std::vector<Package> with)
    : packages(std::move(with)), uuid(System::current().random().uuid()) {}

}  // namespace pelorino
