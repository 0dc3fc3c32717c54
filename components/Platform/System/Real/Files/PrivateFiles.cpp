#include "PrivateFiles.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <string_view>
#include <system_error>

namespace pelorino {
namespace {

constexpr mode_t privateFile = 0600;
constexpr mode_t privateFolder = 0700;

/// A path with a zero byte in it would be another path for the system.
bool isPath(const std::string& path) {
  return !path.empty() && path.find('\0') == std::string::npos;
}

bool isFolder(const std::string& path) {
  struct stat found {};
  return ::stat(path.c_str(), &found) == 0 && S_ISDIR(found.st_mode);
}

/// Zero or the error; a folder that is there is none.
int makeFolder(const std::string& path) {
  if (::mkdir(path.c_str(), privateFolder) == 0) return 0;
  const int error = errno;
  return isFolder(path) ? 0 : error;
}

bool writeAll(const FileDescriptor& file, std::string_view content) {
  while (!content.empty()) {
    const ssize_t written = ::write(file.get(), content.data(), content.size());
    if (written < 0 && errno == EINTR) continue;
    if (written <= 0) return false;
    content.remove_prefix(static_cast<std::size_t>(written));
  }
  return true;
}

bool writeDurably(const std::string& path, const std::string& content) {
  FileDescriptor file = openPrivate(path, O_WRONLY | O_CREAT | O_TRUNC | O_NOFOLLOW);
  if (!file.isOpen()) return false;
  // The file may be a leftover, with other rights.
  const bool isWritten =
      ::fchmod(file.get(), privateFile) == 0 && writeAll(file, content) && ::fsync(file.get()) == 0;
  return file.close() && isWritten;
}

/// A rename is durable when its folder is. Some file systems cannot do that, and say EINVAL.
bool syncFolder(const std::string& folder) {
  const FileDescriptor opened = openPrivate(folder, O_RDONLY | O_DIRECTORY);
  return opened.isOpen() && (::fsync(opened.get()) == 0 || errno == EINVAL);
}

}  // namespace

FileDescriptor::~FileDescriptor() {
  if (isOpen()) ::close(value_);
}

bool FileDescriptor::close() noexcept {
  return ::close(std::exchange(value_, -1)) == 0;
}

FileDescriptor openPrivate(const std::string& path, int flags) {
  if (!isPath(path)) {
    errno = EINVAL;
    return FileDescriptor(-1);
  }
  for (;;) {
    const int file = ::open(path.c_str(), flags | O_CLOEXEC, privateFile);
    if (file >= 0 || errno != EINTR) return FileDescriptor(file);
  }
}

std::string folderOf(const std::string& path) {
  const std::size_t nameEnd = path.find_last_not_of('/');
  if (nameEnd == std::string::npos) return path.empty() ? "." : "/";
  const std::size_t slash = path.find_last_of('/', nameEnd);
  if (slash == std::string::npos) return ".";
  const std::size_t folderEnd = path.find_last_not_of('/', slash);
  return folderEnd == std::string::npos ? "/" : path.substr(0, folderEnd + 1);
}

std::optional<std::string> makePrivateFolders(const std::string& path) {
  int error = isPath(path) ? makeFolder(path) : EINVAL;
  if (error == ENOENT && folderOf(path) != path) {
    if (auto failure = makePrivateFolders(folderOf(path))) return failure;
    error = makeFolder(path);
  }
  if (error == 0) return std::nullopt;
  return std::generic_category().message(error);
}

std::optional<std::string> readUpTo(const FileDescriptor& file, std::size_t limit) {
  std::string content;
  std::array<char, 16384> buffer;
  while (content.size() < limit) {
    const ssize_t count = ::read(file.get(), buffer.data(), buffer.size());
    if (count < 0 && errno == EINTR) continue;
    if (count < 0) return std::nullopt;
    if (count == 0) break;
    content.append(buffer.data(), static_cast<std::size_t>(count));
  }
  if (content.size() > limit) content.resize(limit);
  return content;
}

bool replaceFile(const std::string& path, const std::string& content) {
  const std::string newPath = path + ".new";
  if (!writeDurably(newPath, content) || ::rename(newPath.c_str(), path.c_str()) != 0) {
    ::unlink(newPath.c_str());
    return false;
  }
  return syncFolder(folderOf(path));
}

}  // namespace pelorino
