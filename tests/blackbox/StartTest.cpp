#include <filesystem>
#include <fstream>

#include "BlackBoxTest.h"

namespace pelorino::blackbox {
namespace {

namespace json = boost::json;

class Start : public BlackBoxTest {};

TEST_F(Start, TellsOfItsFolder) {
  const auto host = startedHost();
  host->run(R"({"op":"sdkFolderPath"})");
  EXPECT_TRUE(host->logs(
      json::serialize(json::object{{"op", "sdkFolderPath"}, {"result", file_.folder()}})));
}

TEST_F(Start, KnowsTheDeviceWhoseDataWereDeleted) {
  for (const char* vendor : {"VENDOR-1", "VENDOR-2"}) {
    std::filesystem::remove_all(file_.folder());
    HostProcess host(file_, backend_.url(), {{"vendorIdentifier", vendor}});
    host.initialize();
    ASSERT_TRUE(host.deliver());
    EXPECT_EQ(host.end(), 0);
  }
  const json::value headers = backend_.received("/analytics/report").back().at("headers");
  EXPECT_EQ(headers.at("DeviceId"), "VENDOR-2");
  EXPECT_EQ(headers.at("PreviousDeviceId"), "VENDOR-1");
  const std::vector<Arrived> identifiers = backend_.events("di");
  ASSERT_EQ(identifiers.size(), 2U);
  EXPECT_EQ(identifiers[0].event.at("uuid"), identifiers[1].event.at("uuid"));
}

TEST_F(Start, IsRefusedWhileAnotherProcessUsesTheStore) {
  const auto first = startedHost();
  HostProcess second(file_, backend_.url());
  second.initialize();
  EXPECT_TRUE(second.logs("pelorino.lock: another process has locked it"));
  EXPECT_TRUE(second.logs("Can't init submodules"));
  second.customEvent("refused");
  ASSERT_TRUE(second.drain());

  first->customEvent("of the first");
  ASSERT_TRUE(first->deliver());
  first->customEvent("left behind");
  ASSERT_TRUE(first->drain());
  first->kill();

  second.run(R"({"op":"engine.destroySDK"})");
  ASSERT_TRUE(second.drain()) << "a start that overtakes the teardown is refused";
  second.initialize();
  second.customEvent("of the second");
  ASSERT_TRUE(second.deliver());
  EXPECT_EQ(second.end(), 0);
  EXPECT_EQ(backend_.names(),
            (std::vector<std::string>{"of the first", "left behind", "of the second"}));
}

TEST_F(Start, IsRefusedWhereItsFolderCannotBe) {
  const std::string plainFile = folder_.file("plain file");
  std::ofstream(plainFile) << "no folder";
  HostProcess host(file_, backend_.url(), {{"supportDirectory", plainFile}});
  host.initialize();
  host.customEvent("lost");
  EXPECT_TRUE(host.logs("Can't init submodules"));
  EXPECT_TRUE(host.logs("In the customEvent(_:_:) method an error has occurred: "));
  EXPECT_EQ(host.end(), 0);
}

}  // namespace
}  // namespace pelorino::blackbox
