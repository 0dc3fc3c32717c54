#include <pelorino/PLRReferralProperty.h>
#include <pelorino/PLRSocialNetwork.h>

#include <atomic>
#include <memory>
#include <string>
#include <string_view>

namespace {

/// The instance of this name. It is never destroyed: a host may use it while the process exits.
/// There is no lock: in a forked child, a lock could stay locked for ever. The name is copied: the
/// module that holds the literal may be unloaded.
template <class Named>
const Named& sharedInstance(std::string_view name) {
  struct Node {
    Named value;
    const Node* next;
  };
  static constinit std::atomic<const Node*> newest{nullptr};
  std::unique_ptr<Node> made;
  const Node* known = newest.load(std::memory_order_acquire);
  do {
    for (const Node* node = known; node != nullptr; node = node->next) {
      if (node->value.name() == name) return node->value;
    }
    if (!made) made.reset(new Node{Named(std::string(name)), nullptr});
    made->next = known;
    // Fails if another thread has added a name meanwhile. Then search again: it may be this one.
  } while (!newest.compare_exchange_weak(known, made.get(), std::memory_order_acq_rel,
                                         std::memory_order_acquire));
  return made.release()->value;
}

}  // namespace

const PLRSocialNetwork& PLRSocialNetwork::shared(const char* name) {
  return sharedInstance<PLRSocialNetwork>(name);
}

const PLRReferralProperty& PLRReferralProperty::shared(const char* name) {
  return sharedInstance<PLRReferralProperty>(name);
}
