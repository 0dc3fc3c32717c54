#include <gtest/gtest.h>

#include <limits>

#include "Connection.h"
#include "SQLiteError.h"
#include "Statement.h"

namespace pelorino {
namespace {

class StatementTest : public ::testing::Test {
 protected:
  /// What reading all rows throws, as it is printed; empty when it throws nothing.
  std::string failure(const std::string& sql, SQLiteValues values = {}) {
    try {
      Statement statement(database_, sql, values);
      while (const auto row = statement.failableNext()) (void)row->value(0);
    } catch (const std::exception& error) {
      return error.what();
    }
    return {};
  }

  Connection database_{":memory:"};
};

TEST_F(StatementTest, BindsEachKindOfValueAsOneStorageClass) {
  const auto expectStored = [&](std::optional<SQLiteValue> value, const std::string& stored) {
    Statement statement(database_, "SELECT typeof(?1) || ' ' || quote(?1)", {&value, 1});
    EXPECT_EQ(statement.failableNext()->text(0), stored);
  };
  expectStored(std::nullopt, "null NULL");
  expectStored(2.0, "real 2.0");
  expectStored(std::numeric_limits<std::int64_t>::min(), "integer -9223372036854775808");
  expectStored(true, "integer 1");
  expectStored(std::string("it's caf\u00e9 \U0001F1EB"), "text 'it''s caf\u00e9 \U0001F1EB'");
  expectStored(std::string("up to a NUL\0cd", 14), "text 'up to a NUL'");
}

TEST_F(StatementTest, FailuresSayWhatWasWrong) {
  const std::vector<std::optional<SQLiteValue>> two(2);
  EXPECT_EQ(failure("SELECT ?", two), "1 values expected, 2 passed (SELECT ?) (code: 21)");
  EXPECT_EQ(failure("SELECT x'00'"), "unsupported column type: 4 (SELECT x'00') (code: 20)");
  EXPECT_EQ(failure("SELEKT"), "SQLite error (code: 1)");
  EXPECT_EQ(failure(" \n-- nothing\n"), "EmptyStatementError()");
  const std::string second = "SELECT 1 UNION ALL SELECT abs(-9223372036854775807 - 1)";
  EXPECT_EQ(failure(second), "integer overflow (code: 1)");
  Statement statement(database_, second);
  EXPECT_TRUE(statement.next());
  EXPECT_FALSE(statement.next());
}

}  // namespace
}  // namespace pelorino
