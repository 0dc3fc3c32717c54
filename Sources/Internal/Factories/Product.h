#pragma once

#include <memory>

namespace pelorino {

/// A slot that is filled on first read and stays filled.
template <class Made>
class Product final {
 public:
  template <class... Parts>
  const std::shared_ptr<Made>& get(const Parts&... parts) {
    if (!product_) product_ = std::make_shared<Made>(parts...);
    return product_;
  }

 private:
  std::shared_ptr<Made> product_;
};

}  // namespace pelorino
