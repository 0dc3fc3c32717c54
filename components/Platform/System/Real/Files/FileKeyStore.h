#pragma once

#include <optional>
#include <string>

#include "KeyFileFormat.h"
#include "KeyStore.h"

namespace pelorino {

/// Values in one small file, owner-only, read and replaced whole. Processes that share it do not
/// lose each other's values. Any thread.
class FileKeyStore final : public KeyStore {
 public:
  explicit FileKeyStore(std::string path);

  [[nodiscard]] std::optional<std::string> get(std::string_view account) override;
  [[nodiscard]] bool set(std::string_view account, std::string_view value) override;
  [[nodiscard]] bool remove(std::string_view account) override;

 private:
  /// Empty if there is no file; absent if the file cannot be read or must not be changed.
  [[nodiscard]] std::optional<KeyValues> read() const;

  /// Runs `edit` on the values and stores them when it says true, with other processes kept out.
  template <class Edit>
  [[nodiscard]] bool change(Edit edit);

  const std::string path_;
};

}  // namespace pelorino
