#pragma once

#include <string>
#include <vector>

#include "HttpExchange.h"

namespace pelorino {

/// Keeps every request and answers each with `answer`.
class RecordingExchange final : public HttpExchange {
 public:
  [[nodiscard]] bool isValidUrl(const std::string& url) const override {
    return url.find_first_of(" \r\n") == std::string::npos;
  }

  [[nodiscard]] HttpResponse perform(const HttpRequest& request) override {
    requests.push_back(request);
    return answer;
  }

  HttpResponse answer;
  std::vector<HttpRequest> requests;
};

}  // namespace pelorino
