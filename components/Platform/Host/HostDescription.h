#pragma once

#include <optional>
#include <string>
#include <vector>

#include "HostClosure.h"

namespace pelorino {

struct HostSize {
  double width = 0;
  double height = 0;
};

struct HostScreen {
  HostSize bounds;  ///< In points.
  double scale = 1;
  HostSize nativeBounds;  ///< In pixels.
};

/// What a host has told about itself and its platform. The rest is taken from the process and the
/// operating system.
struct HostDescription {
  std::optional<std::string> applicationName;
  std::optional<std::string> applicationVersion;
  std::optional<std::string> applicationBuildVersion;
  std::optional<std::string> bundleIdentifier;
  std::optional<std::string> bundleFolder;
  std::optional<std::string> receiptFile;
  std::optional<std::string> supportDirectory;
  std::optional<std::string> keyStoreFile;
  std::optional<std::string> certificateAuthorityFile;
  std::optional<std::string> proxy;
  std::optional<std::vector<std::string>> preferredLanguages;
  std::optional<std::string> region;
  std::optional<std::string> vendorIdentifier;
  std::optional<std::string> advertisingIdentifier;
  std::optional<int> trackingAuthorization;
  std::optional<HostScreen> screen;
  std::optional<std::string> machine;
  std::optional<std::string> systemVersion;
  HostClosure<bool()> integrityProbe;
};

}  // namespace pelorino
