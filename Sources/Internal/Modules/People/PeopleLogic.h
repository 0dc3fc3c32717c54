#pragma once

#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "HostClosure.h"
#include "ModuleFront.h"
#include "PeopleReservedKeys.h"
#include "PeopleService.h"

namespace pelorino {

/// The front of the user's card. Here a public call leaves the caller's thread: it becomes a block
/// on the incomeQueue, which refuses it if the library isn't started, validates its arguments, asks
/// the exclusions, and only then calls the service. So calls are applied in their order of arrival,
/// and a getter sees every change before it.
///
/// `method` is what messages call the operation; a constant.
///
/// Threads: any. The service is given on the incomeQueue, and the handlers run there.
class PeopleLogic final : public ModuleFront<PeopleService> {
 public:
  using ValueHandler = HostClosure<void(const std::optional<PeopleValueType>& value)>;

  /// None takes it away, and calls are refused again.
  void setPeopleService(PeopleService* peopleService) { setLogic(peopleService); }

  /// The caller answers for the type of the value.
  void setReservedValue(PeopleReservedKeys key, PeopleValueType value, const char* method);
  void setValue(std::string key, PeopleValueType value, const char* method);
  void increment(std::string key, PeopleValueType value, const char* method);
  /// Answers with nothing where the key is refused or has no value.
  void getValue(std::string key, ValueHandler handler, const char* method);
  void unset(std::vector<std::string> properties, const char* method);
  void clearUser(const char* method);

 private:
  using Change = void (PeopleService::*)(const std::string& key, const PeopleValueType& value);

  /// Runs `work(*service)` on the incomeQueue, where there is one.
  template <class Work>
  void perform(const char* method, Work work);
  void change(std::string key, PeopleValueType value, const char* method, Change operation);
};

}  // namespace pelorino
