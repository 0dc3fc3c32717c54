#include "HostTest.h"

namespace pelorino {
namespace {

using Languages = std::vector<std::string>;

using ResolvedHostTest = HostTest;

TEST_F(ResolvedHostTest, TakesLanguageAndRegionFromTheLocale) {
  const struct {
    const char* label;
    std::map<std::string, std::string> environment;
    Languages languages;
    std::optional<std::string> region;
  } cases[] = {
      {"nothing set", {}, {}, {}},
      {"modifier", {{"LANG", "sr_RS@latin"}}, {"sr-RS"}, "RS"},
      {"C", {{"LANG", "C.UTF-8"}}, {}, {}},
      {"categories differ",
       {{"LANG", "fr_FR"}, {"LC_MESSAGES", "de_AT"}, {"LC_CTYPE", "it_CH"}},
       {"de-AT"},
       "CH"},
      {"LC_ALL wins", {{"LC_ALL", "pt_BR"}, {"LC_MESSAGES", "de_AT"}}, {"pt-BR"}, "BR"},
      {"not a locale", {{"LANG", "../evil_X"}}, {}, {}},
  };
  for (const auto& c : cases) {
    SCOPED_TRACE(c.label);
    system.values.environment = c.environment;
    EXPECT_EQ(host.preferredLanguages(), c.languages);
    EXPECT_EQ(host.region(), c.region);
  }
  description.preferredLanguages.emplace();
  description.region = "";
  EXPECT_EQ(host.preferredLanguages(), Languages{}) << "told that there are none";
  EXPECT_EQ(host.region(), "");
}

TEST_F(ResolvedHostTest, FindsAPlaceForItsFiles) {
  system.values.homeFolder = "/home/u";
  EXPECT_EQ(host.supportDirectory(), "/home/u/.local/share/game");
  EXPECT_EQ(host.keyStoreFile(), "/home/u/.local/state/game/pelorino.keys");

  system.values.environment = {{"XDG_DATA_HOME", "/data"}, {"XDG_STATE_HOME", "relative"}};
  description.applicationName = "../a/b";
  EXPECT_EQ(host.supportDirectory(), "/data/.._a_b") << "a name is one folder";
  EXPECT_EQ(host.keyStoreFile(), "/home/u/.local/state/.._a_b/pelorino.keys");
  description.supportDirectory = "/told/support";
  description.keyStoreFile = "/told/keys";
  EXPECT_EQ(host.supportDirectory(), "/told/support");
  EXPECT_EQ(host.keyStoreFile(), "/told/keys");
}

TEST_F(ResolvedHostTest, DerivesAVendorIdentifierThatDoesNotTellTheMachine) {
  // Devices are known by it from one version of the library to the next.
  const std::string derived = "1419B103-86C6-5492-9503-96ACE683E8BC";
  EXPECT_EQ(host.vendorIdentifier(), derived);
  description.bundleIdentifier = "com.example.game";
  const auto ofBundle = host.vendorIdentifier();
  EXPECT_NE(ofBundle, derived);
  description.applicationName = "renamed";
  EXPECT_EQ(host.vendorIdentifier(), ofBundle) << "the bundle outranks the name";
  system.values.machineId = "another machine";
  EXPECT_NE(host.vendorIdentifier(), ofBundle);
  system.values.machineId.reset();
  EXPECT_EQ(host.vendorIdentifier(), std::nullopt);

  description.vendorIdentifier = "aaaabbbb-cccc-dddd-eeee-ffff00001111";
  EXPECT_EQ(host.vendorIdentifier(), "AAAABBBB-CCCC-DDDD-EEEE-FFFF00001111");
  description.vendorIdentifier = "";
  system.values.machineId = "another machine";
  EXPECT_EQ(host.vendorIdentifier(), std::nullopt) << "told that there is none";
}

}  // namespace
}  // namespace pelorino
