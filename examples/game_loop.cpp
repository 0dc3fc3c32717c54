// The smallest game that reports what its player does.
//
//   game_loop [BACKEND_URL]
//
// Without a URL the reports go to the library's built-in backend.

#include <pelorino/PLRAnalytics.h>
#include <pelorino/PLREngineWrapper.h>
#include <pelorino/PLRHost.h>

#include <chrono>
#include <cstdio>
#include <thread>

namespace {

using namespace std::chrono_literals;

constexpr auto frame = 16ms;
constexpr int framesOfTheGame = 180;
constexpr int framesPerEnemy = 60;

void reportVictory(int enemy, int frameNumber) {
  PLRCustomEventParameters parameters;
  parameters.add("enemy", "slime");
  parameters.add("number", enemy);
  parameters.add("seconds", frameNumber * 0.016);
  parameters.add("flawless", enemy % 2 == 0);
  // Copies its arguments, hands the work to a queue of the library and returns: a frame does not
  // wait for the disk or the network.
  PLRAnalytics::customEvent("enemy_defeated", parameters);
}

void playGame() {
  int enemy = 0;
  for (int number = 1; number <= framesOfTheGame; ++number) {
    if (number % framesPerEnemy == 0) reportVictory(++enemy, number);
    std::this_thread::sleep_for(frame);
  }
}

}  // namespace

int main(int argc, char** argv) {
  // The library prints nothing by itself. This may run on any of its threads.
  PLREngineWrapper::setEngineLoggerMessageClosure(
      [](PLRLogLevel, const std::string& line) { std::fprintf(stderr, "%s\n", line.c_str()); });

  PLRHostDescription game;
  game.applicationName = "Slime Hunter";
  game.applicationVersion = "1.4.0";
  game.bundleIdentifier = "com.example.slimehunter";
  PLRHost::describe(game);

  if (argc > 1) PLRAnalytics::setTestProxyUrl(argv[1]);

  PLRAnalyticsConfiguration configuration;
  configuration.logLevel = PLRLogLevel::info;
  configuration.userId = "player-1";
  PLRAnalytics::initialize("example-application-key", configuration);

  playGame();

  // The player leaves. When this returns everything reported is on disk; what the network has not
  // taken by now goes out at the next start.
  PLRHost::willTerminate();
}
