#include "ProcessLocks.h"

#include <cerrno>
#include <memory>
#include <system_error>
#include <utility>

namespace pelorino {

class ProcessLocks::Share final : public FileLock {
 public:
  Share(ProcessLocks& locks, std::string path) : locks_(locks), path_(std::move(path)) {}
  ~Share() override { locks_.release(path_); }

 private:
  ProcessLocks& locks_;
  const std::string path_;
};

Files::LockAttempt ProcessLocks::lock(const std::string& path) {
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
  auto file = std::make_unique<LockedFile>(path, LockedFile::Wait::no);
  const int error = file->error();
  if (error == 0) locks.emplace(path, Held{.file = std::move(file), .shares = 1});
  return error;
}

void ProcessLocks::release(const std::string& path) {
  locks_.update([&](Locks& locks) {
    const auto held = locks.find(path);
    if (--held->second.shares == 0) locks.erase(held);
  });
}

}  // namespace pelorino
