#include <gtest/gtest.h>

#include "PixelDensity.h"

namespace pelorino {
namespace {

TEST(PixelDensity, FollowsFamilyMajorAndMinor) {
  struct Case {
    const char* model;
    std::optional<std::int64_t> ppi;
  };
  const Case cases[] = {
      {"iPhone10,3", 458},
      {"iPhone10,2", 401},
      {"iPhone9,1", 326},
      {"iPhone2,9", 163},
      {"iPhone3,1", 326},
      {"iPhone11,1", std::nullopt},
      {"iPhone11,2", 458},
      {"iPhone11,6", 458},
      {"iPhone11,7", std::nullopt},
      {"iPhone11,8", 326},
      {"iPhone13,1", 476},
      {"iPhone13,3", 460},
      {"iPhone13,4", 458},
      {"iPhone14,1", std::nullopt},
      {"iPad1,4", 132},
      {"iPad1,5", std::nullopt},
      {"iPad2,5", 163},
      {"iPad4,2", std::nullopt},
      {"iPad4,4", 326},
      {"iPad5,2", 326},
      {"iPad5,3", 264},
      {"iPad8", 264},
      {"iPad9", std::nullopt},
      {"iPad11,5", std::nullopt},
      {"iPad13,2", 326},
      {"iPod3,1", 163},
      {"iPod9,1", 326},
      {"iPod10,1", std::nullopt},
      // Not of the form family, major, minor.
      {"", std::nullopt},
      {"x86_64", std::nullopt},
      {"iphone10,3", std::nullopt},
      {"iPhone", std::nullopt},
      {"10,3iPhone", 458},
      {"iPhone,10,,3,7", 458},
      {"iPhone99999999999999999999,3", std::nullopt},
  };
  for (const Case& c : cases) {
    SCOPED_TRACE(c.model);
    EXPECT_EQ(pixelDensity(c.model), c.ppi);
  }
}

}  // namespace
}  // namespace pelorino
