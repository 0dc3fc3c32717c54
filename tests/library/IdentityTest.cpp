#include <pelorino/PLRUserCard.h>

#include "TrackingTest.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

class IdentityTest : public TrackingTest {
 protected:
  /// A row a user, the active one with a star, and how the progression stands.
  std::string users() {
    const std::string refusal =
        "WARNING Progression event can't be finished!\n\tStarted progression event name is "
        "[level one]\n\tCurrent event name is [none]";
    const auto before = timesLogged(refusal);
    PLRAnalytics::finishProgressionEvent("none");
    const bool isStarted = timesLogged(refusal) > before;
    return rows("SELECT replace(u.userId, '" + std::string(device) +
                "', 'device') || iif(p.activeUserId = u.id, '*', '') || '<' || "
                "replace(ifnull(u.previousUserId, ''), '" +
                device + "', 'device') FROM users u, projects p ORDER BY u.id") +
           (isStarted ? "\nstarted" : "");
  }
};

TEST_F(LibraryTest, EveryNamedUserHasAnAccountAndTheFirstTakesOverTheDefaultOne) {
  const std::string id = device;
  const std::pair<const char*, std::string> starts[] = {
      {nullptr, id + "||1|1"},
      {"ann", "ann|" + id + "|0|1"},
      {"bob", "ann|" + id + "|0|0\nbob||0|1"},
      {"ann", "ann|" + id + "|0|1\nbob||0|0"},
      {nullptr, "ann|" + id + "|0|1\nbob||0|0"},  // The last user stays.
      {"", "ann|" + id + "|0|0\nbob||0|0\n" + id + "||1|1"},
  };
  for (const auto& [name, users] : starts) {
    PLRAnalyticsConfiguration decided;
    if (name != nullptr) decided.userId = name;
    start(decided);
    EXPECT_EQ(rows("SELECT u.userId, u.previousUserId, u.isDefaultUser, p.activeUserId = u.id "
                   "FROM users u JOIN projects p ON p.id = u.projectId ORDER BY u.id"),
              users);
    stop();
  }
}

TEST_F(IdentityTest, AChangeOfUserEndsOneSessionAndBeginsAnotherOrSaysWhyNot) {
  struct Case {
    const char* userId;
    const char* users;
    const char* events;
    std::string line;
  };
  PLRAnalytics::startProgressionEvent("level one");
  system.advance(2s);
  for (const Case& is : {
           Case{"ann", "ann*<\nstarted", "",
                "WARNING The current userId is equal to the new userId [ann]!"},
           Case{device, "ann*<\nstarted", "",
                std::string("WARNING The userId matches the deviceId [") + device +
                    "]!\t\nSetting up a userId is not possible!"},
           Case{"bob", "ann<\nbob*<", "ann ue\nbob ss\nbob di",
                "INFO The userId [ann] changed to [bob]!"},
           Case{"\x01", "ann<\nbob*<", "", "ERROR Execution of the SetUserId method was canceled!"},
           Case{"", "ann<\nbob<\ndevice*<", "device ss\ndevice di",
                "DEBUG Default user activated!"},
           Case{"", "ann<\nbob<\ndevice*<", "",
                "WARNING The current user is already a default user!"},
           Case{device, "ann<\nbob<\ndevice*<", "",
                std::string("WARNING The current userId is equal to the new userId [") + device +
                    "]!"},
           // The default user takes a new name without a break of the session.
           Case{"eve", "ann<\nbob<\neve*<device", "",
                std::string("INFO The userId [") + device + "] changed to [eve]!"},
       }) {
    PLRAnalytics::setUserId(is.userId);
    EXPECT_TRUE(logged(is.line)) << is.line;
    EXPECT_EQ(users(), is.users) << is.line;
    EXPECT_EQ(rows("SELECT iif(isDefaultUser, 'device', users.userId) || ' ' || "
                   "(event->>'$.code') FROM seen JOIN users ON users.id = seen.userId WHERE "
                   "event->>'$.code' <> 'pe' ORDER BY seen.rowid; DELETE FROM seen"),
              is.events)
        << is.line;
  }
}

