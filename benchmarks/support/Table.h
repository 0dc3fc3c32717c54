#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace pelorino::bench {

/// The goal for a measured value, or for its ratio to the reference.
struct Goal {
  enum class Of { nothing, value, ratio };
  Of of = Of::nothing;
  bool isUpperBound = true;
  double bound = 0;

  static constexpr Goal valueAtMost(double bound) { return {Of::value, true, bound}; }
  static constexpr Goal ratioAtMost(double bound) { return {Of::ratio, true, bound}; }
  static constexpr Goal ratioAtLeast(double bound) { return {Of::ratio, false, bound}; }
};

/// One line of the table.
struct Row {
  std::string_view work;
  std::string_view unit;
  std::string_view value;           ///< Key of the measured value in each repetition.
  std::string_view reference = {};  ///< Key of what it is compared with, if anything.
  Goal goal = {};
};

/// What one repetition has measured, in the units of its rows. A repetition measures the work and
/// its reference one after the other, so that both see the same machine.
class Values final {
 public:
  double& operator[](std::string_view key) { return values_[std::string(key)]; }
  [[nodiscard]] const std::map<std::string, double>& all() const { return values_; }

  /// In even repetitions the work goes first, in odd ones the reference.
  template <class Work, class Reference>
  void inTurn(Work work, Reference reference) {
    if (referenceFirst_) reference();
    work();
    if (!referenceFirst_) reference();
  }

 private:
  friend void measure(std::string_view, int, std::vector<Row>, std::function<void(Values&)>);
  std::map<std::string, double> values_;
  bool referenceFirst_ = false;
};

/// Adds a measurement to the program: `repetition` is run `repetitions` times, and each row shows
/// the median and the range over them. Call it before run(). A repetition that throws fails all
/// its rows, which is shown.
void measure(std::string_view name, int repetitions, std::vector<Row> rows,
             std::function<void(Values&)> repetition);

/// Runs all measurements, prints their rows on the standard output and all else on the standard
/// error. Takes the options of Google Benchmark. Its result is that of `main`: 0 when everything
/// was measured, whether the goals are met or not.
int run(int argc, char** argv);

/// The line above the rows.
std::string header();

}  // namespace pelorino::bench
