#include "DescribedExchange.h"

#include <utility>

namespace pelorino {

DescribedExchange::DescribedExchange(Described described, HttpExchange& http)
    : described_(std::move(described)), http_(http) {}

bool DescribedExchange::isValidUrl(const std::string& url) const {
  return http_.isValidUrl(url);
}

HttpResponse DescribedExchange::perform(const HttpRequest& request) {
  const auto described = described_();
  // A body may be large: it is copied only where there is something to add.
  if (!described->certificateAuthorityFile && !described->proxy) return http_.perform(request);
  HttpRequest routed = request;
  routed.certificateAuthorityFile = described->certificateAuthorityFile;
  routed.proxy = described->proxy;
  return http_.perform(routed);
}

}  // namespace pelorino
