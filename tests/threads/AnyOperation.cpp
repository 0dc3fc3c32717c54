#include "AnyOperation.h"

#include <pelorino/PLRUserCard.h>

#include <set>
#include <string_view>

#include "Commands.h"
#include "Output.h"

namespace pelorino {

/// Answers go nowhere.
void host::writeLine(const boost::json::object&) {}

namespace {

using Operations = std::vector<std::function<void()>>;

Operations commandsWithTheirSamples() {
  static const std::set<std::string_view> leftOut = {"engine.destroySDK", "setTestProxyUrl"};
  Operations operations;
  for (const auto& [op, command] : host::libraryCommands()) {
    if (leftOut.contains(op)) continue;
    for (const auto& sample : command.samples) {
      operations.emplace_back([op = op, &command = command, arguments = host::Arguments(sample)] {
        command.run(op, arguments);
      });
    }
  }
  return operations;
}

/// What no command does: handlers that call the library, and closures handed over and back.
Operations furtherCalls() {
  return {
      [] { PLRAnalytics::getDeviceId([](const std::string&) { PLRAnalytics::testLogs(); }); },
      [] { PLRAnalytics::getUserId([](const std::string&) { PLRHost::willResignActive(); }); },
      [] { PLRAnalytics::getCurrentLevel([](std::int64_t) { PLRHost::didBecomeActive(); }); },
      [] { PLRUserCard::getAge([](std::int64_t) { PLRUserCard::unset("key"); }); },
      [] { PLRAnalytics::getTestProxyUrl(PLRAnalytics::setTestProxyUrl); },
      [] { PLRAnalytics::setLoggerMessageClosure(PLRAnalytics::loggerMessageClosure()); },
      [] {
        PLREngineWrapper::setEngineLoggerMessageClosure([](PLRLogLevel, const std::string&) {});
      },
      [] { static_cast<void>(PLREngineWrapper::engineLoggerMessageClosure()); },
      [] { PLRHost::setStore(nullptr); },
  };
}

}  // namespace

const Operations& anyOperations() {
  static const Operations& operations = *new Operations([] {
    Operations all = commandsWithTheirSamples();
    std::ranges::move(furtherCalls(), std::back_inserter(all));
    return all;
  }());
  return operations;
}

}  // namespace pelorino
