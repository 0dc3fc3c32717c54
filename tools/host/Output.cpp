#include "Output.h"

#include <cstdio>
#include <mutex>
#include <string>

namespace pelorino::host {

void writeLine(const boost::json::object& line) {
  const std::string text = boost::json::serialize(line) + "\n";
  // Threads of the library may still write while the process exits.
  static std::mutex& mutex = *new std::mutex;
  const std::lock_guard lock(mutex);
  std::fwrite(text.data(), 1, text.size(), stdout);
  std::fflush(stdout);
}

}  // namespace pelorino::host
