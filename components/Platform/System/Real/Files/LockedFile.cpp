#include "LockedFile.h"

#include <fcntl.h>
#include <sys/file.h>

#include <cerrno>

#include "ForkedChild.h"
#include "LockDescriptors.h"

namespace pelorino {
namespace {

/// Zero or the error.
int lock(const FileDescriptor& file, int operation) {
  while (::flock(file.get(), operation) != 0) {
    if (errno != EINTR) return errno;
  }
  return 0;
}

}  // namespace

LockedFile::LockedFile(const std::string& path, Wait wait)
    : file_(openPrivate(path, O_RDWR | O_CREAT | O_NOFOLLOW)) {
  if (!file_.isOpen()) {
    error_ = errno;
    return;
  }
  ForkedChild::arm();
  // Known to a fork before it is locked: a child must never be left with a lock.
  error_ = LockDescriptors::add(file_.get())
               ? lock(file_, wait == Wait::no ? LOCK_EX | LOCK_NB : LOCK_EX)
               : EMFILE;
}

LockedFile::~LockedFile() {
  if (!file_.isOpen()) return;
  // Closing it would do, but for a child that is forked off between here and there.
  ::flock(file_.get(), LOCK_UN);
  LockDescriptors::remove(file_.get());
}

}  // namespace pelorino
