#include "UserCardCommands.h"

#include <pelorino/PLRUserCard.h>

#include <string>

#include "Names.h"

namespace pelorino::host {

namespace {

void setGender(const Arguments& arguments) {
  PLRUserCard::setGender(genderOf(arguments.text("gender")));
}

void getGender(std::string_view op, const Arguments&) {
  PLRUserCard::getGender([op](PLRGender gender) { writeResult(op, description(gender)); });
}

void set(const Arguments& arguments) {
  const std::string key = arguments.text("key");
  arguments.scalar("value", [&](auto value) { PLRUserCard::set(key, value); });
}

void getValue(std::string_view op, const Arguments& arguments) {
  PLRUserCard::getValue(
      arguments.text("key"),
      [op](const std::optional<PLRUserCard::Value>& value) { writeResult(op, value); });
}

void increment(const Arguments& arguments) {
  const std::string key = arguments.text("key");
  arguments.scalar("value", [&](auto value) {
    if constexpr (requires { PLRUserCard::increment(key, value); }) {
      PLRUserCard::increment(key, value);
    } else {
      refuse("value", "a number");
    }
  });
}

void unset(const Arguments& arguments) {
  const auto properties = arguments.maybeTexts("properties");
  if (!properties) return PLRUserCard::unset(arguments.text("property"));
  if (arguments.has("property")) {
    throw CommandError("\"property\" and \"properties\" exclude each other");
  }
  PLRUserCard::unset(*properties);
}

}  // namespace

CommandTable userCardCommands() {
  return {
      {"userCard.setName", withText("name", PLRUserCard::setName)},
      {"userCard.getName", asking(PLRUserCard::getName)},
      {"userCard.setEmail", withText("email", PLRUserCard::setEmail)},
      {"userCard.getEmail", asking(PLRUserCard::getEmail)},
      {"userCard.setPhone", withText("phone", PLRUserCard::setPhone)},
      {"userCard.getPhone", asking(PLRUserCard::getPhone)},
      {"userCard.setPhoto", withText("photo", PLRUserCard::setPhoto)},
      {"userCard.getPhoto", asking(PLRUserCard::getPhoto)},
      {"userCard.setGender", command({R"({"gender":"Female"})"}, setGender)},
      {"userCard.getGender", command({"{}"}, getGender)},
      {"userCard.setAge", withInteger("age", PLRUserCard::setAge)},
      {"userCard.getAge", asking(PLRUserCard::getAge)},
      {"userCard.setCheater", withBoolean("cheater", PLRUserCard::setCheater)},
      {"userCard.getCheater", asking(PLRUserCard::getCheater)},
      {"userCard.set",
       command({R"({"key":"key","value":1.5})", R"({"key":"guild","value":"owls"})"}, set)},
      {"userCard.getValue", command({R"({"key":"key"})"}, getValue)},
      {"userCard.unset",
       command({R"({"property":"key"})", R"({"properties":["key","guild"]})"}, unset)},
      {"userCard.increment",
       command({R"({"key":"key","value":1})", R"({"key":"key","value":0.5})"}, increment)},
      {"userCard.clearUser", plain(PLRUserCard::clearUser)},
  };
}

}  // namespace pelorino::host
