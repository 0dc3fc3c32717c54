#include "ApplicationGateway.h"

#include <algorithm>
#include <optional>
#include <string_view>

namespace pelorino {
namespace {

constexpr std::int64_t noProfile = 0;
constexpr std::int64_t developmentBuild = 1;
constexpr std::int64_t otherProfile = 2;

/// Profiles are a few kilobytes.
constexpr std::size_t maximalProfile = std::size_t{4} * 1024 * 1024;

bool isAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(),
                     [](char c) { return static_cast<unsigned char>(c) < 0x80; });
}

void removeWhitespace(std::string& text) {
  constexpr std::string_view whitespace = " \t\n\v\f\r";
  text.erase(std::remove_if(text.begin(), text.end(),
                            [&](char c) { return whitespace.find(c) != std::string_view::npos; }),
             text.end());
}

std::string orUnknown(std::optional<std::string> text) {
  return text ? *std::move(text) : std::string(PlatformConstants::unknown);
}

}  // namespace

ApplicationCollector::ApplicationCollector(HostFacts& bundle, Files& files, bool isSimulator)
    : bundle_(bundle), files_(files), isSimulator_(isSimulator) {}

std::string ApplicationCollector::applicationVersion() const {
  return orUnknown(bundle_.applicationVersion());
}

std::string ApplicationCollector::applicationBuildVersion() const {
  return orUnknown(bundle_.applicationBuildVersion());
}

std::string ApplicationCollector::applicationBundle() const {
  return orUnknown(bundle_.bundleIdentifier());
}

std::int64_t ApplicationCollector::sandboxState() const {
  if (isSimulator_) return developmentBuild;
  const auto folder = bundle_.bundleFolder();
  if (!folder) return noProfile;
  auto profile = files_.read(*folder + "/embedded.mobileprovision", maximalProfile).content;
  if (!profile || !isAscii(*profile)) return noProfile;
  removeWhitespace(*profile);
  const bool granted = profile->find("<key>get-task-allow</key><true/>") != std::string::npos;
  return granted ? developmentBuild : otherProfile;
}

}  // namespace pelorino
