#include "HostProcess.h"

#include <filesystem>
#include <fstream>
#include <stdexcept>

namespace pelorino::blackbox {

namespace json = boost::json;

namespace {

std::vector<std::string> commandLine(const DatabaseFile& file, const std::string& backendUrl,
                                     const json::object& description) {
  json::object fields{{"applicationName", "Black Box"},
                      {"applicationVersion", "1.0"},
                      {"bundleIdentifier", "com.example.blackbox"},
                      {"supportDirectory", file.support()},
                      {"keyStoreFile", file.support() + ".keys"}};
  for (const auto& [key, value] : description) fields[key] = value;
  return {PELORINO_HOST, "--backend", backendUrl, "--describe", json::serialize(fields)};
}

auto contains(std::string_view text) {
  return [text](const std::string& line) { return line.find(text) != std::string::npos; };
}

}  // namespace

bool comesTrue(const std::function<bool()>& condition) {
  const auto end = std::chrono::steady_clock::now() + Process::deadline;
  while (!condition()) {
    if (std::chrono::steady_clock::now() > end) return false;
    std::this_thread::sleep_for(std::chrono::milliseconds(10));
  }
  return true;
}

HostProcess::HostProcess(const DatabaseFile& file, const std::string& backendUrl,
                         const json::object& description)
    : file_(file), process_(commandLine(file, backendUrl, description)) {}

void HostProcess::initialize(const json::object& configuration) {
  json::object fields{{"logLevel", "debug"}};
  for (const auto& [key, value] : configuration) fields[key] = value;
  run(json::serialize(json::object{
      {"op", "initialize"}, {"applicationKey", "black-box"}, {"configuration", fields}}));
}

void HostProcess::customEvent(const std::string& name) {
  run(json::serialize(json::object{{"op", "customEvent"}, {"eventName", name}}));
}

std::string HostProcess::query(const std::string& sql) {
  std::string rows;
  const auto read = [&] {
    try {
      rows = file_.run(sql);
      return true;
    } catch (const std::runtime_error&) {
      return false;  // It was stopped in the midst of a write.
    }
  };
  if (!comesTrue([&] { return process_.whileStopped(read); })) {
    throw std::runtime_error("the database cannot be read");
  }
  return rows;
}

std::string HostProcess::waiting() {
  return query(
      "SELECT id, 'event', eventJson FROM events UNION ALL "
      "SELECT id, uuid, packagesJson FROM reports");
}

bool HostProcess::deliver() {
  return comesTrue([&] {
    sendBufferedEvents();
    return drain() && waiting().empty();
  });
}

bool HostProcess::drain() {
  const std::string mark = "drained " + std::to_string(++drains_);
  run(R"({"op":"drain"})");
  run(json::serialize(json::object{{"op", "echo"}, {"text", mark}}));
  return logs("\"" + mark + "\"");
}

bool HostProcess::logs(std::string_view text, std::size_t times) {
  return process_.waitForLines(contains(text), times).size() == times;
}

std::vector<std::string> HostProcess::linesWith(std::string_view text) {
  std::vector<std::string> list;
  for (std::string& line : process_.lines()) {
    if (contains(text)(line)) list.push_back(std::move(line));
  }
  return list;
}

int HostProcess::end() {
  process_.closeInput();
  return exitCode();
}

void HostProcess::kill() {
  process_.signal(SIGKILL);
  process_.waitForExit();
}

std::map<std::string, long> HostProcess::sleeps() const {
  std::map<std::string, long> counts;
  const std::string tasks = "/proc/" + std::to_string(process_.pid()) + "/task";
  for (const auto& task : std::filesystem::directory_iterator(tasks)) {
    const std::string field = "voluntary_ctxt_switches:";
    std::ifstream status(task.path() / "status");
    for (std::string line; std::getline(status, line);) {
      if (!line.starts_with(field)) continue;
      counts[task.path().filename()] = std::stol(line.substr(field.size()));
    }
  }
  return counts;
}

}  // namespace pelorino::blackbox
