#pragma once

#include <string>

#include "View.h"

namespace pelorino {

/// What the host reports is stored: the call of an operation leaves its event, or its sum, unless
/// the library has not started, tracking is off, there is no session, the backend has excluded the
/// event, or the disk refuses it.
class CallRule final : public Rule {
 public:
  void onRecord(const Record& record, View& view) override;
  void onStatement(const StatementRecord& statement, bool isKept, View& view) override;

 private:
  /// Whether the call that the queue is at must leave a trace, as things are.
  [[nodiscard]] static bool mustBeStored(const View& view);
  void finish(const View& view);

  bool isDemanded_ = false;
  int found_ = 0;
};

}  // namespace pelorino
