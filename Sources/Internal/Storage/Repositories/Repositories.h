#pragma once

#include "CachedRepository.h"
#include "Event.h"
#include "Identifiers.h"
#include "Marks.h"
#include "MessagingConfig.h"
#include "PeopleCard.h"
#include "Project.h"
#include "Report.h"
#include "Resources.h"
#include "Subscriptions.h"
#include "User.h"

// The repositories, one for each table. The .cpp file of a subject defines the name and the columns
// of its tables, as the `table` of each entry.
//
// Threads: the incomeQueue only.

namespace pelorino {

// ---- IdentityTables.cpp ----

struct ProjectEntry final : BaseEntry {
  static const TableDescription table;
};
/// The projects, one for each application key.
using ProjectRepository = CachedRepository<Project, ProjectEntry>;

struct UserEntry final : BaseEntry {
  static const TableDescription table;
};
/// The users of all projects.
using UserRepository = ProjectRowsRepository<User, UserEntry>;

struct DeviceIdentifiersEntry final : BaseEntry {
  static const TableDescription table;
};
/// The identifiers of the device, one row for each project.
using IdentifiersRepository = ProjectRowsRepository<DeviceIdentifiers, DeviceIdentifiersEntry>;

struct SdkToolsEntry final : BaseEntry {
  static const TableDescription table;
};
/// Notes of the library about itself, one row.
using ToolsRepository = CachedRepository<SdkTools, SdkToolsEntry>;

// ---- EventTables.cpp ----

struct EventEntry final : BaseEntry {
  static const TableDescription table;
};
/// Events that wait to be packed.
using EventRepository = UserRowsRepository<EventObject, EventEntry>;

struct ReportEntry final : BaseEntry {
  static const TableDescription table;
};
/// Packed reports that wait for delivery. Many can wait while the backend cannot be reached, so
/// reports of earlier launches are loaded without their packages. readPackages() reads those just
/// before a report is sent.
class ReportsRepository final : public UserRowsRepository<Report, ReportEntry> {
 public:
  using UserRowsRepository::UserRowsRepository;

  /// Reads the packages from the row, unless the report has them. False when there is no row, or
  /// when it cannot be read.
  bool readPackages(Report& report);

  /// Reports do not change. An update of one without its packages would delete these.
  void update(const Report& report) = delete;
};

struct RealPaymentMarkEntry final : BaseEntry {
  static const TableDescription table;
};
/// Orders that have been reported.
using RealPaymentRepository = ProjectRowsRepository<RealPaymentMark, RealPaymentMarkEntry>;

struct TutorialMarkEntry final : BaseEntry {
  static const TableDescription table;
};
/// Tutorial steps that have been reported.
using TutorialRepository = UserRowsRepository<TutorialMark, TutorialMarkEntry>;

// ---- SumTables.cpp ----

struct LevelResourceEntry final : BaseEntry {
  static const TableDescription table;
};
/// Sums of resources within the current level of each user.
using LevelResourcesRepository = UserRowsRepository<LevelResource, LevelResourceEntry>;

struct CurrencyAccrualResourcesEntry final : BaseEntry {
  static const TableDescription table;
};
/// Sums of currency that wait to be reported.
using CurrencyAccrualResourcesRepository =
    UserRowsRepository<CurrencyAccrualResource, CurrencyAccrualResourcesEntry>;

// ---- CardTables.cpp ----

struct PeopleCardEntry final : BaseEntry {
  static const TableDescription table;
};
/// The cards of all users.
using PeopleRepository = UserRowsRepository<PeopleCard, PeopleCardEntry>;

struct MessagingCategoryEntry final : BaseEntry {
  static const TableDescription table;
};
/// Categories of push notifications, common to all projects.
using MessagingCategoryRepository = CachedRepository<MessagingCategory, MessagingCategoryEntry>;

struct SubscriptionEntry final : BaseEntry {
  static const TableDescription table;
};
/// The subscriptions, one row for each project.
using SubscriptionRepository = ProjectRowsRepository<SubscriptionInfo, SubscriptionEntry>;

}  // namespace pelorino
