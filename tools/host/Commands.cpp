#include "Commands.h"

#include <fmt/format.h>
#include <pelorino/PLRAnalytics.h>
#include <pelorino/PLRAntiCheat.h>
#include <pelorino/PLREngineWrapper.h>
#include <pelorino/PLREventsRouter.h>
#include <pelorino/PLRHost.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <cstdlib>
#include <future>
#include <memory>
#include <thread>
#include <vector>

#include "Arguments.h"
#include "Command.h"
#include "Names.h"
#include "Output.h"
#include "SubscriptionCommands.h"
#include "TrackingCommands.h"
#include "UserCardCommands.h"

namespace pelorino::host {

namespace json = boost::json;

namespace {

/// How long `drain` waits where the queue cannot run, as after a start in the background.
constexpr std::chrono::milliseconds drainLimit{60'000};

class Listener final : public PLRIdentifiersListener {
  void didReceivePelorinoIdWith(std::int64_t pelorinoId) override {
    writeResult("didReceivePelorinoId", pelorinoId);
  }
};

PLRAnalyticsConfiguration configurationOf(const Arguments& fields) {
  fields.allowOnly({"logLevel", "userId", "currentLevel", "trackingAvailability"});
  PLRAnalyticsConfiguration configuration;
  if (const auto level = fields.maybeText("logLevel")) configuration.logLevel = logLevelOf(*level);
  configuration.userId = fields.maybeText("userId");
  configuration.currentLevel = fields.maybeInteger("currentLevel");
  if (const auto status = fields.maybeText("trackingAvailability")) {
    configuration.trackingAvailability = trackingStatusOf(*status);
  }
  return configuration;
}

void initialize(const Arguments& arguments) {
  const std::string key = arguments.text("applicationKey");
  if (!arguments.has("configuration")) return PLRAnalytics::initialize(key);
  PLRAnalytics::initialize(key, configurationOf(arguments.object("configuration")));
}

void logLevel(std::string_view op, const Arguments& arguments) {
  if (const auto level = arguments.maybeText("level")) {
    return PLRAnalytics::setLogLevel(logLevelOf(*level));
  }
  writeResult(op, nameOf(PLRAnalytics::logLevel()));
}

void setIdentifiersListener(const Arguments& arguments) {
  PLRAnalytics::setIdentifiersListener(arguments.boolean("on") ? std::make_shared<Listener>()
                                                               : nullptr);
}

/// Asks a question of the library: when its answer comes, all earlier calls have run. Likewise when
/// the question is dropped, as it is if the library is torn down before.
void drain(const Arguments& arguments) {
  const auto limit =
      std::chrono::milliseconds(arguments.maybeInteger("limitMs").value_or(drainLimit.count()));
  auto answered = std::make_shared<std::promise<void>>();
  const std::future<void> hasRun = answered->get_future();
  PLRAnalytics::getSDKVersion(
      [answered = std::move(answered)](const std::string&) { answered->set_value(); });
  if (hasRun.wait_for(limit) != std::future_status::ready) {
    throw CommandError(fmt::format("the queue has not run within {} ms", limit.count()));
  }
}

void setApplicationState(const Arguments& arguments) {
  PLRHost::setApplicationState(applicationStateOf(arguments.text("state")));
}

void echo(const Arguments& arguments) {
  writeResult("echo", arguments.text("text"));
}

void killSelf(const Arguments&) {
  ::kill(::getpid(), SIGKILL);
}

void sleepFor(const Arguments& arguments) {
  std::this_thread::sleep_for(std::chrono::milliseconds(arguments.integer("ms")));
}

void leave(const Arguments& arguments) {
  std::exit(static_cast<int>(arguments.maybeInteger("code").value_or(0)));
}

void setUserId(const Arguments& arguments) {
  PLRAnalytics::setUserId(arguments.text("userId"));
}

void replace(const Arguments& arguments) {
  PLRAnalytics::replace(arguments.text("fromUserId"), arguments.text("toUserId"));
}

void verifyPayment(std::string_view op, const Arguments& arguments) {
  const PLRAntiCheat::Handler handler = [op](const PLRVerifyResponse& response) {
    json::object result{{"receiptStatus", static_cast<int>(response.receiptStatus())}};
    if (const auto& words = response.verificationResult()) result["verificationResult"] = *words;
    writeResult(op, result);
  };
  const auto receipt = arguments.maybeText("receiptString");
  receipt ? PLRAntiCheat::verifyPayment(*receipt, handler) : PLRAntiCheat::verifyPayment(handler);
}

void getMessagingCategories(std::string_view op, const Arguments&) {
  PLREventsRouter::getMessagingCategories([op](const auto& categories) {
    json::array all;
    for (const PLRMessagingCategory& category : categories) {
      all.push_back(json::parse(category.json));
    }
    writeResult(op, all);
  });
}

void sendPushToken(const Arguments& arguments) {
  PLREventsRouter::sendPushToken(arguments.text("with"), arguments.boolean("andFlag"));
}

void sendPushOpened(const Arguments& arguments) {
  PLREventsRouter::sendPushOpened(arguments.integer("with"), arguments.integer("withID"),
                                  arguments.maybeText("withButton"));
}

void sendLogMessage(const Arguments& arguments) {
  PLREventsRouter::sendLogMessage(arguments.integer("with"), arguments.text("withMessage"));
}

/// The commands of starting and identity, and of the classes beside PLRAnalytics that are no more
/// than a few operations.
CommandTable basicCommands() {
  return {
      {"initialize",
       command({R"({"applicationKey":"key"})",
                R"({"applicationKey":"key","configuration":{"logLevel":"debug","userId":"ann",
                    "currentLevel":3,"trackingAvailability":"enable"}})"},
               initialize)},
      {"logLevel", command({"{}", R"({"level":"debug"})"}, logLevel)},
      {"getDeviceId", asking(PLRAnalytics::getDeviceId)},
      {"getSDKVersion", asking(PLRAnalytics::getSDKVersion)},
      {"getTrackingAvailability", asking(PLRAnalytics::getTrackingAvailability)},
      {"getUserId", asking(PLRAnalytics::getUserId)},
      {"getCurrentLevel", asking(PLRAnalytics::getCurrentLevel)},
      {"setTrackingAvailability", withBoolean("value", PLRAnalytics::setTrackingAvailability)},
      {"setUserId", command({R"({"userId":"ann"})", R"({"userId":""})"}, setUserId)},
      {"replace", command({R"({"fromUserId":"ann","toUserId":"bob"})"}, replace)},
      {"setCurrentLevel", withInteger("currentLevel", PLRAnalytics::setCurrentLevel)},
      {"setIdentifiersListener",
       command({R"({"on":true})", R"({"on":false})"}, setIdentifiersListener)},
      {"testLogs", plain(PLRAnalytics::testLogs)},
      {"setTestProxyUrl", withText("url", PLRAnalytics::setTestProxyUrl, "http://127.0.0.1:9")},
      {"getTestProxyUrl", asking(PLRAnalytics::getTestProxyUrl)},
      {"setTestCustomUrl", withText("url", PLRAnalytics::setTestCustomUrl, "")},
      {"getTestCustomUrl", asking(PLRAnalytics::getTestCustomUrl)},
      {"sdkFolderPath", answering(PLRAnalytics::sdkFolderPath)},
      {"clearKeychain", plain(PLRAnalytics::clearKeychain)},
      {"engine.destroySDK", plain(PLREngineWrapper::destroySDK)},
      {"engine.setSDKVersion", withText("version", PLREngineWrapper::setSDKVersion, "2.1.2")},
      {"engine.enableEditorMode", plain(PLREngineWrapper::enableEditorMode)},
      {"engine.unitySdkFolderPath", answering(PLREngineWrapper::unitySdkFolderPath)},
      {"engine.testString", withText("value", PLREngineWrapper::testString)},
      {"antiCheat.verifyPayment",
       command({"{}", R"({"receiptString":"cmVjZWlwdA=="})"}, verifyPayment)},
      {"eventsRouter.getMessagingCategories", command({"{}"}, getMessagingCategories)},
      {"eventsRouter.sendPushToken",
       command({R"({"with":"token","andFlag":true})"}, sendPushToken)},
      {"eventsRouter.sendPushOpened",
       command({R"({"with":1700000000000,"withID":7})",
                R"({"with":1700000000000,"withID":7,"withButton":"play"})"},
               sendPushOpened)},
      {"eventsRouter.sendLogMessage",
       command({R"({"with":3,"withMessage":"hello"})"}, sendLogMessage)},
      {"eventsRouter.isAnalyticsInited", answering<bool>(PLREventsRouter::isAnalyticsInited)},
      {"host.setApplicationState", command({R"({"state":"background"})"}, setApplicationState)},
      {"host.didBecomeActive", plain(PLRHost::didBecomeActive)},
      {"host.willResignActive", plain(PLRHost::willResignActive)},
      {"host.didEnterBackground", plain(PLRHost::didEnterBackground)},
      {"host.willTerminate", plain(PLRHost::willTerminate)},
  };
}

/// The commands of this tool itself.
const CommandTable& toolCommands() {
  static const CommandTable& table = *new CommandTable{
      {"sleep", command({R"({"ms":1})"}, sleepFor)},
      {"drain", command({R"({"limitMs":60000})"}, drain)},
      {"echo", command({R"({"text":"here"})"}, echo)},
      {"kill", command({"{}"}, killSelf)},
      {"exit", command({R"({"code":0})"}, leave)},
  };
  return table;
}

const CommandTable::value_type* find(std::string_view op) {
  for (const CommandTable* table : {&libraryCommands(), &toolCommands()}) {
    const auto found = table->find(op);
    if (found != table->end()) return &*found;
  }
  return nullptr;
}

json::value parse(std::string_view line) {
  // Passed on as they are: the library must cope with any bytes of a host.
  json::parse_options options;
  options.allow_invalid_utf8 = true;
  boost::system::error_code error;
  json::value value = json::parse(line, error, json::storage_ptr(), options);
  if (error) throw CommandError("no JSON: " + error.message());
  if (!value.is_object()) throw CommandError("no JSON object");
  return value;
}

}  // namespace

const CommandTable& libraryCommands() {
  static const CommandTable& table = *new CommandTable([] {
    CommandTable all = basicCommands();
    all.merge(trackingCommands());
    all.merge(userCardCommands());
    all.merge(subscriptionCommands());
    return all;
  }());
  return table;
}

void runCommand(std::string_view line) {
  const json::value value = parse(line);
  const Arguments arguments(value.get_object());
  const std::string op = arguments.text("op");
  const auto* found = find(op);
  if (!found) throw CommandError(fmt::format("unknown op \"{}\"", op));
  std::vector<std::string_view> fields{"op"};
  for (const json::object& sample : found->second.samples) {
    for (const auto& [field, ignored] : sample) fields.push_back(field);
  }
  arguments.allowOnly(fields);
  found->second.run(found->first, arguments);
}

}  // namespace pelorino::host
