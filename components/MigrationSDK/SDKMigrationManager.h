#pragma once

#include <string>
#include <string_view>

#include "Files.h"
#include "MigrationObject.h"
#include "Project.h"
#include "Repositories.h"
#include "UsersStoragesMigration.h"

namespace pelorino {

/// Takes over what an earlier generation of the library has left on the device: the active user
/// with level, card and marks, and the tracking choice. It never changes those files and never
/// stops the start.
///
/// Threads: the incomeQueue only.
/// Errors:  a file that cannot be used is skipped with a debug line, a missing one without.
class SDKMigrationManager final {
 public:
  struct Tables {
    ProjectRepository& projects;
    UserRepository& users;
    PeopleRepository& cards;
    RealPaymentRepository& payments;
    TutorialRepository& tutorials;
  };

  /// `base`: the folder that holds the library's own folder.
  SDKMigrationManager(Tables tables, Files& files, std::string base, std::string applicationKey);

  /// For a project that is not marked as migrated; success marks it. Looks for both files: that of
  /// the native library, then that of the engine's.
  void migrate(Project& project) const;

  /// Both files are read whole, so this is what one may cost.
  static constexpr std::size_t maximalFile = std::size_t{2} * 1024 * 1024;

 private:
  using Reader = MigrationObject (*)(std::string_view content);

  [[nodiscard]] std::string getNativeMigratePath() const;
  [[nodiscard]] std::string getUnityMigratePath() const;
  void migrateFrom(const char* name, const std::string& path, Reader reader,
                   Project& project) const;
  void migrateFromObject(const MigrationObject& object, Project& project) const;
  void insertRowsOf(RowId user, const MigrationObject& object) const;
  [[nodiscard]] RowId userOf(const MigrationObject& object, const Project& project) const;

  Tables tables_;
  Files& files_;
  std::string base_;
  std::string applicationKey_;
};

/// What is taken over of an archive of the native library. Throws LegacyDataError.
[[nodiscard]] MigrationObject migrationObjectOf(std::string_view archive);

/// What is taken over of the engine's file. Throws PLRError for JSON of another shape.
[[nodiscard]] MigrationObject migrationObjectOfJson(std::string_view json);

}  // namespace pelorino
