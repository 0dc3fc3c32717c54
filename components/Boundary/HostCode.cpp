#include "HostCode.h"

namespace pelorino {

HostPass::HostPass() {
  if (!isInside() && ForkedChild::isLibraryThread()) ExitGate::parkIfClosed();
}

void closeHostCodeAtExit() {
  ExitGate::arm();
}

}  // namespace pelorino
