#pragma once

#include <chrono>
#include <filesystem>
#include <fstream>
#include <functional>
#include <string>
#include <thread>

namespace pelorino {

/// Far beyond what anything here takes, also under a sanitizer on a busy machine.
constexpr std::chrono::seconds patience{20};

/// Polls; false when it did not come true in time.
inline bool comesTrue(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + patience;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(1));
  }
  return true;
}

/// Threads of this process that carry the name.
inline int threadsNamed(const std::string& name) {
  int count = 0;
  for (const auto& task : std::filesystem::directory_iterator("/proc/self/task")) {
    std::string found;
    std::getline(std::ifstream(task.path() / "comm"), found);
    count += found == name ? 1 : 0;
  }
  return count;
}

}  // namespace pelorino
