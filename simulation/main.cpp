// Plays with the library as seeds choose, on virtual time, killing its process again and again, and
// tells where it broke a rule. A seed always plays the same.

#include <sys/mman.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <deque>
#include <stdexcept>
#include <string>
#include <string_view>
#include <vector>

#include "Dice.h"
#include "Ledger.h"
#include "Life.h"
#include "TemporaryFolder.h"

namespace pelorino {
namespace {

struct Options {
  std::uint64_t first = 1;
  std::uint64_t count = 1;
  std::uint64_t jobs = 1;
  bool isTelling = false;  ///< Every record is written.
};

/// Records of one life, from a process of its own.
void playLife(const LifePlan& plan, const std::function<void(const Record&)>& hear) {
  const int journal = ::memfd_create("journal", MFD_CLOEXEC);
  if (journal < 0) throw std::runtime_error("no journal");
  std::fflush(stdout);  // Or the life, which may write to it too, would write it once more.
  const pid_t child = ::fork();
  if (child < 0) throw std::runtime_error("no process");
  if (child == 0) {
    ::alarm(60);  // Seconds of real time. A life takes a few milliseconds, unless it hangs.
    live(plan, Journal(journal));
  }
  int status = 0;
  if (::waitpid(child, &status, 0) != child) throw std::runtime_error("the process is lost");
  JournalReader reader(journal);
  for (Record record; reader.next(record);) hear(record);
  if (status != 0) {
    hear({.kind = Record::Kind::finding,
          .time = plan.clock,
          .fields = {"the process ended with status " + std::to_string(status)}});
  }
}

/// False when a rule was broken.
bool play(std::uint64_t seed, const Options& options) {
  const TemporaryFolder folder;
  LifePlan plan{.seed = seed, .clock = 1'700'000'000'000, .folder = folder.path()};
  Dice dice(seed);
  Ledger ledger;
  std::deque<Record> lastRecords;
  const std::int64_t lives = 2 + dice.below(5);
  for (plan.number = 1; plan.number <= lives && ledger.findings().empty(); ++plan.number) {
    plan.isFaultless = plan.number == lives;
    plan.sessionTimeout = ledger.sessionTimeout();
    ledger.beginLife();
    playLife(plan, [&](const Record& record) {
      if (options.isTelling) std::printf("%s\n", record.description().c_str());
      if (ledger.findings().empty()) lastRecords.push_back(record);
      if (lastRecords.size() > 40) lastRecords.pop_front();
      if (record.kind == Record::Kind::end) {
        plan.keyStore.clear();
        for (std::size_t i = 1; i + 1 < record.fields.size(); i += 2) {
          plan.keyStore[record.text(i)] = record.text(i + 1);
        }
      }
      ledger.apply(record);
    });
    ledger.endLife(folder.file("pelorino/pelorino.db"));
    plan.clock = ledger.clock() +
                 dice.pick<std::int64_t>({0, 1, 10'000, ledger.sessionTimeout(), 3'600'000});
  }
  if (ledger.findings().empty()) ledger.endPlay();
  if (ledger.findings().empty()) return true;
  std::string text;
  for (const Record& record : lastRecords) {
    text += "    " + record.description().substr(0, 400) + "\n";
  }
  text += "seed " + std::to_string(seed) + ", life " + std::to_string(plan.number - 1) + ":\n";
  for (const std::string& finding : ledger.findings()) text += "  " + finding + "\n";
  text += "  play it again: simulation --seed " + std::to_string(seed) + " --tell\n";
  std::fputs(text.c_str(), stdout);
  std::fflush(stdout);
  return false;
}

/// The seeds that fall to this job. Returns how many broke a rule.
std::uint64_t playSeeds(const Options& options, std::uint64_t job) {
  std::uint64_t broken = 0;
  for (std::uint64_t i = job; i < options.count; i += options.jobs) {
    if (!play(options.first + i, options)) ++broken;
    if (i > 0 && i % 5'000 == 0) {
      std::fprintf(stderr, "about %llu seeds played\n", static_cast<unsigned long long>(i));
    }
  }
  return broken;
}

std::uint64_t playInJobs(const Options& options) {
  if (options.jobs == 1) return playSeeds(options, 0);
  std::vector<pid_t> jobs;
  for (std::uint64_t job = 0; job < options.jobs; ++job) {
    const pid_t child = ::fork();
    if (child < 0) throw std::runtime_error("no process");
    if (child == 0)
      ::_exit(static_cast<int>(std::min<std::uint64_t>(playSeeds(options, job), 100)));
    jobs.push_back(child);
  }
  std::uint64_t broken = 0;
  for (const pid_t job : jobs) {
    int status = 0;
    if (::waitpid(job, &status, 0) != job) throw std::runtime_error("a job is lost");
    broken += WIFEXITED(status) ? static_cast<std::uint64_t>(WEXITSTATUS(status)) : 1;
  }
  return broken;
}

Options optionsOf(int count, char** words) {
  Options options;
  const auto number = [&](int at) {
    if (at >= count) throw std::invalid_argument("a number is missing");
    return std::strtoull(words[at], nullptr, 10);
  };
  for (int i = 1; i < count; ++i) {
    const std::string_view word = words[i];
    if (word == "--seed") {
      options.first = number(++i);
    } else if (word == "--seeds") {
      options.first = number(++i);
      options.count = number(++i);
    } else if (word == "--jobs") {
      options.jobs = std::max<std::uint64_t>(1, number(++i));
    } else if (word == "--tell") {
      options.isTelling = true;
    } else {
      throw std::invalid_argument(
          "usage: simulation [--seed N | --seeds FROM COUNT] [--jobs N] [--tell]");
    }
  }
  return options;
}

}  // namespace
}  // namespace pelorino

int main(int count, char** words) {
  try {
    const pelorino::Options options = pelorino::optionsOf(count, words);
    const auto begin = std::chrono::steady_clock::now();
    const std::uint64_t broken = pelorino::playInJobs(options);
    const std::chrono::duration<double> spent = std::chrono::steady_clock::now() - begin;
    std::printf("%llu seeds in %.1f s, %llu broke a rule\n",
                static_cast<unsigned long long>(options.count), spent.count(),
                static_cast<unsigned long long>(broken));
    return broken == 0 ? 0 : 1;
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "simulation: %s\n", failure.what());
    return 2;
  }
}
