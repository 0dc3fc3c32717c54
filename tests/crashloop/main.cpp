// crash_loop LIVES [SEED]: kills an application so many times and fails if an event that was stored
// is lost, or sent again without a kill or a lost answer as the reason; or if what comes over from
// an earlier generation, or the list of categories, is not whole in the end.
#include <cstdlib>
#include <iostream>
#include <random>
#include <string>

#include "CrashLoop.h"

int main(int count, char** arguments) {
  using pelorino::blackbox::CrashLoop;
  if (count < 2) return EXIT_FAILURE;
  const int lives = std::stoi(arguments[1]);
  const unsigned seed =
      count > 2 ? static_cast<unsigned>(std::stoul(arguments[2])) : std::random_device{}();
  CrashLoop loop(seed);
  for (int i = 0; i < lives; ++i) {
    loop.live();
    if (i % 10 == 0) loop.comeOver();
  }
  const bool isRecovered = loop.recover();
  const CrashLoop::Account account = loop.account();
  std::cout << "seed " << seed << ", kills " << lives << ", stored " << account.stored
            << ", reports repeated " << account.repeatedDeliveries << ", answers lost "
            << account.lostAnswers << ", came over " << account.cameOver << ", killed amid that "
            << account.cutShort << ", database " << account.integrity << "\n";
  for (const auto& name : account.lost) std::cout << "lost: " << name << "\n";
  for (const auto& uuid : account.sentAfterSuccess) std::cout << "sent again: " << uuid << "\n";
  for (const auto& uuid : account.keptTooLong) std::cout << "kept too long: " << uuid << "\n";
  for (const auto& stored : account.wronglyCameOver) std::cout << "came over: " << stored << "\n";
  if (!account.repeatedCategories.empty()) {
    std::cout << "categories stored twice: " << account.repeatedCategories << "\n";
  }
  if (!account.hasLastCategories) std::cout << "the last categories are not stored\n";
  if (!isRecovered) std::cout << "the last life has not delivered everything\n";
  // A kill can interrupt one delivery, and seldom keeps more than one from being deleted.
  const auto reasons = static_cast<std::size_t>(lives) + account.lostAnswers;
  const bool isGood = isRecovered && account.stored > 0 && account.lost.empty() &&
                      account.sentAfterSuccess.empty() && account.keptTooLong.empty() &&
                      account.repeatedDeliveries <= reasons && account.integrity == "ok" &&
                      account.repeatedCategories.empty() && account.wronglyCameOver.empty() &&
                      account.hasLastCategories;
  return isGood ? EXIT_SUCCESS : EXIT_FAILURE;
}
