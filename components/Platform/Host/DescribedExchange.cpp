#include "DescribedExchange.h"

#include <utility>

#include "Logger.h"

namespace pelorino {

DescribedExchange::DescribedExchange(Described described, HttpExchange& http)
    : described_(std::move(described)), http_(http) {}

bool DescribedExchange::isValidUrl(const std::string& url) const {
  return http_.isValidUrl(url);
}

HttpResponse DescribedExchange::perform(const HttpRequest& request) {
  HttpResponse response = performAsDescribed(request);
  // Further up nothing but a status is left of it: a certificate that is refused reads like a
  // request that is.
  if (response.error) {
    Logger::writeLog(PLRLogLevel::debug,
                     [&] { return "[Platform Module] The exchange failed: " + *response.error; });
  }
  return response;
}

HttpResponse DescribedExchange::performAsDescribed(const HttpRequest& request) {
  const auto described = described_();
  // A body may be large: it is copied only where there is something to add.
  if (!described->certificateAuthorityFile && !described->proxy) return http_.perform(request);
  HttpRequest routed = request;
  routed.certificateAuthorityFile = described->certificateAuthorityFile;
  routed.proxy = described->proxy;
  return http_.perform(routed);
}

}  // namespace pelorino
