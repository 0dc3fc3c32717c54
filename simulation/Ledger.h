#pragma once

#include <memory>
#include <string>
#include <vector>

#include "Record.h"
#include "View.h"

namespace pelorino {

/// Keeps account of one play over all lives of its process, and holds every rule against it.
class Ledger final {
 public:
  Ledger();

  void beginLife();
  void apply(const Record& record);
  /// The process is gone; the database file shows what it has left.
  void endLife(const std::string& databasePath);
  void endPlay();

  [[nodiscard]] const std::vector<std::string>& findings() const { return findings_; }
  [[nodiscard]] std::int64_t clock() const { return view_.time; }
  [[nodiscard]] std::int64_t sessionTimeout() const;

 private:
  void log(const std::string& line);
  void endStatement(bool isErrorNext);
  void doubt(const StatementRecord& statement);
  void start();

  View view_;
  std::vector<std::unique_ptr<Rule>> rules_;
  StatementRecord statement_;
  std::map<std::string, MadeCall> calls_;
  std::vector<std::string> findings_;
};

}  // namespace pelorino
