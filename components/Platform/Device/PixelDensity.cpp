#include "PixelDensity.h"

#include <charconv>
#include <limits>
#include <string>
#include <utility>

namespace pelorino {
namespace {

struct Range {
  int first;
  int last;
  [[nodiscard]] constexpr bool holds(int number) const { return first <= number && number <= last; }
};

struct Row {
  std::string_view family;
  Range major;
  Range minor;
  std::int64_t ppi;
};

constexpr Range any = {0, std::numeric_limits<int>::max()};

constexpr Row rows[] = {
    {"iPhone", {1, 2}, any, 163},      {"iPhone", {3, 6}, any, 326},
    {"iPhone", {7, 7}, {2, 2}, 326},   {"iPhone", {8, 8}, {1, 1}, 326},
    {"iPhone", {8, 8}, {4, 4}, 326},   {"iPhone", {9, 9}, {1, 1}, 326},
    {"iPhone", {9, 9}, {3, 3}, 326},   {"iPhone", {10, 10}, {1, 1}, 326},
    {"iPhone", {10, 10}, {4, 4}, 326}, {"iPhone", {11, 11}, {8, 8}, 326},
    {"iPhone", {12, 12}, {1, 1}, 326}, {"iPhone", {12, 12}, {8, 8}, 326},
    {"iPhone", {7, 7}, {1, 1}, 401},   {"iPhone", {8, 8}, {2, 2}, 401},
    {"iPhone", {9, 9}, {2, 2}, 401},   {"iPhone", {9, 9}, {4, 4}, 401},
    {"iPhone", {10, 10}, {2, 2}, 401}, {"iPhone", {10, 10}, {5, 5}, 401},
    {"iPhone", {10, 10}, {3, 3}, 458}, {"iPhone", {10, 10}, {6, 6}, 458},
    {"iPhone", {11, 11}, {2, 6}, 458}, {"iPhone", {12, 12}, {3, 5}, 458},
    {"iPhone", {13, 13}, {4, 4}, 458}, {"iPhone", {13, 13}, {2, 3}, 460},
    {"iPhone", {13, 13}, {1, 1}, 476}, {"iPad", {1, 1}, {1, 4}, 132},
    {"iPad", {2, 2}, {1, 4}, 132},     {"iPad", {2, 2}, {5, 7}, 163},
    {"iPad", {3, 3}, {1, 6}, 264},     {"iPad", {5, 5}, {3, 4}, 264},
    {"iPad", {11, 11}, {1, 4}, 264},   {"iPad", {11, 11}, {6, 7}, 264},
    {"iPad", {6, 8}, any, 264},        {"iPad", {4, 4}, {4, 9}, 326},
    {"iPad", {5, 5}, {1, 2}, 326},     {"iPad", {13, 13}, {1, 2}, 326},
    {"iPod", {1, 3}, any, 163},        {"iPod", {4, 9}, any, 326},
};

constexpr std::string_view digitsAndComma = "0123456789,";
constexpr std::string_view trimmed = "0123456789,.";

std::string_view family(std::string_view model) {
  const std::size_t first = model.find_first_not_of(trimmed);
  if (first == std::string_view::npos) return {};
  return model.substr(first, model.find_last_not_of(trimmed) - first + 1);
}

/// Takes the next piece that is not empty off the front, as a number; 0 when there is none or it is
/// too large for one.
int takeNumber(std::string_view& pieces) {
  const std::size_t start = pieces.find_first_not_of(',');
  pieces.remove_prefix(start == std::string_view::npos ? pieces.size() : start);
  const std::string_view piece = pieces.substr(0, pieces.find(','));
  int number = 0;
  std::from_chars(piece.data(), piece.data() + piece.size(), number);
  pieces.remove_prefix(piece.size());
  return number;
}

std::pair<int, int> version(std::string_view model) {
  std::string kept;
  for (const char c : model) {
    if (digitsAndComma.find(c) != std::string_view::npos) kept += c;
  }
  std::string_view pieces = kept;
  const int major = takeNumber(pieces);
  return {major, takeNumber(pieces)};
}

}  // namespace

std::optional<std::int64_t> pixelDensity(std::string_view model) {
  const std::string_view name = family(model);
  const auto [major, minor] = version(model);
  for (const Row& row : rows) {
    if (row.family == name && row.major.holds(major) && row.minor.holds(minor)) return row.ppi;
  }
  return std::nullopt;
}

}  // namespace pelorino
