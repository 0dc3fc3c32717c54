#include <gtest/gtest.h>

#include <limits>

#include "Connection.h"
#include "SQLiteError.h"
#include "Statement.h"

namespace pelorino {
namespace {

class StatementTest : public ::testing::Test {
 protected:
  /// The one value that the query gives for the argument.
  std::optional<std::string> text(const std::string& sql, std::optional<SQLiteValue> argument) {
    Statement statement(database_, sql, {&argument, 1});
    const auto row = statement.failableNext();
    return row ? row->text(0) : std::nullopt;
  }

  /// What running the statement throws, as it is printed; empty when it throws nothing.
  std::string failure(const std::string& sql, Statement::Values values = {}) {
    try {
      Statement statement(database_, sql, values);
      statement.makeIterator();
      while (const auto row = statement.failableNext()) {
        for (int i = 0; i < row->columnCount(); ++i) (void)row->value(i);
      }
    } catch (const std::exception& error) {
      return error.what();
    }
    return {};
  }

  Connection database_{":memory:"};
};

TEST_F(StatementTest, BindsEachKindOfValueAsOneStorageClass) {
  struct Case {
    const char* label;
    std::optional<SQLiteValue> value;
    const char* stored;
  };
  const Case cases[] = {
      {"absent", std::nullopt, "null NULL"},
      {"double", 0.5, "real 0.5"},
      {"whole double stays one", 2.0, "real 2.0"},
      {"integer", std::numeric_limits<std::int64_t>::min(), "integer -9223372036854775808"},
      {"true", true, "integer 1"},
      {"false", false, "integer 0"},
      {"text of several bytes a character", std::string("caf\u00e9 \U0001F1EB"),
       "text 'caf\u00e9 \U0001F1EB'"},
      {"text up to the first NUL", std::string("ab\0cd", 5), "text 'ab'"},
      {"apostrophe", std::string("it's"), "text 'it''s'"},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.label);
    EXPECT_EQ(text("SELECT typeof(?1) || ' ' || quote(?1)", c.value), c.stored);
  }
}

TEST_F(StatementTest, ReadsOnlyTheStorageClassThatIsAskedFor) {
  Statement statement(database_, "SELECT 7, 'x', 0.5, NULL, x'00', 'a' || char(0) || 'b'");
  const auto row = statement.failableNext();
  ASSERT_TRUE(row);
  EXPECT_EQ((*row)[0], std::nullopt);
  EXPECT_EQ(row->integer(0), 7);
  EXPECT_EQ(row->integer(1), std::nullopt);
  EXPECT_EQ(row->value(2), SQLiteValue(0.5));
  EXPECT_EQ(row->value(3), std::nullopt);
  EXPECT_EQ((*row)[4], std::nullopt);
  EXPECT_EQ((*row)[5], "a");
  EXPECT_EQ((*row)[row->columnCount()], std::nullopt);
}

TEST_F(StatementTest, FailuresSayWhatWasWrong) {
  const std::vector<std::optional<SQLiteValue>> two(2);
  EXPECT_EQ(failure("SELECT ?", two), "1 values expected, 2 passed (SELECT ?) (code: 21)");
  EXPECT_EQ(failure("SELECT x'00'"), "unsupported column type: 4 (SELECT x'00') (code: 20)");
  EXPECT_EQ(failure("SELEKT"), "SQLite error (code: 1)");
  EXPECT_EQ(failure(" \n-- nothing\n"), "EmptyStatementError()");
  EXPECT_EQ(failure("SELECT abs(-9223372036854775807 - 1)"), "integer overflow (code: 1)");
  EXPECT_THROW(database_.execute("INSERT INTO missing VALUES (1)"), SQLiteError);
}

TEST_F(StatementTest, NextEndsAtAFailure) {
  Statement statement(database_,
                      "SELECT 1 UNION ALL SELECT abs(-9223372036854775807 - 1) UNION ALL SELECT 3");
  EXPECT_TRUE(statement.next());
  EXPECT_FALSE(statement.next());
}

TEST_F(StatementTest, AnEmptyListOfValuesLeavesTheBindings) {
  const std::optional<SQLiteValue> value = std::string("kept");
  Statement statement(database_, "SELECT ?", {&value, 1});
  statement.bind(Statement::Values());
  const auto row = statement.failableNext();
  ASSERT_TRUE(row);
  EXPECT_EQ(row->text(0), "kept");
}

}  // namespace
}  // namespace pelorino
