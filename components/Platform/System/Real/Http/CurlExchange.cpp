#include "CurlExchange.h"

#include <curl/curl.h>

#include <algorithm>
#include <exception>
#include <memory>
#include <string_view>

#include "CurlLibrary.h"
#include "CurlSession.h"
#include "ExitGate.h"
#include "QueueWorker.h"

namespace pelorino {
namespace {

/// curl guesses at other forms: it takes "https:///path" for the host "path".
bool hasAuthority(std::string_view url) {
  constexpr std::string_view mark = "://";
  url.remove_prefix(std::min(url.find(':'), url.size()));
  return url.starts_with(mark) && !url.substr(mark.size()).starts_with('/');
}

bool isPrintableAscii(char c) {
  return c > ' ' && c < '\x7f';
}

using UrlHandle = std::unique_ptr<CURLU, decltype(&curl_url_cleanup)>;

/// Empty when the URL has no such part.
std::string part(const UrlHandle& url, CURLUPart which) {
  char* text = nullptr;
  if (curl_url_get(url.get(), which, &text, 0) != CURLUE_OK) return {};
  const std::unique_ptr<char, decltype(&curl_free)> owner(text, curl_free);
  return text;
}

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

bool isValidHttpUrl(const std::string& url) {
  if (!std::all_of(url.begin(), url.end(), isPrintableAscii) || !hasAuthority(url)) return false;
  const ExitGate::Pass pass;
  const UrlHandle parsed(curl_url(), curl_url_cleanup);
  if (!parsed || curl_url_set(parsed.get(), CURLUPART_URL, url.c_str(), 0) != CURLUE_OK) {
    return false;
  }
  // Schemes are lower-case in the parsed form.
  const std::string scheme = part(parsed, CURLUPART_SCHEME);
  return (scheme == "http" || scheme == "https") && !part(parsed, CURLUPART_HOST).empty();
}

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
