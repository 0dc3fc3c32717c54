#pragma once

#include <sqlite3.h>

#include <filesystem>
#include <stdexcept>
#include <string>

#include "TemporaryFolder.h"

namespace pelorino {

/// The database file below a temporary support directory, looked at past the library's own code.
class DatabaseFile final {
 public:
  /// The support directory is a folder of this name below a temporary one.
  explicit DatabaseFile(const std::string& supportFolder = "support")
      : support_(folder_.file(supportFolder)) {}

  [[nodiscard]] const std::string& support() const { return support_; }
  [[nodiscard]] std::string folder() const { return support_ + "/pelorino"; }
  [[nodiscard]] std::string path() const { return folder() + "/pelorino.db"; }

  /// Runs the statements on a connection of their own, which makes the file if it is missing. The
  /// values of all rows, columns joined by "|", rows by a line end, NULL as nothing.
  std::string run(const std::string& sql) const {
    std::filesystem::create_directories(folder());
    sqlite3* database = nullptr;
    std::string rows;
    char* error = nullptr;
    bool done = sqlite3_open(path().c_str(), &database) == SQLITE_OK &&
                sqlite3_exec(database, sql.c_str(), appendRow, &rows, &error) == SQLITE_OK;
    const std::string message = error == nullptr ? "cannot open" : error;
    sqlite3_free(error);
    sqlite3_close(database);
    if (!done) throw std::runtime_error(message);
    return rows;
  }

 private:
  static int appendRow(void* rows, int count, char** values, char**) {
    auto& text = *static_cast<std::string*>(rows);
    if (!text.empty()) text += '\n';
    for (int i = 0; i < count; ++i) {
      if (i > 0) text += '|';
      if (values[i] != nullptr) text += values[i];
    }
    return 0;
  }

  TemporaryFolder folder_;
  std::string support_;
};

}  // namespace pelorino
