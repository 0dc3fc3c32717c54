#include <pelorino/PLRUserCard.h>

#include <type_traits>
#include <utility>

#include "Core.h"
#include "Entry.h"
#include "HostText.h"

using namespace pelorino;

namespace {

using Key = PeopleReservedKeys;
using Handler = PeopleLogic::ValueHandler;

PeopleValueType cardValue(std::string_view text) {
  return repaired(text);
}

template <class... Kinds>
PeopleValueType cardValue(const std::variant<Kinds...>& value) {
  return std::visit([](const auto& plain) { return PeopleValueType(plain); }, value);
}

template <class Plain>
requires std::is_arithmetic_v<Plain> PeopleValueType cardValue(Plain value) {
  return value;
}

/// Hands an operation to the front. `method` is its name in log lines.
template <class Work>
void submit(const char* method, Work work) noexcept {
  enter(method, [&] { work(Core::shared()->peopleLogic(), method); });
}

template <class Value>
void setReserved(const char* method, Key key, Value value) noexcept {
  submit(method, [&](PeopleLogic& logic, const char* name) {
    logic.setReservedValue(key, cardValue(value), name);
  });
}

template <class Value>
void setAny(std::string_view key, const Value& value) noexcept {
  submit("set(key:value:)", [&](PeopleLogic& logic, const char* name) {
    logic.setValue(repaired(key), cardValue(value), name);
  });
}

template <class Keys>
void unsetAll(const Keys& keys) noexcept {
  submit("unset(properties:)", [&](PeopleLogic& logic, const char* name) {
    std::vector<std::string> copies;
    for (const std::string_view key : keys) copies.push_back(repaired(key));
    logic.unset(std::move(copies), name);
  });
}

/// `answer` turns the card's value, which may be absent, into what the host's handler gets.
template <class HostHandler, class Answer>
void ask(const char* method, std::string_view key, HostHandler& handler, Answer answer) noexcept {
  submit(method, [&](PeopleLogic& logic, const char* name) {
    Handler forward;
    if (handler) {
      forward = [handler = std::move(handler),
                 answer](const std::optional<PeopleValueType>& value) { handler(answer(value)); };
    }
    logic.getValue(repaired(key), std::move(forward), name);
  });
}

template <class Kind>
auto orElse(Kind fallback) {
  return [fallback](const std::optional<PeopleValueType>& value) {
    const Kind* held = value ? value->get<Kind>() : nullptr;
    return held ? *held : fallback;
  };
}

PLRGender genderOf(const std::optional<PeopleValueType>& value) {
  // The stored card may hold any number.
  const auto raw = orElse(std::int64_t{-1})(value);
  if (!std::in_range<int>(raw)) return PLRGender::Unknown;
  return PLRGenderFromRaw(static_cast<int>(raw)).value_or(PLRGender::Unknown);
}

std::optional<PLRUserCard::Value> hostValue(const std::optional<PeopleValueType>& value) {
  if (!value) return std::nullopt;
  if (const auto* held = value->get<bool>()) return *held;
  if (const auto* held = value->get<std::int64_t>()) return *held;
  if (const auto* held = value->get<double>()) return *held;
  return value->toString();
}

}  // namespace

void PLRUserCard::setName(std::string_view name) noexcept {
  setReserved("setName(name:)", Key::name, name);
}

void PLRUserCard::getName(std::function<void(const std::string&)> completionHandler) noexcept {
  ask("getName(completionHandler:)", rawValue(Key::name), completionHandler, orElse(std::string()));
}

void PLRUserCard::setEmail(std::string_view email) noexcept {
  setReserved("setEmail(email:)", Key::email, email);
}

void PLRUserCard::getEmail(std::function<void(const std::string&)> completionHandler) noexcept {
  ask("getEmail(completionHandler:)", rawValue(Key::email), completionHandler,
      orElse(std::string()));
}

void PLRUserCard::setPhone(std::string_view phone) noexcept {
  setReserved("setPhone(phone:)", Key::phone, phone);
}

void PLRUserCard::getPhone(std::function<void(const std::string&)> completionHandler) noexcept {
  ask("getPhone(completionHandler:)", rawValue(Key::phone), completionHandler,
      orElse(std::string()));
}

void PLRUserCard::setPhoto(std::string_view photo) noexcept {
  setReserved("setPhoto(photo:)", Key::photo, photo);
}

void PLRUserCard::getPhoto(std::function<void(const std::string&)> completionHandler) noexcept {
  ask("getPhoto(completionHandler:)", rawValue(Key::photo), completionHandler,
      orElse(std::string()));
}

// As a number, which is also what a stored card gives back: so an equal value is recognised.
void PLRUserCard::setGender(PLRGender gender) noexcept {
  setReserved("setGender(gender:)", Key::gender, std::int64_t{static_cast<int>(gender)});
}

void PLRUserCard::getGender(std::function<void(PLRGender)> completionHandler) noexcept {
  ask("getGender(completionHandler:)", rawValue(Key::gender), completionHandler, genderOf);
}

void PLRUserCard::setAge(std::int64_t age) noexcept {
  setReserved("setAge(age:)", Key::age, age);
}

void PLRUserCard::getAge(std::function<void(std::int64_t)> completionHandler) noexcept {
  ask("getAge(completionHandler:)", rawValue(Key::age), completionHandler, orElse(std::int64_t{0}));
}

void PLRUserCard::setCheater(bool cheater) noexcept {
  setReserved("setCheater(cheater:)", Key::cheater, cheater);
}

void PLRUserCard::getCheater(std::function<void(bool)> completionHandler) noexcept {
  ask("getCheater(completionHandler:)", rawValue(Key::cheater), completionHandler, orElse(false));
}

void PLRUserCard::set(std::string_view key, std::string_view value) noexcept {
  setAny(key, value);
}

void PLRUserCard::setValue(std::string_view key, PLRNumber value) noexcept {
  setAny(key, value);
}

void PLRUserCard::getValue(
    std::string_view key,
    std::function<void(const std::optional<Value>& value)> completionHandler) noexcept {
  ask("getValue(key:_:)", key, completionHandler, hostValue);
}

void PLRUserCard::unset(std::string_view property) noexcept {
  submit("unset(property:)", [&](PeopleLogic& logic, const char* method) {
    logic.unset({repaired(property)}, method);
  });
}

void PLRUserCard::unset(const std::vector<std::string>& properties) noexcept {
  unsetAll(properties);
}

void PLRUserCard::unset(std::initializer_list<std::string_view> properties) noexcept {
  unsetAll(properties);
}

void PLRUserCard::addToValue(std::string_view key, PLRNumber value) noexcept {
  submit("increment(key:value:)", [&](PeopleLogic& logic, const char* method) {
    logic.increment(repaired(key), cardValue(value), method);
  });
}

void PLRUserCard::clearUser() noexcept {
  submit("clearUser()", [](PeopleLogic& logic, const char* method) { logic.clearUser(method); });
}
