#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>

#include "ProcessLocks.h"
#include "TemporaryFolder.h"

namespace pelorino {
namespace {

/// Whether a process of its own gets the lock.
bool isFree(const std::string& path) {
  return std::system(("flock --nonblock '" + path + "' true").c_str()) == 0;
}

TEST(FileLock, KeepsOthersOutUntilThisProcessNeedsItNoMoreAndAForkedChildHasNone) {
  const TemporaryFolder folder;
  const std::string path = folder.file("a lock");
  ProcessLocks locks;
  auto first = locks.lock(path).lock;
  auto second = locks.lock(path).lock;
  ASSERT_TRUE(first && second);
  struct stat found {};
  ASSERT_EQ(::stat(path.c_str(), &found), 0);
  EXPECT_EQ(found.st_mode & 0777U, 0600U);
  const pid_t child = ::fork();
  if (child == 0) {
    ::pause();
    ::_exit(0);
  }
  EXPECT_FALSE(isFree(path)) << "a fork must not unlock it";
  first.reset();
  EXPECT_FALSE(isFree(path));
  second.reset();
  EXPECT_TRUE(isFree(path)) << "the child holds it";
  ::kill(child, SIGKILL);
  ::waitpid(child, nullptr, 0);
  EXPECT_EQ(locks.lock(folder.file("no folder/lock")).failure, "No such file or directory");
}

}  // namespace
}  // namespace pelorino
