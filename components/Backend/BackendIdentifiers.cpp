#include "BackendIdentifiers.h"

namespace pelorino {

std::string BackendIdentifiers::Identifiers::description() const {
  std::string text;
  if (pelorinoId) text += "\tpelorinoId: " + std::to_string(*pelorinoId);
  if (crossPlatformPelorinoId) {
    text += "\n\tcrossPlatformPelorinoId: " + std::to_string(*crossPlatformPelorinoId);
  }
  if (pelorinoIdTimestamp) {
    text += "\n\tpelorinoIdTimestamp: " + std::to_string(*pelorinoIdTimestamp);
  }
  return text;
}

}  // namespace pelorino
