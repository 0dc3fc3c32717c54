#include "LockedFile.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>
#include <chrono>
#include <thread>

#include "ForkedChild.h"
#include "LockDescriptors.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

constexpr auto patience = 2s;
constexpr auto pollInterval = 5ms;

/// Zero or the error.
int lock(const FileDescriptor& file) {
  while (::flock(file.get(), LOCK_EX | LOCK_NB) != 0) {
    if (errno != EINTR) return errno;
  }
  return 0;
}

int lockBriefly(const FileDescriptor& file) {
  const auto end = std::chrono::steady_clock::now() + patience;
  int error = lock(file);
  while (error == EWOULDBLOCK && std::chrono::steady_clock::now() < end) {
    std::this_thread::sleep_for(pollInterval);
    error = lock(file);
  }
  return error;
}

}  // namespace

LockedFile::LockedFile(const std::string& path, Wait wait) {
  ForkedChild::arm();
  // Known to a fork before it is locked: a child must never be left with a lock.
  ForkedChild::betweenForks([&] {
    if (file_) LockDescriptors::remove(file_->get());
    file_.emplace(openPrivate(path, O_RDWR | O_CREAT | O_NOFOLLOW));
    error_ = file_->isOpen() ? 0 : errno;
    if (error_ == 0 && !LockDescriptors::add(file_->get())) error_ = EMFILE;
  });
  if (error_ == 0) error_ = wait == Wait::no ? lock(*file_) : lockBriefly(*file_);
}

LockedFile::~LockedFile() {
  if (!file_->isOpen()) return;
  // Closing it would do, but for a child that is forked off between here and there.
  ::flock(file_->get(), LOCK_UN);
  LockDescriptors::remove(file_->get());
}

}  // namespace pelorino
