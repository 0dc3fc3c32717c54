#include <pelorino/PLRUserCard.h>

#include "TrackingTest.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

constexpr const char* device = "11111111-2222-3333-4444-555555555555";

class IdentityTest : public TrackingTest {
 protected:
  /// A row a user, the active one with a star, and how the progression stands.
  std::string users() {
    const std::string refusal =
        "WARNING Progression event can't be finished!\n\tStarted progression event name is "
        "[level one]\n\tCurrent event name is [none]";
    const auto before = timesLogged(refusal);
    PLRAnalytics::finishProgressionEvent("none");
    system.runUntilIdle();
    const bool isStarted = timesLogged(refusal) > before;
    return rows("SELECT replace(u.userId, '" + std::string(device) +
                "', 'device') || iif(p.activeUserId = u.id, '*', '') || '<' || "
                "replace(ifnull(u.previousUserId, ''), '" +
                device + "', 'device') FROM users u, projects p ORDER BY u.id") +
           (isStarted ? "\nstarted" : "");
  }
  void countUsers(bool isCounting) {
    configuration.answers.clear();
    configuration.answer(200, std::string(R"({"countForRequest":10,"timeForRequest":120000,)") +
                                  R"("eventParamsCount":20,"sessionTimeout":600000,)" +
                                  R"("aliveTimeout":60000,"serverTime":0,"userCounting":)" +
                                  (isCounting ? "true}" : "false}"));
  }
};

TEST_F(IdentityTest, AChangeOfUserSaysWhatItDidOrWhyNot) {
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
           Case{"bob", "ann<\nbob*<", "ue\nss\ndi", "INFO The userId [ann] changed to [bob]!"},
           Case{"", "ann<\nbob<\ndevice*<", "ss\ndi", "DEBUG Default user activated!"},
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
    system.runUntilIdle();
    EXPECT_TRUE(logged(is.line)) << is.line;
    EXPECT_EQ(users(), is.users) << is.line;
    EXPECT_EQ(fields("'ue','ss','di','pl','ca'", {"code"}), is.events) << is.line;
  }
}

TEST_F(IdentityTest, AReplacedIdTakesItsBearerOutOfTheWay) {
  PLRAnalytics::setUserId("bob");
  PLRUserCard::set("k", 1);
  PLRAnalytics::currencyAccrual("gold", 5, "quest", PLRAccrualType::earned);
  PLRAnalytics::startProgressionEvent("level one");
  system.runUntilIdle();
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
    system.runUntilIdle();
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
  PLRAnalytics::setUserId("bob");
  countUsers(false);
  restart("bob");
  system.advance(1s);
  EXPECT_EQ(users(), "bob*<") << "the others are removed";
  PLRAnalytics::startProgressionEvent("level one");
  fields("'ss'", {"code"});
  for (const char* name : {"ann", "bob"}) PLRAnalytics::setUserId(name);
  EXPECT_EQ(users(), "bob*<ann\nstarted");
  EXPECT_EQ(fields("'ue','ss','di'", {"code"}), "");

  // A removal that did not come about: nobody loses the active row, and a later answer makes up
  // for it.
  const std::string leave =
      "INSERT INTO users (projectId, level, userId, isDefaultUser) VALUES (1, 1, 'left', 0)";
  rows(leave);
  configuration.answers = {{.status = 503, .body = {}, .error = {}}};
  restart("bob");
  PLRAnalytics::replace("left", "bob");
  EXPECT_EQ(users(), "bob*<left");
  rows(leave);
  countUsers(false);
  restart("bob");
  EXPECT_EQ(users(), "bob*<left");
}

TEST_F(IdentityTest, TrackingIsSwitchedForEveryKeyAndTellsTheBackend) {
  rows("INSERT INTO projects (applicationKey, trackingAvailable) VALUES ('other', 1)");
  countUsers(true);
  system.http().setLatency(2s);
  restart("ann");
  PLRHost::didEnterBackground();
  system.advance(30s);
  EXPECT_GT(system.pendingTimers(), 0U) << "begun by the configuration";
  report("pending");
  PLRAnalytics::currencyAccrual("gold", 5, "quest", PLRAccrualType::earned);
  for (int i = 0; i < 2; ++i) PLRAnalytics::setTrackingAvailability(false);
  system.advance(30s);
  EXPECT_EQ(system.pendingTimers(), 0U);
  EXPECT_EQ(timesLogged("INFO Tracking status is already Disable"), 1);
  PLRAnalytics::currencyAccrual("gold", 5, "quest", PLRAccrualType::earned);
  PLRUserCard::set("k", 1);
  report("unheard");
  system.advance(1h);
  EXPECT_TRUE(logged("DEBUG Event [ce] not created. Tracking is Disabled"));
  EXPECT_EQ(rows("SELECT trackingAvailable FROM projects"), "0\n0");
  EXPECT_EQ(rows("SELECT (SELECT count(*) FROM currencyAccrualResources), "
                 "(SELECT count(*) FROM levelResource), (SELECT count(*) FROM events)"),
            "0|0|0");
  EXPECT_EQ(fields("'ts','ca','pl','ce'", {"code", "trackingAllowed"}), "ce|\nts|0");

  PLRHost::didBecomeActive();
  for (int i = 0; i < 2; ++i) PLRAnalytics::setTrackingAvailability(true);
  report("heard");
  EXPECT_EQ(timesLogged("INFO Tracking status is already Enable"), 1);
  EXPECT_EQ(rows("SELECT trackingAvailable FROM projects"), "1\n1");
  EXPECT_EQ(fields("'ts','ce'", {"code", "trackingAllowed"}), "ts|1\nts|1\nce|");
  system.advance(30s);
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
  system.advance(1min);
  auto names = deliveredEvents();
  std::ranges::sort(names);
  EXPECT_EQ(std::ranges::count(names, "second") + std::ranges::count(names, "third"), 0);
  EXPECT_TRUE(std::ranges::any_of(names, [](auto& events) { return events.ends_with("ts"); }));
  system.http().setLatency(0s);
  system.advance(5s);
}

TEST_F(IdentityTest, AReferrerIsSentOnceForTheApplication) {
  using Property = PLRReferralProperty;
  PLRAnalytics::setTrackingAvailability(false);
  PLRAnalytics::referrer({{Property::source(), "unheard"}});
  PLRAnalytics::setTrackingAvailability(true);
  PLRAnalytics::startProgressionEvent("level one");
  PLRAnalytics::referrer(
      {{Property("campaign"), "c"}, {Property::term(), "t"}, {Property("own"), "o"}});
  EXPECT_EQ(stored("'rf'"), R"({"code":"rf","campaign":"c","term":"t"})");
  EXPECT_EQ(deliveredEvents().back().ends_with("rf"), true) << "at once";
  PLRAnalytics::setUserId("bob");
  PLRAnalytics::referrer({{Property::source(), "again"}});
  EXPECT_EQ(stored("'rf'"), "");
  EXPECT_TRUE(logged("INFO The referrer has been sent"));
}

}  // namespace
}  // namespace pelorino
