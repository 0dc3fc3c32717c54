#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <thread>

#include "FileKeyStore.h"
#include "TemporaryFolder.h"

namespace pelorino {
namespace {

using std::filesystem::perms;

std::string contentOf(const std::string& path) {
  std::ostringstream content;
  content << std::ifstream(path).rdbuf();
  return content.str();
}

class KeyStoreTest : public testing::Test {
 protected:
  TemporaryFolder folder_;
  std::string path_ = folder_.file("state/my app é/keys");
  FileKeyStore store_{path_};

  void putFile(const std::string& content) {
    std::filesystem::create_directories(std::filesystem::path(path_).parent_path());
    std::ofstream(path_) << content;
  }
};

TEST_F(KeyStoreTest, KeepsAnyBytesUntilTheyAreReplacedOrRemoved) {
  std::string everyByte;
  for (int byte = 0; byte < 256; ++byte) everyByte += static_cast<char>(byte);
  for (const std::string& value : {everyByte, std::string()}) {
    ASSERT_TRUE(store_.set(everyByte, value));
    EXPECT_EQ(FileKeyStore(path_).get(everyByte), value);
  }
  ASSERT_TRUE(store_.set("b", "2"));
  EXPECT_TRUE(store_.remove(everyByte));
  EXPECT_FALSE(store_.remove(everyByte));
  EXPECT_EQ(contentOf(path_), "pelorino-keys 1\nb=2\n");
}

TEST_F(KeyStoreTest, BelongsToItsOwnerAlone) {
  ASSERT_TRUE(store_.set("a", "1"));
  EXPECT_EQ(std::filesystem::status(folder_.file("state")).permissions(), perms(0700));
  std::filesystem::permissions(path_, perms(0644));
  std::ofstream(path_ + ".new") << "of a process that died";
  ASSERT_TRUE(store_.set("a", "2"));
  EXPECT_EQ(std::filesystem::status(path_).permissions(), perms(0600));
}

TEST_F(KeyStoreTest, ReadsWhatCanBeReadOfACorruptFile) {
  const struct {
    const char* label;
    const char* file;
    std::optional<std::string> a;
  } cases[] = {
      {"damaged first line", "pelor\na=1\n", "1"},
      {"cut in the last line", "pelorino-keys 1\na=12345", {}},
      {"no hexadecimal digits", "pelorino-keys 1\na=1%+4\n", {}},
      {"garbage before", "pelorino-keys 1\n\x01\xFF=\n==\nx\na=1\n", "1"},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    putFile(c.file);
    EXPECT_EQ(store_.get("a"), c.a);
    ASSERT_TRUE(store_.set("b", "2"));
    EXPECT_EQ(contentOf(path_), "pelorino-keys 1\n" + (c.a ? "a=1\n" : std::string()) + "b=2\n");
  }
}

TEST_F(KeyStoreTest, SaysWhenAValueIsNotDurable) {
  const std::string later = "pelorino-keys 2\na=1\n";
  putFile(later);
  for (const std::string& path : {path_, path_ + "/below a file", folder_.file("state"), {}}) {
    EXPECT_FALSE(FileKeyStore(path).set("a", "2")) << path;
    EXPECT_EQ(FileKeyStore(path).get("a"), std::nullopt) << path;
  }
  EXPECT_EQ(contentOf(path_), later) << "a file of a later version is left alone";
}

TEST_F(KeyStoreTest, WritersDoNotLoseEachOthersValues) {
  constexpr int each = 20;
  const auto write = [&](const std::string& name) {
    FileKeyStore own(path_);
    for (int i = 0; i < each; ++i) EXPECT_TRUE(own.set(name + std::to_string(i), name));
  };
  // The lock is of the opened file, not of the process: threads meet it like processes.
  { const std::jthread a(write, "a"), b(write, "b"), c(write, "c"); }
  EXPECT_EQ(std::ranges::count(contentOf(path_), '='), 3 * each);
}

}  // namespace
}  // namespace pelorino
