#include "MessagingConfig.h"

#include <utility>

namespace pelorino {

void decode(const JsonView& json, MessagingConfig& config) {
  const FieldReader fields(FieldReader(json).at("pushCategories"));
  std::optional<std::vector<MessagingCategory>> categories;
  fields("version", config.version);
  fields(Field("categories").nullWhenAbsent(), categories);
  fields("removed", config.removed);
  config.categories = std::move(categories).value_or(std::vector<MessagingCategory>());
}

}  // namespace pelorino
