// legacy_corpus FOLDER: writes archives of an earlier generation, as seeds of the fuzz target.
#include <cstdlib>
#include <fstream>
#include <string>

#include "LegacyArchive.h"

namespace pelorino {
namespace {

/// A list that refers to itself where its user should stand.
std::string circle() {
  LegacyArchive archive;
  archive.add(std::string("a"));
  const auto self = archive.add("NSDictionary", {{"NS.keys", std::vector<std::uint64_t>{1}},
                                                 {"NS.objects", std::vector<std::uint64_t>{3}}});
  return archive.bytes(
      archive.add("UsersStorages", {{"activeUser", std::uint64_t{1}}, {"dataStorages", self}}));
}

/// A user whose fields are of other types.
std::string wrongTypes() {
  LegacyArchive archive;
  const auto text = archive.add(std::string("ann"));
  const auto ann = archive.add("DataStorage", {{"level", 2.5},
                                               {"userId", text},
                                               {"prevId", true},
                                               {"transactionIds", std::int64_t{1}},
                                               {"tutorCompletedSteps", std::uint64_t{99}}});
  return archive.bytes(
      archive.add("UsersStorages",
                  {{"activeUser", text}, {"dataStorages", archive.dictionary({{"ann", ann}})}}));
}

void write(const std::string& path, const std::string& bytes) {
  std::ofstream(path, std::ios::binary) << bytes;
}

}  // namespace
}  // namespace pelorino

int main(int count, char** arguments) {
  using namespace pelorino;
  if (count != 2) return EXIT_FAILURE;
  const std::string folder = std::string(arguments[1]) + "/";
  write(folder + "ann", archiveOfAnn());
  write(folder + "annxml", archiveOfAnn(true));
  write(folder + "circle", circle());
  write(folder + "wrongtypes", wrongTypes());
  return EXIT_SUCCESS;
}
