#include "StatementWatch.h"

#define SQLITE_ENABLE_PREUPDATE_HOOK
#include <sqlite3.h>

#include <sstream>
#include <stdexcept>
#include <string>
#include <utility>

namespace pelorino {
namespace {

struct State {
  StatementWatch::Listener listener;
  bool isUndone = false;
  std::int64_t statementsLeft = -1;
  std::function<void()> die;
};

/// Never destroyed: the library's threads may be at work while the process exits.
State& state = *new State;

Cell textOf(sqlite3_value* value) {
  const auto* text = reinterpret_cast<const char*>(sqlite3_value_text(value));
  if (text == nullptr) return std::nullopt;
  return std::string(text, static_cast<std::size_t>(sqlite3_value_bytes(value)));
}

/// The verb and the table of a statement; other statements have no table.
Row verbAndTable(const char* sql) {
  std::istringstream words(sql);
  std::string verb, table;
  words >> verb;
  if (verb == "UPDATE") words >> table;
  if (verb == "INSERT" || verb == "DELETE") words >> table >> table;
  return {verb, table.substr(0, table.find_first_of("(; "))};
}

void changeRow(void*, sqlite3* database, int operation, const char*, const char* table,
               sqlite3_int64 before, sqlite3_int64 after) {
  Row fields = {operation == SQLITE_INSERT   ? "INSERT"
                : operation == SQLITE_UPDATE ? "UPDATE"
                                             : "DELETE",
                table, std::to_string(operation == SQLITE_DELETE ? before : after)};
  const int columns = operation == SQLITE_DELETE ? 0 : sqlite3_preupdate_count(database);
  for (int i = 0; i < columns; ++i) {
    sqlite3_value* value = nullptr;
    if (sqlite3_preupdate_new(database, i, &value) != SQLITE_OK) value = nullptr;
    fields.push_back(value == nullptr ? Cell() : textOf(value));
  }
  state.listener(Record::Kind::rowChange, std::move(fields));
}

int trace(unsigned kind, void*, void*, void* text) {
  if (kind == SQLITE_TRACE_STMT) {
    if (state.statementsLeft >= 0 && state.statementsLeft-- == 0) state.die();
    state.isUndone = false;
    state.listener(Record::Kind::statement, verbAndTable(static_cast<const char*>(text)));
  } else {
    state.listener(Record::Kind::statementEnds, {state.isUndone ? "undone" : "kept"});
  }
  return 0;
}

int watchDatabase(sqlite3* database, const char**, const void*) {
  sqlite3_preupdate_hook(database, changeRow, nullptr);
  sqlite3_rollback_hook(
      database, [](void*) { state.isUndone = true; }, nullptr);
  return sqlite3_trace_v2(database, SQLITE_TRACE_STMT | SQLITE_TRACE_PROFILE, trace, nullptr);
}

}  // namespace

void StatementWatch::install(Listener listener) {
  state.listener = std::move(listener);
  if (sqlite3_auto_extension(reinterpret_cast<void (*)()>(watchDatabase)) != SQLITE_OK) {
    throw std::runtime_error("SQLite cannot be watched");
  }
}

void StatementWatch::dieAfter(std::int64_t statements, std::function<void()> die) {
  state.die = std::move(die);
  state.statementsLeft = statements;
}

}  // namespace pelorino
