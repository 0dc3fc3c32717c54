#include <pelorino/PLRAnalytics.h>
#include <pelorino/PLRHost.h>

#include <iostream>
#include <string>

// host BACKEND FOLDER: reports one event and stays until a line arrives on the standard input.
int main(int, char** arguments) {
  PLRHostDescription description;
  description.supportDirectory = std::string(arguments[2]) + "/support";
  description.keyStoreFile = std::string(arguments[2]) + "/keys";
  PLRHost::describe(description);
  PLRAnalytics::setTestProxyUrl(arguments[1]);
  PLRAnalytics::initialize("consumer-key");

  PLRCustomEventParameters parameters;
  parameters.add("built", "outside");
  PLRAnalytics::customEvent("consumer", parameters);
  PLRAnalytics::sendBufferedEvents();

  std::string line;
  std::getline(std::cin, line);
}
