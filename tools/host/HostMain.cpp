// A console host: reads one JSON command a line and calls the library.

#include <fmt/format.h>
#include <pelorino/PLRAnalytics.h>
#include <pelorino/PLREngineWrapper.h>
#include <pelorino/PLRHost.h>

#include <boost/json.hpp>
#include <fstream>
#include <iostream>
#include <span>
#include <string>

#include "Arguments.h"
#include "Commands.h"
#include "Description.h"
#include "Output.h"

namespace {

using namespace pelorino::host;

constexpr const char* usage =
    "usage: pelorino-host [--describe JSON] [--backend URL] [--stop-on-error] [FILE]\n"
    "\n"
    "Runs the JSON commands of FILE, or of the standard input, one a line.\n"
    "\n"
    "  --describe JSON   what the application and its device are\n"
    "  --backend URL     the backend's origin, such as http://127.0.0.1:8080\n"
    "  --stop-on-error   stop at the first line that is no valid command\n";

constexpr int exitUsage = 64;
constexpr int exitBadLines = 2;

struct Options {
  bool stopOnError = false;
  std::string file;
};

/// Calls the library for what the options ask of it.
Options apply(std::span<char*> arguments) {
  Options options;
  std::size_t next = 1;
  const auto take = [&]() -> std::string {
    if (next >= arguments.size()) throw CommandError("a value is missing");
    return arguments[next++];
  };
  while (next < arguments.size()) {
    const std::string option = take();
    if (option == "--describe") {
      boost::system::error_code error;
      const boost::json::value description = boost::json::parse(take(), error);
      if (error || !description.is_object()) throw CommandError("--describe is no JSON object");
      describeHost(Arguments(description.get_object()));
    } else if (option == "--backend") {
      PLRAnalytics::setTestProxyUrl(take());
    } else if (option == "--stop-on-error") {
      options.stopOnError = true;
    } else if (option.starts_with("--") || !options.file.empty()) {
      throw CommandError("unknown option: " + option);
    } else {
      options.file = option;
    }
  }
  return options;
}

/// False when a line was no valid command.
bool runLines(std::istream& lines, bool stopOnError) {
  bool valid = true;
  std::int64_t number = 0;
  for (std::string line; std::getline(lines, line);) {
    ++number;
    if (line.find_first_not_of(" \t\r") == std::string::npos) continue;
    try {
      runCommand(line);
    } catch (const CommandError& error) {
      writeLine({{"error", error.what()}, {"line", number}});
      valid = false;
      if (stopOnError) break;
    }
  }
  return valid;
}

}  // namespace

int main(int argc, char** argv) {
  PLREngineWrapper::setEngineLoggerMessageClosure([](PLRLogLevel level, const std::string& line) {
    writeLine({{"log", line}, {"level", description(level)}});
  });
  Options options;
  std::ifstream file;
  try {
    options = apply({argv, static_cast<std::size_t>(argc)});
    if (!options.file.empty()) file.open(options.file);
    if (file.fail()) throw CommandError("cannot read " + options.file);
  } catch (const CommandError& error) {
    std::cerr << "pelorino-host: " << error.what() << "\n" << usage;
    return exitUsage;
  }
  const bool valid = runLines(options.file.empty() ? std::cin : file, options.stopOnError);
  PLRHost::willTerminate();
  return valid ? 0 : exitBadLines;
}
