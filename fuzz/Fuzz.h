#pragma once

#include <fuzzer/FuzzedDataProvider.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <string_view>

#include "Logger.h"

// What the fuzz targets share. A target is one program: the fuzzer calls its
// LLVMFuzzerTestOneInput() with one input after the other, on one thread.

namespace pelorino::fuzz {

/// The fuzzer takes the abort for a fault and keeps the input.
[[noreturn]] inline void fail(const char* what, const char* file, int line) {
  std::fprintf(stderr, "%s:%d: does not hold: %s\n", file, line, what);
  std::abort();
}

inline std::string_view textOf(const std::uint8_t* data, std::size_t size) {
  return {reinterpret_cast<const char*>(data), size};
}

/// Has every log line made, and none printed, from now on.
inline void makeAllLogLines() {
  [[maybe_unused]] static const bool isDone = [] {
    Logger::setLogLevel(PLRLogLevel::debug);
    Logger::setEngineLoggerMessageClosure([](PLRLogLevel, const std::string&) {});
    return true;
  }();
}

}  // namespace pelorino::fuzz

#define FUZZ_REQUIRE(condition) \
  ((condition) ? void() : pelorino::fuzz::fail(#condition, __FILE__, __LINE__))

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
