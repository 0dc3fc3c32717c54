#pragma once

#include <pelorino/PLRExport.h>
#include <pelorino/SKProduct.h>

#include <functional>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <vector>

/// What a store answers to a request for products.
struct SKProductsResponse {
  std::vector<SKProduct> products;
  std::optional<std::string> error;  ///< Why there is no answer; the products then do not count.
};

/// One request for products. The library drops it when it has been answered or is not wanted any
/// more.
class PLR_EXPORT SKProductsRequest {
 public:
  virtual ~SKProductsRequest() = default;

  /// Once, on a thread of the library. It must not wait for the answer.
  virtual void start() = 0;

  /// The answer is not wanted any more; one that comes all the same is ignored.
  virtual void cancel() = 0;
};

/// The store that sells the application's subscriptions, as PLRHost::setStore() takes it.
class PLR_EXPORT PLRStore {
 public:
  /// Takes the one answer to a request: from any thread, also within start(). It may outlive the
  /// library.
  using ProductsHandler = std::function<void(SKProductsResponse response)>;

  virtual ~PLRStore() = default;

  /// A request for these products that has not begun. On a thread of the library. None, and an
  /// exception, here or when it starts, count as an answer with an error. After an error the
  /// library asks again, later and later.
  [[nodiscard]] virtual std::shared_ptr<SKProductsRequest> makeProductsRequest(
      const std::set<std::string>& productIdentifiers, ProductsHandler handler) = 0;
};
