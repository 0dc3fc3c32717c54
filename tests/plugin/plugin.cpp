// A part of a program that is loaded, used and unloaded, and the only one that uses the library.
#include <pelorino/PLRAnalytics.h>
#include <pelorino/PLREngineWrapper.h>
#include <pelorino/PLRHost.h>

#include <string>

/// Reports an event and leaves a delivery on its way.
extern "C" __attribute__((visibility("default"))) void play(const char* folder);
void play(const char* folder) {
  PLRHostDescription host;
  host.supportDirectory = folder;
  host.keyStoreFile = std::string(folder) + "/keys";
  PLRHost::describe(host);
  PLRAnalytics::setTestProxyUrl("http://127.0.0.1:9");
  PLRAnalytics::initialize("key");
  PLRAnalytics::customEvent("played");
  PLRAnalytics::sendBufferedEvents();
  PLRHost::willTerminate();
  PLREngineWrapper::destroySDK();
  PLRHost::willTerminate();  // Returns when it has been torn down and can be started again.
}
