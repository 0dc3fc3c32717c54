#include "CurlExchange.h"

#include <exception>

#include "CurlLibrary.h"
#include "CurlSession.h"
#include "ExitGate.h"
#include "HttpUrl.h"
#include "QueueWorker.h"

namespace pelorino {
namespace {

bool enterLibrary() {
  const ExitGate::Pass pass;
  return CurlLibrary::enterThread();
}

HttpResponse failure(const char* words) {
  HttpResponse response;
  response.error = words;
  return response;
}

}  // namespace

CurlExchange::CurlExchange() = default;

CurlExchange::~CurlExchange() = default;

bool CurlExchange::isValidUrl(const std::string& url) const {
  return isValidHttpUrl(url);
}

HttpResponse CurlExchange::perform(const HttpRequest& request) {
  try {
    return enterLibrary() ? exchange(request) : failure("The HTTP client cannot be set up");
  } catch (const std::exception& error) {
    return failure(error.what());
  }
}

HttpResponse CurlExchange::exchange(const HttpRequest& request) {
  const QueueWorker* queue = QueueWorker::current();
  if (queue == nullptr) return CurlSession().exchange(request);
  // Only this thread uses the slot, and it stays where it is when others are added.
  std::unique_ptr<CurlSession>* slot =
      sessions_.update([queue](auto& sessions) { return &sessions[queue]; });
  if (!*slot) *slot = std::make_unique<CurlSession>();
  return (*slot)->exchange(request);
}

}  // namespace pelorino
