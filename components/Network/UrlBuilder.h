#pragma once

#include <map>
#include <string>
#include <utility>

#include "NetworkProtocols.h"

namespace pelorino {

/// A URL out of its parts, each taken as it is.
class UrlBuilder final : public UrlBuilderProtocol {
 public:
  explicit UrlBuilder(std::string host) : host_(std::move(host)) {}

  void setQueryParam(std::string key, std::string value) override {
    queryParameter_[std::move(key)] = std::move(value);
  }

  [[nodiscard]] std::string buildFullPath() const override;

 private:
  std::string host_;
  std::map<std::string, std::string> queryParameter_;
};

}  // namespace pelorino
