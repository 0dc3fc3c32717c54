#include "ResolvedHost.h"

#include <algorithm>
#include <boost/uuid/name_generator_sha1.hpp>
#include <boost/uuid/uuid.hpp>
#include <boost/uuid/uuid_io.hpp>
#include <charconv>
#include <string_view>
#include <utility>

namespace pelorino {
namespace {

/// Keeps the identifiers made here apart from other uses of the same hash. Frozen: another value
/// would make every device a new one.
constexpr boost::uuids::uuid vendorNamespace = {{0x5d, 0x1e, 0x2c, 0x6a, 0x93, 0x0f, 0x4b, 0x7d,
                                                 0x8a, 0x41, 0x6e, 0xf2, 0x37, 0xc8, 0x05, 0xb9}};

/// A text of no length says nothing.
std::optional<std::string> told(const std::optional<std::string>& text) {
  return text && !text->empty() ? text : std::nullopt;
}

char asciiUpper(char c) {
  return c >= 'a' && c <= 'z' ? static_cast<char>(c - 'a' + 'A') : c;
}

bool isAsciiLetter(char c) {
  return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z');
}

bool isHexDigit(char c) {
  return (c >= '0' && c <= '9') || (c >= 'a' && c <= 'f') || (c >= 'A' && c <= 'F');
}

/// 8-4-4-4-12 hexadecimal digits.
bool hasUuidForm(std::string_view text) {
  if (text.size() != 36) return false;
  for (std::size_t i = 0; i < text.size(); ++i) {
    const bool hyphen = i == 8 || i == 13 || i == 18 || i == 23;
    if (hyphen ? text[i] != '-' : !isHexDigit(text[i])) return false;
  }
  return true;
}

/// UUIDs are written in upper case; identifiers of another form stay as they are.
std::string canonical(std::string identifier) {
  if (hasUuidForm(identifier)) {
    std::transform(identifier.begin(), identifier.end(), identifier.begin(), asciiUpper);
  }
  return identifier;
}

struct PosixLocale {
  std::string_view language;
  std::string_view territory;
};

/// Reads "language_TERRITORY.encoding@modifier". The locales C and POSIX speak no language.
PosixLocale parseLocale(std::string_view name) {
  name = name.substr(0, name.find_first_of(".@"));
  const std::size_t separator = name.find('_');
  const std::string_view language = name.substr(0, separator);
  const bool isLanguage = language.size() >= 2 && language.size() <= 8 &&
                          std::all_of(language.begin(), language.end(), isAsciiLetter);
  if (!isLanguage || language == "POSIX") return {};
  return {language,
          separator == std::string_view::npos ? std::string_view() : name.substr(separator + 1)};
}

using VersionNumber = std::pair<int, int>;  ///< Major and minor.

/// What a version such as "12.2.1" begins with; 0 in the place of what is no number.
VersionNumber numberOf(std::string_view version) {
  VersionNumber number;
  const char* const end = version.data() + version.size();
  const char* const dot = std::from_chars(version.data(), end, number.first).ptr;
  if (dot != end && *dot == '.') std::from_chars(dot + 1, end, number.second);
  return number;
}

}  // namespace

ResolvedHost::ResolvedHost(Described described, Facts& system, Clock& clock)
    : described_(std::move(described)), system_(system), clock_(clock) {}

std::optional<std::string> ResolvedHost::applicationName() {
  if (auto name = told(described_()->applicationName)) return name;
  return told(system_.executableName());
}

std::optional<std::string> ResolvedHost::applicationVersion() {
  return described_()->applicationVersion;
}

std::optional<std::string> ResolvedHost::applicationBuildVersion() {
  return described_()->applicationBuildVersion;
}

std::optional<std::string> ResolvedHost::bundleIdentifier() {
  return described_()->bundleIdentifier;
}

std::optional<std::string> ResolvedHost::bundleFolder() {
  return told(described_()->bundleFolder);
}

std::optional<std::string> ResolvedHost::receiptFile() {
  return told(described_()->receiptFile);
}

std::vector<std::string> ResolvedHost::preferredLanguages() {
  const auto described = described_();
  if (described->preferredLanguages) return *described->preferredLanguages;
  const std::string name = locale("LC_MESSAGES");
  const PosixLocale parsed = parseLocale(name);
  if (parsed.language.empty()) return {};
  std::string tag(parsed.language);
  if (!parsed.territory.empty()) tag.append("-").append(parsed.territory);
  return {tag};
}

std::optional<std::string> ResolvedHost::region() {
  const auto described = described_();
  if (described->region) return described->region;
  const std::string name = locale("LC_CTYPE");
  return told(std::string(parseLocale(name).territory));
}

std::int64_t ResolvedHost::secondsFromGmt() {
  return system_.secondsFromGmt(clock_.milliseconds());
}

std::string ResolvedHost::machine() {
  auto machine = told(described_()->machine);
  return machine ? *machine : system_.machine();
}

std::string ResolvedHost::systemVersion() {
  auto version = told(described_()->systemVersion);
  return version ? *version : system_.systemVersion();
}

std::optional<HostScreen> ResolvedHost::screen() {
  return described_()->screen;
}

std::optional<std::string> ResolvedHost::vendorIdentifier() {
  const auto described = described_();
  if (described->vendorIdentifier) {
    // Told as empty, the device has none: nothing is derived for it then.
    const auto identifier = told(described->vendorIdentifier);
    return identifier ? std::optional(canonical(*identifier)) : std::nullopt;
  }
  const auto machine = told(system_.machineId());
  auto application = told(described->bundleIdentifier);
  if (!application) application = applicationName();
  if (!machine || !application) return std::nullopt;
  const boost::uuids::name_generator_sha1 hashed(vendorNamespace);
  return canonical(boost::uuids::to_string(hashed(*machine + '\n' + *application)));
}

std::optional<std::string> ResolvedHost::advertisingIdentifier() {
  return told(described_()->advertisingIdentifier);
}

// The releases that ask begin at 14.0.0 and are known by the version that the host tells. The
// operating system's own release counts other things; without a told version a told status decides.
bool ResolvedHost::asksBeforeTracking() {
  const auto described = described_();
  const auto version = told(described->systemVersion);
  if (!version) return described->trackingAuthorization.has_value();
  return numberOf(*version) >= VersionNumber{14, 0};
}

std::optional<int> ResolvedHost::trackingAuthorization() {
  return described_()->trackingAuthorization;
}

// Likewise known by the version that the host tells: a store of another kind has no such past.
bool ResolvedHost::hasStoreDiscounts() {
  const auto version = told(described_()->systemVersion);
  return !version || numberOf(*version) >= VersionNumber{12, 2};
}

std::string ResolvedHost::supportDirectory() {
  if (auto folder = told(described_()->supportDirectory)) return *folder;
  return baseFolder("XDG_DATA_HOME", "/.local/share") + "/" + folderName();
}

std::string ResolvedHost::keyStoreFile() {
  if (auto file = told(described_()->keyStoreFile)) return *file;
  return baseFolder("XDG_STATE_HOME", "/.local/state") + "/" + folderName() + "/pelorino.keys";
}

/// The locale of one category. A variable that is empty counts as not set.
std::string ResolvedHost::locale(const char* category) {
  for (const char* variable : {"LC_ALL", category, "LANG"}) {
    if (const auto value = told(system_.environment(variable))) return *value;
  }
  return {};
}

/// A relative path in the variable is invalid and is passed over.
std::string ResolvedHost::baseFolder(const char* variable, const char* belowHome) {
  const auto folder = told(system_.environment(variable));
  if (folder && folder->front() == '/') return *folder;
  return system_.homeFolder() + belowHome;
}

/// The application's name as one folder's name.
std::string ResolvedHost::folderName() {
  std::string name = applicationName().value_or("application");
  std::replace(name.begin(), name.end(), '/', '_');
  std::replace(name.begin(), name.end(), '\0', '_');
  return name == "." || name == ".." ? "_" + name : name;
}

}  // namespace pelorino
