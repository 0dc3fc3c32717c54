#include "Host.h"

#include <utility>

#include "DescribedExchange.h"
#include "ExitGate.h"
#include "Guarded.h"
#include "ResolvedHost.h"
#include "System.h"

namespace pelorino {
namespace {

/// Never destroyed: the library's threads may ask while the process exits.
struct State {
  Guarded<std::shared_ptr<const HostDescription>> description{
      std::make_shared<const HostDescription>()};
  Guarded<ApplicationState> applicationState{ApplicationState::active};
  Guarded<std::shared_ptr<PLRStore>> store;
};

State& state() {
  static State& shared = *new State;
  return shared;
}

}  // namespace

void Host::describe(HostDescription description) {
  ExitGate::arm();
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

std::shared_ptr<PLRStore> Host::store() {
  return state().store.get();
}

void Host::setStore(std::shared_ptr<PLRStore> store) {
  if (store) ExitGate::arm();
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
