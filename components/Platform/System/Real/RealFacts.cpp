#include "RealFacts.h"

#include <pwd.h>
#include <sys/utsname.h>
#include <unistd.h>

#include <cerrno>
#include <chrono>
#include <cstdlib>
#include <ctime>
#include <string_view>
#include <system_error>
#include <vector>

#include "RealFiles.h"

namespace pelorino {
namespace {

/// What Linux appends to the path of a program that was replaced while it runs.
constexpr std::string_view deletedMark = " (deleted)";

std::optional<std::string> linkTarget(const char* path) {
  for (std::vector<char> buffer(256);; buffer.resize(buffer.size() * 2)) {
    const ssize_t length = ::readlink(path, buffer.data(), buffer.size());
    if (length < 0) return std::nullopt;
    const auto size = static_cast<std::size_t>(length);
    if (size < buffer.size()) return std::string(buffer.data(), size);
  }
}

std::optional<std::string> firstLine(const char* path) {
  constexpr std::size_t limit = 4096;
  auto content = RealFiles{}.read(path, limit).content;
  if (!content) return std::nullopt;
  content->erase(std::min(content->find('\n'), content->size()));
  return content;
}

utsname systemName() {
  utsname name{};
  ::uname(&name);
  return name;
}

}  // namespace

std::optional<std::string> RealFacts::environment(const char* name) {
  const char* value = std::getenv(name);
  if (value == nullptr) return std::nullopt;
  return value;
}

std::string RealFacts::homeFolder() {
  if (auto home = environment("HOME"); home && home->starts_with('/')) return *std::move(home);
  passwd entry{};
  passwd* found = nullptr;
  for (std::vector<char> buffer(1024);; buffer.resize(buffer.size() * 2)) {
    const int error = ::getpwuid_r(::geteuid(), &entry, buffer.data(), buffer.size(), &found);
    if (error == ERANGE) continue;
    if (error == 0 && found != nullptr && entry.pw_dir != nullptr) return entry.pw_dir;
    return "/";  // A user without an entry, as in many containers.
  }
}

std::string RealFacts::executableName() {
  std::string path = linkTarget("/proc/self/exe").value_or("");
  if (path.ends_with(deletedMark)) path.erase(path.size() - deletedMark.size());
  return path.substr(path.find_last_of('/') + 1);
}

std::string RealFacts::machine() {
  return systemName().machine;
}

std::string RealFacts::systemVersion() {
  return systemName().release;
}

std::optional<std::string> RealFacts::machineId() {
  for (const char* path : {"/etc/machine-id", "/var/lib/dbus/machine-id"}) {
    auto id = firstLine(path);
    // An image that was never booted says "uninitialized".
    if (id && !id->empty() && *id != "uninitialized") return id;
  }
  return std::nullopt;
}

std::int64_t RealFacts::secondsFromGmt(std::int64_t milliseconds) {
  const auto seconds =
      std::chrono::floor<std::chrono::seconds>(std::chrono::milliseconds(milliseconds));
  const std::time_t instant = seconds.count();
  // localtime_r alone need not notice that TZ has changed.
  ::tzset();
  std::tm local{};
  if (::localtime_r(&instant, &local) == nullptr) return 0;
  return local.tm_gmtoff;
}

}  // namespace pelorino
