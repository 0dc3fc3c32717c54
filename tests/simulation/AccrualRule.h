#pragma once

#include <map>
#include <string>

#include "View.h"

namespace pelorino {

/// Currency that comes in is neither lost nor counted twice.
///
/// A credit adds its amount to one sum of the active user. Sums leave in an event that holds all of
/// that user's, and are deleted next. What the host has credited is at any time what such events
/// carry, what is still stored, and what was dropped for a known reason: tracking switched off, a
/// user removed, a disk that refused the event or the sum. A sum is told twice only when the
/// process died, or the disk refused the deletion, after its event was stored.
class AccrualRule final : public Rule {
 public:
  void onRecord(const Record& record, View& view) override;
  void onStatement(const StatementRecord& statement, bool isKept, View& view) override;
  void onStart(View& view) override;
  void onEndOfPlay(View& view) override;

 private:
  struct Sum {
    RowKey user = 0;
    std::string kind;         ///< Type, source and name.
    std::int64_t amount = 0;  ///< As the library remembers it.
    bool isForgotten = false;
    bool isReported = false;
  };

  static Sum sumOf(const Row& row);
  void add(const StatementRecord& statement, bool isKept, View& view);
  void addAmount(Sum& sum, const Change& change, bool isKept, View& view);
  void report(const StatementRecord& statement, View& view);
  void remove(const StatementRecord& statement, bool isKept, View& view);

  std::map<RowKey, Sum> sums_;
  RowKey flushed_ = 0;  ///< The user whose sums have just been reported, or refused by the disk.
  bool isDeletionDue_ = false;
  bool isUnknown_ = false;  ///< The disk has failed in a way that leaves the tally open.
  std::int64_t credited_ = 0;
  std::int64_t reported_ = 0;
  std::int64_t repeated_ = 0;
  std::int64_t dropped_ = 0;
};

}  // namespace pelorino