TEST_F(IdentityTest, AReplacedIdTakesItsBearerOutOfTheWay) {
  PLRAnalytics::setUserId("bob");
  PLRUserCard::set("k", 1);
  PLRAnalytics::currencyAccrual("gold", 5, "quest", PLRAccrualType::earned);
  PLRAnalytics::startProgressionEvent("level one");
  struct Case {
    const char* from;
    std::string to;
    const char* users;
    std::string line;
  };
  for (const Case& is : {
           Case{"nobody", device, "ann<\nbob*<\nstarted",
                "WARNING The userId: [nobody] not found!\t\nReplace not possible!"},
           Case{"bob", device, "ann<\nbob*<\nstarted",
                std::string("WARNING The toUserId matches the deviceId [") + device +
                    "]!\t\nReplace not possible!"},
           Case{"bob", "bob", "ann<\nbob*<\nstarted",
                "WARNING The fromUserId is equal to the toUserId [bob]!\t\nReplace not possible!"},
           // Of a user who isn't active: the progression goes on.
           Case{"ann", "anna", "anna<ann\nbob*<\nstarted", "INFO UserId: [ann] renamed to [anna]"},
           // Onto the active user's id: the row of `from` becomes active, under the same id.
           Case{"anna", "bob", "bob*<anna\nstarted", "INFO UserId: [anna] renamed to [bob]"},
           Case{"bob", "eve", "eve*<bob", "INFO UserId: [bob] renamed to [eve]"},
       }) {
    PLRAnalytics::replace(is.from, is.to);
    EXPECT_TRUE(logged(is.line)) << is.line;
    EXPECT_EQ(users(), is.users) << is.line;
  }
  EXPECT_TRUE(logged("DEBUG Remove inactive users [bob]"));
  EXPECT_EQ(rows("SELECT (SELECT count(*) FROM currencyAccrualResources), "
                 "(SELECT count(*) FROM peopleCards WHERE json LIKE '%k%')"),
            "0|0")
      << "what the removed user had is gone";
}

TEST_F(IdentityTest, OneAccountForTheDeviceChangesItsNameAndKeepsEverythingElse) {
  usualStatus.reset();
  report("of ann");
  PLRAnalytics::setUserId("bob");
  configure("", false);
  restart("bob");
  system.advance(1s);
  EXPECT_EQ(users(), "bob*<") << "the others are removed";
  EXPECT_EQ(rows("SELECT count(*) FROM reports WHERE userId NOT IN (SELECT id FROM users)"), "0");
  PLRAnalytics::startProgressionEvent("level one");
  fields("'ss'", {"code"});
  for (const char* name : {"ann", "bob"}) PLRAnalytics::setUserId(name);
  EXPECT_EQ(users(), "bob*<ann\nstarted");
  EXPECT_EQ(fields("'ue','ss','di'", {"code"}), "");
  restart("eve");
  EXPECT_EQ(users(), "eve*<bob") << "also at a start";
}

TEST_F(IdentityTest, TrackingIsSwitchedForEveryKeyAndTellsTheBackend) {
  const auto play = [this](const std::string& name) {
    report(name);
    PLRAnalytics::currencyAccrual("gold", 5, "quest", PLRAccrualType::earned);
  };
  rows("INSERT INTO projects (applicationKey, trackingAvailable) VALUES ('other', 1)");
  configure();
  restart("ann");
  system.advance(5s);
  play("pending");
  fields("'ce'", {"code"});
  delivered.clear();
  for (int i = 0; i < 2; ++i) PLRAnalytics::setTrackingAvailability(false);
  EXPECT_EQ(timesLogged("INFO Tracking status is already Disable"), 1);
  EXPECT_EQ(system.pendingTimers(), 0U);
  play("unheard");
  PLRHost::didBecomeActive();
  system.advance(1h);
  EXPECT_EQ(deliveredEvents(), (std::vector<std::string>{"ue", "ts"})) << "no timer, no session";
  EXPECT_TRUE(logged("DEBUG Event [ce] not created. Tracking is Disabled"));
  EXPECT_EQ(rows("SELECT trackingAvailable FROM projects"), "0\n0");
  EXPECT_EQ(rows("SELECT (SELECT count(*) FROM currencyAccrualResources), "
                 "(SELECT count(*) FROM levelResource), (SELECT count(*) FROM events)"),
            "0|0|0");
  const auto told = [this] {
    return fields("'ts','ss','ca','pl','ce'", {"code", "trackingAllowed"});
  };
  EXPECT_EQ(told(), "ts|0");

  for (int i = 0; i < 2; ++i) PLRAnalytics::setTrackingAvailability(true);
  report("heard");
  EXPECT_EQ(timesLogged("INFO Tracking status is already Enable"), 1);
  EXPECT_EQ(rows("SELECT trackingAvailable FROM projects"), "1\n1");
  EXPECT_EQ(told(), "ts|1\nss|\nts|1\nce|");
}

TEST_F(IdentityTest, WhatATrackingSwitchDropsDoesNotLeaveWithTheBatchUnderWay) {
  usualStatus.reset();
  for (const char* name : {"first", "second", "third"}) {
    report(name);
    send();
  }
  usualStatus = 200;
  delivered.clear();
  system.http().setLatency(2s);
  PLRAnalytics::sendBufferedEvents();
  system.advance(1s);
  PLRAnalytics::setTrackingAvailability(false);
  system.advance(70s);
  EXPECT_TRUE(deliveredEvents().back().ends_with("ts"));
  for (const char* name : {"second", "third"}) EXPECT_EQ(timesDelivered(name), 0) << name;
}

}  // namespace
}  // namespace pelorino
