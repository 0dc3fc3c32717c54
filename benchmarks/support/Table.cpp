#include "Table.h"

#include <benchmark/benchmark.h>
#include <fmt/format.h>
#include <unistd.h>

#include <algorithm>
#include <cstdio>
#include <deque>
#include <exception>
#include <memory>
#include <stdexcept>
#include <utility>

#include "Samples.h"

namespace pelorino::bench {
namespace {

struct Measurement {
  std::string name;
  std::vector<Row> rows;
  /// Why a repetition has failed. Google Benchmark is not told: its statistics break if the first
  /// repetition fails.
  std::string error = {};
};

/// A deque, since each is referred to by what it runs.
std::deque<Measurement>& measurements() {
  static auto& all = *new std::deque<Measurement>;
  return all;
}

std::string number(double value) {
  const double size = std::abs(value);
  return fmt::format("{:.{}f}", value, size >= 100 ? 0 : size >= 10 ? 1 : size >= 0.1 ? 2 : 4);
}

std::string line(std::string_view work, std::string_view measured, std::string_view reference,
                 std::string_view ratio, std::string_view goal, std::string_view met) {
  return fmt::format("{:<66} {:>34} {:>12} {:>20} {:>14} {:>4}\n", work, measured, reference, ratio,
                     goal, met);
}

std::string rangeOf(const Samples& samples, std::string_view unit) {
  return fmt::format("{} {} ({}..{})", number(samples.median()), unit, number(samples.least()),
                     number(samples.greatest()));
}

std::string goalText(const Row& row) {
  if (row.goal.of == Goal::Of::nothing) return "-";
  const bool isRatio = row.goal.of == Goal::Of::ratio;
  return fmt::format("{} {} {}", row.goal.isUpperBound ? "<=" : ">=", number(row.goal.bound),
                     isRatio ? "x" : row.unit);
}

std::string verdict(const Row& row, const Samples& values, const Samples& ratios) {
  if (row.goal.of == Goal::Of::nothing) return "-";
  const double reached = (row.goal.of == Goal::Of::ratio ? ratios : values).median();
  const bool isMet = row.goal.isUpperBound ? reached <= row.goal.bound : reached >= row.goal.bound;
  return isMet ? "yes" : "NO";
}

using Runs = std::vector<benchmark::BenchmarkReporter::Run>;

std::string lineOf(const Row& row, const Measurement& measurement, const Runs& runs) {
  if (!measurement.error.empty()) {
    return line(row.work, measurement.error, "", "", goalText(row), "NO");
  }
  Samples values;
  Samples references;
  Samples ratios;
  for (const auto& one : runs) {
    values.add(one.counters.at(std::string(row.value)));
    if (row.reference.empty()) continue;
    references.add(one.counters.at(std::string(row.reference)));
    ratios.add(one.counters.at(std::string(row.value)) / references.latest());
  }
  const bool hasReference = !row.reference.empty();
  return line(row.work, rangeOf(values, row.unit), hasReference ? number(references.median()) : "-",
              hasReference ? rangeOf(ratios, "x") : "-", goalText(row),
              verdict(row, values, ratios));
}

/// The standard output as it was, while what the library prints there goes to the standard error.
std::FILE* openTable() {
  std::fflush(stdout);
  std::FILE* table = ::fdopen(::dup(STDOUT_FILENO), "w");
  if (table == nullptr || ::dup2(STDERR_FILENO, STDOUT_FILENO) < 0) {
    throw std::runtime_error("no standard output");
  }
  return table;
}

class TableReporter final : public benchmark::BenchmarkReporter {
 public:
  bool ReportContext(const Context&) override { return true; }

  void ReportRuns(const Runs& runs) override {
    // The second of two calls for a measurement brings aggregates, which the rows do not use.
    if (runs.empty() || runs.front().run_type != Run::RT_Iteration) return;
    const auto found = std::ranges::find_if(measurements(), [&](const Measurement& measurement) {
      return runs.front().run_name.function_name == measurement.name;
    });
    if (found == measurements().end()) return;
    for (const Row& row : found->rows) std::fputs(lineOf(row, *found, runs).c_str(), table_);
    std::fflush(table_);
    hasFailed_ |= !found->error.empty();
  }

  [[nodiscard]] bool hasFailed() const { return hasFailed_; }

 private:
  std::FILE* const table_ = openTable();
  bool hasFailed_ = false;
};

}  // namespace

void measure(std::string_view name, int repetitions, std::vector<Row> rows,
             std::function<void(Values&)> repetition) {
  Measurement& measurement =
      measurements().emplace_back(Measurement{std::string(name), std::move(rows)});
  const auto count = std::make_shared<int>(0);
  benchmark::RegisterBenchmark(
      measurement.name.c_str(),
      [&measurement, count, repetition = std::move(repetition)](benchmark::State& state) {
        Values values;
        values.referenceFirst_ = (*count)++ % 2 == 1;
        for (auto _ : state) {
          try {
            repetition(values);
          } catch (const std::exception& error) {
            measurement.error = error.what();
          }
        }
        for (const auto& [key, value] : values.all()) state.counters[key] = value;
      })
      ->Iterations(1)
      ->Repetitions(repetitions);
}

int run(int argc, char** argv) {
  benchmark::Initialize(&argc, argv);
  if (benchmark::ReportUnrecognizedArguments(argc, argv)) return 2;
  TableReporter table;
  const std::size_t count = benchmark::RunSpecifiedBenchmarks(&table);
  return count > 0 && !table.hasFailed() ? 0 : 1;
}

std::string header() {
  return line("work", "median (range)", "reference", "ratio (range)", "goal", "met?");
}

}  // namespace pelorino::bench
