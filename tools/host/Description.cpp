#include "Description.h"

#include <pelorino/PLRHost.h>

#include <array>
#include <limits>

#include "Names.h"

namespace pelorino::host {

namespace {

struct TextField {
  std::string_view name;
  std::optional<std::string> PLRHostDescription::*member;
};

constexpr std::array textFields = {
    TextField{"applicationName", &PLRHostDescription::applicationName},
    TextField{"applicationVersion", &PLRHostDescription::applicationVersion},
    TextField{"applicationBuildVersion", &PLRHostDescription::applicationBuildVersion},
    TextField{"bundleIdentifier", &PLRHostDescription::bundleIdentifier},
    TextField{"bundleFolder", &PLRHostDescription::bundleFolder},
    TextField{"receiptFile", &PLRHostDescription::receiptFile},
    TextField{"supportDirectory", &PLRHostDescription::supportDirectory},
    TextField{"keyStoreFile", &PLRHostDescription::keyStoreFile},
    TextField{"certificateAuthorityFile", &PLRHostDescription::certificateAuthorityFile},
    TextField{"proxy", &PLRHostDescription::proxy},
    TextField{"region", &PLRHostDescription::region},
    TextField{"vendorIdentifier", &PLRHostDescription::vendorIdentifier},
    TextField{"advertisingIdentifier", &PLRHostDescription::advertisingIdentifier},
    TextField{"machine", &PLRHostDescription::machine},
    TextField{"systemVersion", &PLRHostDescription::systemVersion},
};

void allowKnownFields(const Arguments& fields) {
  for (const auto& [key, ignored] : fields.fields()) {
    const std::string_view name = key;
    bool known = name == "preferredLanguages" || name == "trackingAuthorization" ||
                 name == "screen" || name == "integrityProbe" || name == "applicationState";
    for (const TextField& field : textFields) known = known || field.name == name;
    if (!known) throw CommandError("\"" + std::string(name) + "\" is no field of a description");
  }
}

PLRSize sizeOf(const Arguments& size) {
  size.allowOnly({"width", "height"});
  return {size.number("width"), size.number("height")};
}

PLRScreen screenOf(const Arguments& screen) {
  screen.allowOnly({"bounds", "scale", "nativeBounds"});
  return {sizeOf(screen.object("bounds")), screen.number("scale"),
          sizeOf(screen.object("nativeBounds"))};
}

}  // namespace

void describeHost(const Arguments& fields) {
  allowKnownFields(fields);
  PLRHostDescription description;
  for (const TextField& field : textFields) {
    description.*field.member = fields.maybeText(field.name);
  }
  description.preferredLanguages = fields.maybeTexts("preferredLanguages");
  if (const auto authorization = fields.maybeInteger("trackingAuthorization")) {
    if (*authorization < 0 || *authorization > 3) {
      throw CommandError("\"trackingAuthorization\" is not 0 to 3");
    }
    description.trackingAuthorization = static_cast<int>(*authorization);
  }
  if (fields.has("screen")) description.screen = screenOf(fields.object("screen"));
  if (fields.has("integrityProbe")) {
    description.integrityProbe = [answer = fields.boolean("integrityProbe")] { return answer; };
  }
  PLRHost::describe(description);
  if (const auto state = fields.maybeText("applicationState")) {
    PLRHost::setApplicationState(applicationStateOf(*state));
  }
}

}  // namespace pelorino::host
