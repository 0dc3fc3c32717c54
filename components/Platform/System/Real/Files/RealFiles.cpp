#include "RealFiles.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <algorithm>
#include <cerrno>
#include <system_error>
#include <utility>

#include "PrivateFiles.h"

namespace pelorino {
namespace {

Files::Reading failed(int error) {
  return {{}, std::system_category().message(error)};
}

}  // namespace

bool RealFiles::exists(const std::string& path) {
  struct stat found {};
  return path.find('\0') == std::string::npos && ::stat(path.c_str(), &found) == 0;
}

std::optional<std::string> RealFiles::createFolders(const std::string& path) {
  return makePrivateFolders(path);
}

void RealFiles::createPrivateFile(const std::string& path) {
  // A file that is there is not opened: closing it would drop the locks that a database connection
  // of this process holds on it.
  if (openPrivate(path, O_WRONLY | O_CREAT | O_EXCL).isOpen()) return;
  static_cast<void>(::chmod(path.c_str(), S_IRUSR | S_IWUSR));
}

Files::Reading RealFiles::read(const std::string& path, std::size_t limit) {
  // A pipe without a writer would hold up the caller.
  const FileDescriptor file = openPrivate(path, O_RDONLY | O_NONBLOCK);
  struct stat found {};
  if (!file.isOpen() || ::fstat(file.get(), &found) != 0) return failed(errno);
  if (S_ISDIR(found.st_mode)) return failed(EISDIR);
  if (!S_ISREG(found.st_mode)) return {{}, "Not a regular file"};
  auto content = readUpTo(file, std::max(limit, limit + 1));
  if (!content) return failed(errno);
  if (content->size() > limit) return failed(EFBIG);
  return {std::move(content), {}};
}

}  // namespace pelorino
