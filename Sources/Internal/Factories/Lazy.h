#pragma once

#include <memory>

namespace pelorino {

/// A slot that is filled on first read and stays filled.
template <class Product>
class Lazy {
 public:
  template <class... Parts>
  const std::shared_ptr<Product>& get(const Parts&... parts) {
    if (!product_) product_ = std::make_shared<Product>(parts...);
    return product_;
  }

 private:
  std::shared_ptr<Product> product_;
};

}  // namespace pelorino
