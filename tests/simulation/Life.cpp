#include "Life.h"

#include "Device.h"
#include "Play.h"

namespace pelorino {

void live(const LifePlan& plan, const Journal& journal) {
  // Kept to the end of the process, whose threads know it.
  auto& device = *new Device(plan, journal);
  device.endAfter([&] { Play(device, plan).run(); });
}

}  // namespace pelorino
