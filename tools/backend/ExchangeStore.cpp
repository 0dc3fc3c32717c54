#include "ExchangeStore.h"

#include <sqlite3.h>

#include <boost/json.hpp>
#include <memory>
#include <stdexcept>
#include <string_view>

namespace pelorino::backend {

namespace json = boost::json;

namespace {

// The file may be read by `--account` while the server writes.
constexpr int busyTimeoutMilliseconds = 10'000;

constexpr const char* schema =
    "PRAGMA journal_mode = WAL;"
    "PRAGMA synchronous = FULL;"
    "CREATE TABLE IF NOT EXISTS exchanges ("
    "id INTEGER PRIMARY KEY AUTOINCREMENT, time INTEGER NOT NULL, endpoint TEXT NOT NULL,"
    "path TEXT NOT NULL, appId TEXT NOT NULL, headers TEXT NOT NULL, body TEXT NOT NULL,"
    "status INTEGER NOT NULL, fault TEXT NOT NULL, verdict TEXT NOT NULL);";

[[noreturn]] void fail(sqlite3* database, std::string_view what) {
  throw std::runtime_error(std::string(what) + ": " + sqlite3_errmsg(database));
}

void execute(sqlite3* database, const char* sql) {
  if (sqlite3_exec(database, sql, nullptr, nullptr, nullptr) != SQLITE_OK) fail(database, sql);
}

class Statement {
 public:
  Statement(sqlite3* database, const char* sql) : database_(database) {
    if (sqlite3_prepare_v2(database, sql, -1, &statement_, nullptr) != SQLITE_OK) {
      fail(database, sql);
    }
  }
  ~Statement() { sqlite3_finalize(statement_); }
  Statement(const Statement&) = delete;
  Statement& operator=(const Statement&) = delete;

  void bind(std::int64_t value) { sqlite3_bind_int64(statement_, ++bound_, value); }
  void bind(const std::string& value) {
    sqlite3_bind_text64(statement_, ++bound_, value.data(), value.size(), SQLITE_TRANSIENT,
                        SQLITE_UTF8);
  }

  bool step() {
    const int result = sqlite3_step(statement_);
    if (result != SQLITE_ROW && result != SQLITE_DONE) fail(database_, "step");
    return result == SQLITE_ROW;
  }

  std::int64_t integer(int column) { return sqlite3_column_int64(statement_, column); }
  std::string text(int column) {
    const auto* bytes = reinterpret_cast<const char*>(sqlite3_column_text(statement_, column));
    return {bytes, static_cast<std::size_t>(sqlite3_column_bytes(statement_, column))};
  }

 private:
  sqlite3* database_;
  sqlite3_stmt* statement_ = nullptr;
  int bound_ = 0;
};

json::parse_options anyBytes() {
  json::parse_options options;
  options.allow_invalid_utf8 = true;
  return options;
}

Exchange exchangeOf(Statement& row) {
  Exchange exchange;
  exchange.id = row.integer(0);
  exchange.time = row.integer(1);
  exchange.endpoint = row.text(2);
  exchange.path = row.text(3);
  exchange.appId = row.text(4);
  exchange.headers =
      json::value_to<HeaderMap>(json::parse(row.text(5), json::storage_ptr(), anyBytes()));
  exchange.body = row.text(6);
  exchange.status = static_cast<int>(row.integer(7));
  exchange.fault = row.text(8);
  exchange.verdict =
      json::value_to<Verdict>(json::parse(row.text(9), json::storage_ptr(), anyBytes()));
  return exchange;
}

}  // namespace

ExchangeStore::ExchangeStore(const std::string& file) {
  if (sqlite3_open(file.c_str(), &database_) != SQLITE_OK) {
    const std::string what = sqlite3_errmsg(database_);
    sqlite3_close(database_);
    throw std::runtime_error("cannot open " + file + ": " + what);
  }
  sqlite3_busy_timeout(database_, busyTimeoutMilliseconds);
  execute(database_, schema);
}

ExchangeStore::~ExchangeStore() {
  sqlite3_close(database_);
}

void ExchangeStore::add(const Exchange& exchange) {
  const std::lock_guard lock(mutex_);
  Statement insert(database_,
                   "INSERT INTO exchanges (time, endpoint, path, appId, headers, body, status,"
                   " fault, verdict) VALUES (?, ?, ?, ?, ?, ?, ?, ?, ?)");
  insert.bind(exchange.time);
  insert.bind(exchange.endpoint);
  insert.bind(exchange.path);
  insert.bind(exchange.appId);
  insert.bind(json::serialize(json::value_from(exchange.headers)));
  insert.bind(exchange.body);
  insert.bind(exchange.status);
  insert.bind(exchange.fault);
  insert.bind(json::serialize(json::value_from(exchange.verdict)));
  insert.step();
}

void ExchangeStore::read(const std::string& endpoint, std::int64_t since,
                         const std::function<void(Exchange)>& visit) {
  const std::lock_guard lock(mutex_);
  Statement select(database_,
                   "SELECT id, time, endpoint, path, appId, headers, body, status, fault, verdict"
                   " FROM exchanges WHERE id > ?1 AND (?2 = '' OR endpoint = ?2) ORDER BY id");
  select.bind(since);
  select.bind(endpoint);
  while (select.step()) visit(exchangeOf(select));
}

void ExchangeStore::clear() {
  const std::lock_guard lock(mutex_);
  execute(database_, "DELETE FROM exchanges");
}

}  // namespace pelorino::backend
