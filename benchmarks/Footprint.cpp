// What the library costs the process of the host, measured from outside.

#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <thread>
#include <utility>
#include <vector>

#include "LocalBackend.h"
#include "Process.h"
#include "Table.h"
#include "TemporaryFolder.h"

using namespace pelorino;
using namespace pelorino::bench;
namespace files = std::filesystem;

namespace {

/// The sum of the lines of this name in the kernel's account of the process's memory, in MB.
double megabytes(pid_t pid, const std::string& name) {
  std::ifstream account("/proc/" + std::to_string(pid) + "/smaps_rollup");
  double kilobytes = 0;
  for (std::string line; std::getline(account, line);) {
    if (line.starts_with(name + ":")) kilobytes += std::stod(line.substr(name.size() + 1));
  }
  return kilobytes / 1024;
}

double threads(pid_t pid) {
  const files::directory_iterator tasks("/proc/" + std::to_string(pid) + "/task");
  return static_cast<double>(std::distance(files::begin(tasks), files::end(tasks)));
}

/// What a host prints at its start.
double startOf(std::vector<std::string> command) {
  Process host(std::move(command));
  const auto lines = host.waitForLines([](const std::string&) { return true; });
  if (lines.empty()) throw std::runtime_error("the host did not start");
  return std::stod(lines.front());
}

double strippedMegabytes(const TemporaryFolder& folder) {
  const std::string copy = folder.file("stripped.so");
  Process strip({"/usr/bin/strip", "--strip-unneeded", "-o", copy, PELORINO_LIBRARY});
  if (strip.waitForExit() != 0) throw std::runtime_error("strip failed");
  return static_cast<double>(files::file_size(copy)) / 1e6;
}

}  // namespace

int main(int argc, char** argv) {
  const TemporaryFolder folder;
  LocalBackend backend(10);
  measure("size", 1,
          {{.work = "The library, stripped",
            .unit = "MB",
            .value = "size",
            .goal = Goal::valueAtMost(1)}},
          [&](Values& values) { values["size"] = strippedMegabytes(folder); });
  measure("initialize", 31,
          {{.work = "initialize on the host's thread, beside the start of a bare thread",
            .unit = "us",
            .value = "first",
            .reference = "thread",
            .goal = Goal::valueAtMost(50)},
           {.work = "  a later launch",
            .unit = "us",
            .value = "later",
            .reference = "thread",
            .goal = Goal::valueAtMost(50)},
           {.work = "  with another thread started before, as for a bare one then",
            .unit = "us",
            .value = "used",
            .reference = "usedThread",
            .goal = Goal::valueAtMost(50)}},
          [&, launch = 0](Values& values) mutable {
            const std::string data = folder.file("launch" + std::to_string(++launch));
            values.inTurn(
                [&] {
                  values["first"] = startOf({PELORINO_IDLE_HOST, data, backend.url()});
                  values["later"] = startOf({PELORINO_IDLE_HOST, data, backend.url()});
                  values["used"] = startOf({PELORINO_IDLE_HOST, data, backend.url(), "used"});
                },
                [&] {
                  values["thread"] = startOf({PELORINO_BARE_HOST, data, backend.url(), "thread"});
                  values["usedThread"] =
                      startOf({PELORINO_BARE_HOST, data, backend.url(), "thread", "used"});
                });
          });
  measure("idle", 3,
          {{.work = "Idle memory that is the process's own (written to), over a bare host",
            .unit = "MB",
            .value = "dirty",
            .goal = Goal::valueAtMost(2.5)},
           {.work = "  all resident memory, shared libraries included",
            .unit = "MB",
            .value = "resident"},
           {.work = "Threads of the library when idle",
            .unit = "",
            .value = "threads",
            .goal = Goal::valueAtMost(2)}},
          [&, launch = 0](Values& values) mutable {
            const std::string data = folder.file("idle" + std::to_string(++launch));
            Process host({PELORINO_IDLE_HOST, data, backend.url()});
            Process bare({PELORINO_BARE_HOST, data, backend.url()});
            // Queues let go of their threads after ten seconds.
            std::this_thread::sleep_for(std::chrono::seconds(13));
            const auto over = [&](const char* name) {
              return megabytes(host.pid(), name) - megabytes(bare.pid(), name);
            };
            values["dirty"] = over("Private_Dirty");
            values["resident"] = over("Rss");
            values["threads"] = threads(host.pid()) - threads(bare.pid());
          });
  return run(argc, argv);
}
