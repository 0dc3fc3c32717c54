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

/// The front of the user's card. Each call becomes a block on the incomeQueue. The block refuses
/// the call if the library is not started, checks its arguments and the exclusions, and then calls
/// the service. So calls are applied in the order in which they were made, and a getter sees every
/// earlier change.
///
/// `method` is the operation's name in log lines. It must live for ever, as a literal does.
///
/// Threads: any, except setPeopleService(): the incomeQueue only. Handlers run on the incomeQueue.
/// Errors:  refused calls are logged.
class PeopleLogic final : public ModuleFront<PeopleService> {
 public:
  using ValueHandler = HostClosure<void(const std::optional<PeopleValueType>& value)>;

  /// Sets the service, which is borrowed. With null, calls are refused.
  void setPeopleService(PeopleService* peopleService) { setLogic(peopleService); }

  /// Does not check the type of the value: the caller must pass the type that the key requires.
  void setReservedValue(PeopleReservedKeys key, PeopleValueType value, const char* method);
  void setValue(std::string key, PeopleValueType value, const char* method);
  void increment(std::string key, PeopleValueType value, const char* method);
  /// The answer is absent when the key is refused or has no value.
  void getValue(std::string key, ValueHandler handler, const char* method);
  void unset(std::vector<std::string> properties, const char* method);
  void clearUser(const char* method);

 private:
  using Change = void (PeopleService::*)(const std::string& key, const PeopleValueType& value);

  /// Runs `work(*service)` on the incomeQueue, unless the call is refused.
  template <class Work>
  void perform(const char* method, Work work);
  void change(std::string key, PeopleValueType value, const char* method, Change operation);
};

}  // namespace pelorino
