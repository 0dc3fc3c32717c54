#include "FileKeyStore.h"

#include <fcntl.h>

#include <cerrno>
#include <utility>

#include "LockedFile.h"
#include "PrivateFiles.h"

namespace pelorino {
namespace {

/// The store holds three identifiers. What is beyond this was not written by this library.
constexpr std::size_t readLimit = std::size_t{1} << 20U;

}  // namespace

FileKeyStore::FileKeyStore(std::string path) : path_(std::move(path)) {}

std::optional<std::string> FileKeyStore::get(std::string_view account) {
  const auto values = read();
  if (!values) return std::nullopt;
  const auto found = values->find(account);
  if (found == values->end()) return std::nullopt;
  return found->second;
}

bool FileKeyStore::set(std::string_view account, std::string_view value) {
  if (makePrivateFolders(folderOf(path_))) return false;
  return change([&](KeyValues& values) {
    values.insert_or_assign(std::string(account), std::string(value));
    return true;
  });
}

bool FileKeyStore::remove(std::string_view account) {
  return change([&](KeyValues& values) {
    const auto found = values.find(account);
    if (found == values.end()) return false;
    values.erase(found);
    return true;
  });
}

std::optional<KeyValues> FileKeyStore::read() const {
  const FileDescriptor file = openPrivate(path_, O_RDONLY | O_NONBLOCK);
  if (!file.isOpen()) return errno == ENOENT ? std::optional(KeyValues{}) : std::nullopt;
  const auto text = readUpTo(file, readLimit);
  return text ? KeyFileFormat::read(*text) : std::nullopt;
}

template <class Edit>
bool FileKeyStore::change(Edit edit) {
  if (path_.empty()) return false;
  // A file of its own: the store's file is another one after each change.
  const LockedFile lock(path_ + ".lock", LockedFile::Wait::untilFree);
  if (lock.error() != 0) return false;
  auto values = read();
  return values && edit(*values) && replaceFile(path_, KeyFileFormat::write(*values));
}

}  // namespace pelorino
