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
      {"iPhone2,9", 163},
      {"iPhone10,2", 401},
      {"iPhone10,3", 458},
      {"iPhone11,1", {}},
      {"iPhone11,2", 458},
      {"iPhone11,6", 458},
      {"iPhone11,7", {}},
      {"iPhone11,8", 326},
      {"iPhone13,1", 476},
      {"iPhone13,3", 460},
      {"iPhone14,1", {}},
      {"iPad1,4", 132},
      {"iPad1,5", {}},
      {"iPad2,5", 163},
      {"iPad4,4", 326},
      {"iPad5,3", 264},
      {"iPad8", 264},
      {"iPad11,5", {}},
      {"iPod3,1", 163},
      {"iPod9,1", 326},
      // Not of the form family, major, minor.
      {"", {}},
      {"iphone10,3", {}},
      {"10,3iPhone", 458},
      {"iPhone,10,,3,7", 458},
      {"iPhone", {}},
      {"x86_64", {}},
      {"iPhone99999999999,3", {}},
  };
  for (const Case& c : cases) EXPECT_EQ(pixelDensity(c.model), c.ppi) << c.model;
}

}  // namespace
}  // namespace pelorino
