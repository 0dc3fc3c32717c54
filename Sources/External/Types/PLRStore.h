#pragma once

#include <pelorino/PLRExport.h>
#include <pelorino/SKProduct.h>

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

/// A store's answer to a request for products.
struct SKProductsResponse {
  std::vector<SKProduct> products;
  std::optional<std::string> error;  ///< The reason of a failure; the products are then ignored.
};

/// One request for products. The library releases it when it has the answer or no longer needs it.
class PLR_EXPORT SKProductsRequest {
 public:
  virtual ~SKProductsRequest() = default;

  /// Called once, on a thread of the library. It must not wait for the answer.
  virtual void start() = 0;

  /// Called on a thread of the library when the answer is no longer needed. A late answer is
  /// ignored.
  virtual void cancel() = 0;
};

/// The store that sells the application's subscriptions; see PLRHost::setStore().
class PLR_EXPORT PLRStore {
 public:
  /// Call it once with the answer to a request: from any thread, also within start(). Further
  /// answers are ignored. It may be called after the library has ended.
  using ProductsHandler = std::function<void(SKProductsResponse response)>;

  virtual ~PLRStore() = default;

  /// Makes a request for these products, but does not start it. Called on a thread of the library.
  /// A null result, or an exception here or in start(), counts as an answer with an error. After an
  /// error the library asks again after one minute, then two, three, and then every four.
  [[nodiscard]] virtual std::shared_ptr<SKProductsRequest> makeProductsRequest(
      const std::set<std::string>& productIdentifiers, ProductsHandler handler) = 0;
};
