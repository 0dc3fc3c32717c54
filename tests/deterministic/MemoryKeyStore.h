#pragma once

#include <map>
#include <memory>

#include "KeyStore.h"

namespace pelorino {

/// A key store whose values outlive the object: every store opened on the same values sees them.
class MemoryKeyStore final : public KeyStore {
 public:
  struct Values {
    std::map<std::string, std::string, std::less<>> byAccount;
    bool isReadable = true;
    bool isWritable = true;
  };

  explicit MemoryKeyStore(std::shared_ptr<Values> values) : values_(std::move(values)) {}

  [[nodiscard]] std::optional<std::string> get(std::string_view account) override {
    const auto found = values_->byAccount.find(account);
    if (!values_->isReadable || found == values_->byAccount.end()) return std::nullopt;
    return found->second;
  }

  [[nodiscard]] bool set(std::string_view account, std::string_view value) override {
    if (!values_->isWritable) return false;
    values_->byAccount.insert_or_assign(std::string(account), std::string(value));
    return true;
  }

  [[nodiscard]] bool remove(std::string_view account) override {
    const auto found = values_->byAccount.find(account);
    if (!values_->isWritable || found == values_->byAccount.end()) return false;
    values_->byAccount.erase(found);
    return true;
  }

 private:
  std::shared_ptr<Values> values_;
};

}  // namespace pelorino
