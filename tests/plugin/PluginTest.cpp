#include <dlfcn.h>
#include <gtest/gtest.h>

#include <chrono>
#include <thread>

#include "DatabaseFile.h"

namespace pelorino {
namespace {

TEST(Plugin, MayBeLoadedUsedAndUnloadedOverAndOver) {
  const DatabaseFile file;
  constexpr int rounds = 20;
  for (int round = 0; round < rounds; ++round) {
    void* plugin = ::dlopen(PLUGIN, RTLD_NOW | RTLD_LOCAL);
    ASSERT_NE(plugin, nullptr) << ::dlerror();
    auto* play = reinterpret_cast<void (*)(const char*)>(::dlsym(plugin, "play"));
    ASSERT_NE(play, nullptr);
    play(file.support().c_str());
    ASSERT_EQ(::dlclose(plugin), 0);
    EXPECT_EQ(::dlopen(PLUGIN, RTLD_NOW | RTLD_NOLOAD), nullptr) << "it has not been unloaded";
    // Threads of the library that were left at work run on in the meantime.
    std::this_thread::sleep_for(std::chrono::milliseconds(round));
  }
  EXPECT_EQ(file.run("SELECT sum((length(j) - length(replace(j, 'played', ''))) / 6) FROM (SELECT "
                     "packagesJson AS j FROM reports UNION ALL SELECT eventJson FROM events)"),
            std::to_string(rounds));
}

}  // namespace
}  // namespace pelorino
