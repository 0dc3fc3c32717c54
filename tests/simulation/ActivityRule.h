#pragma once

#include "View.h"

namespace pelorino {

/// Sessions, timers, and the silence while tracking is off.
///
/// A session opens when the active user was last seen longer ago than the time-out, or never; not
/// when it was exactly so long ago. Timers tick while the application is in the foreground, and
/// from the arrival of a configuration on. Nothing is stored while tracking is off. A user goes
/// only to make room for a rename, or when users are not told apart any more.
class ActivityRule final : public Rule {
 public:
  void onRecord(const Record& record, View& view) override;
  void onStatement(const StatementRecord& statement, bool isKept, View& view) override;
  void onStart(View& view) override;

 private:
  enum class Due { nothing, session, firstEvent };

  void beginActivity(const View& view);
  void checkDue(const Record& statement, View& view);
  void checkTimers(const Record& rest, View& view);
  void changeUsers(const StatementRecord& statement, View& view);
  void changeProject(const StatementRecord& statement, View& view);

  Due due_ = Due::nothing;
  std::int64_t openedAt_ = 0;
  bool isRunning_ = false;  ///< The timers.
  bool areUsersMerged_ = false;
};

}  // namespace pelorino
