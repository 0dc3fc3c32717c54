#include "LibraryTest.h"

namespace pelorino {
namespace {

constexpr const char* device = "11111111-2222-3333-4444-555555555555";
constexpr const char* users =
    "SELECT u.userId, u.previousUserId, u.isDefaultUser, p.activeUserId = u.id "
    "FROM users u JOIN projects p ON p.id = u.projectId ORDER BY u.id";

TEST_F(LibraryTest, EveryNamedUserHasAnAccountAndTheFirstTakesOverTheDefaultOne) {
  const std::string id = device;
  start();
  EXPECT_EQ(rows(users), id + "||1|1");
  restart("ann");
  EXPECT_EQ(rows(users), "ann|" + id + "|0|1");
  restart("bob");
  EXPECT_EQ(rows(users), "ann|" + id + "|0|0\nbob||0|1");
  restart("ann");
  EXPECT_EQ(rows(users), "ann|" + id + "|0|1\nbob||0|0");
  stop();
  start();
  EXPECT_EQ(rows(users), "ann|" + id + "|0|1\nbob||0|0") << "no name keeps the last user";
  restart("");
  EXPECT_EQ(rows(users), "ann|" + id + "|0|0\nbob||0|0\n" + id + "||1|1");
}

TEST_F(LibraryTest, OneAccountForTheDeviceChangesItsName) {
  start();
  stop();
  rows(
      "UPDATE projects SET configuration = replace(configuration, '\"userCounting\":true', "
      "'\"userCounting\":false')");
  for (const char* name : {"ann", "bob", "bob"}) {
    start(std::string(name));
    stop();
  }
  EXPECT_EQ(rows(users), "bob|ann|0|1");
}

TEST_F(LibraryTest, AChangeOfUserOrDeviceForgetsTheBackendsIdentifiers) {
  constexpr const char* known =
      "UPDATE deviceIdentifiers SET pelorinoId=7, crossPlatformPelorinoId=8, "
      "pelorinoIdTimestamp=9";
  constexpr const char* identifiers =
      "SELECT deviceIdentifier, previousDeviceIdentifier, pelorinoId, crossPlatformPelorinoId, "
      "pelorinoIdTimestamp FROM deviceIdentifiers";
  const std::string id = device;
  start(std::string("ann"));
  stop();
  rows(known);
  start(std::string("ann"));
  EXPECT_EQ(rows(identifiers), id + "||7|8|9") << "the same user keeps them";
  restart("bob");
  EXPECT_EQ(rows(identifiers), id + "||||");

  stop();
  rows(known);
  describe("99999999-2222-3333-4444-555555555555");
  start(std::string("bob"));
  EXPECT_EQ(rows(identifiers), "99999999-2222-3333-4444-555555555555|" + id + "|||");
}

}  // namespace
}  // namespace pelorino
