#include "ProcessLocks.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <memory>
#include <system_error>
#include <utility>

#include "ForkedChild.h"
#include "LockDescriptors.h"

namespace pelorino {
namespace {

/// Zero or the error.
int tryLock(const FileDescriptor& file) {
  while (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno != EINTR) return errno;
  }
  return 0;
}

}  // namespace

class ProcessLocks::Share final : public FileLock {
 public:
  Share(ProcessLocks& locks, std::string path) : locks_(locks), path_(std::move(path)) {}
  ~Share() override { locks_.release(path_); }

 private:
  ProcessLocks& locks_;
  const std::string path_;
};

Files::LockAttempt ProcessLocks::lock(const std::string& path) {
  ForkedChild::arm();
  const int error = locks_.update([&](Locks& locks) { return acquire(locks, path); });
  if (error == EWOULDBLOCK) return {.lock = {}, .failure = "another process has locked it"};
  if (error != 0) return {.lock = {}, .failure = std::generic_category().message(error)};
  return {.lock = std::make_shared<Share>(*this, path), .failure = {}};
}

int ProcessLocks::acquire(Locks& locks, const std::string& path) {
  const auto known = locks.find(path);
  if (known != locks.end()) {
    ++known->second.shares;
    return 0;
  }
  FileDescriptor opened = openPrivate(path, O_RDWR | O_CREAT | O_NOFOLLOW);
  if (!opened.isOpen()) return errno;
  // Known to a fork before it is locked: a child must never be left with a lock.
  if (!LockDescriptors::add(opened.get())) return EMFILE;
  const auto held = locks.emplace(path, Held{.file = std::move(opened), .shares = 1}).first;
  const int error = tryLock(held->second.file);
  if (error != 0) letGo(locks, held);
  return error;
}

void ProcessLocks::release(const std::string& path) {
  locks_.update([&](Locks& locks) {
    const auto held = locks.find(path);
    if (--held->second.shares == 0) letGo(locks, held);
  });
}

// Closing the descriptor releases the lock.
void ProcessLocks::letGo(Locks& locks, Locks::iterator held) {
  LockDescriptors::remove(held->second.file.get());
  locks.erase(held);
}

}  // namespace pelorino
