#include "Host.h"

#include <utility>

#include "DescribedExchange.h"
#include "Guarded.h"
#include "HostCode.h"
#include "ResolvedHost.h"
#include "System.h"

namespace pelorino {
namespace {

/// Never destroyed: the library's threads may ask while the process exits.
struct State {
  Guarded<std::shared_ptr<const HostDescription>> description{
      std::make_shared<const HostDescription>()};
  Guarded<ApplicationState> applicationState{ApplicationState::active};
  HostSlot<std::shared_ptr<PLRStore>> store;
};

State& state() {
  static State& shared = *new State;
  return shared;
}

}  // namespace

void Host::describe(HostDescription description) {
  closeHostCodeAtExit();
  state().description.set(std::make_shared<const HostDescription>(std::move(description)));
}

std::shared_ptr<const HostDescription> Host::description() {
  return state().description.get();
}

ApplicationState Host::applicationState() {
  return state().applicationState.get();
}

void Host::setApplicationState(ApplicationState applicationState) {
  state().applicationState.set(applicationState);
}

Host::HeldStore Host::store() {
  return state().store.get();
}

void Host::setStore(std::shared_ptr<PLRStore> store) {
  state().store.set(std::move(store));
}

ResolvedHost& Host::facts() {
  static ResolvedHost& shared =
      *new ResolvedHost(&Host::description, System::current().facts(), System::current().clock());
  return shared;
}

HttpExchange& Host::http() {
  static HttpExchange& shared =
      *new DescribedExchange(&Host::description, System::current().http());
  return shared;
}

}  // namespace pelorino
