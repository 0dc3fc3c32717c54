#include "PlatformRequest.h"

#include <fmt/format.h>

#include <algorithm>
#include <chrono>
#include <string_view>

#include "Base64.h"
#include "Logger.h"

namespace pelorino {
namespace {

constexpr std::chrono::milliseconds timeout{60'000};

/// A line break in a header would let its value forge further headers.
bool hasControlCharacter(std::string_view text) {
  return std::ranges::any_of(text, [](char c) {
    const auto code = static_cast<unsigned char>(c);
    return code < 0x20 || code == 0x7F;
  });
}

std::string headerLines(const JSONContent::Headers& headers) {
  std::string lines;
  for (const auto& [key, value] : headers) {
    if (!lines.empty()) lines += ",\n";
    lines.append("\t\t").append(key).append(": ").append(value);
  }
  return lines;
}

}  // namespace

std::string UrlBuilder::buildFullPath() const {
  std::string url = host + path;
  char separator = '?';
  for (const auto& [key, value] : queryParameter) {
    url.append(1, separator).append(key).append(1, '=').append(value);
    separator = '&';
  }
  return url;
}

JSONContent::Headers JSONContent::getBase64Headers() const {
  Headers encoded = headers;
  for (const std::string& key : encodingKeys) {
    const auto header = encoded.find(key);
    if (header != encoded.end()) header->second = base64(header->second);
  }
  return encoded;
}

Response PlatformRequest::send() const {
  Response response;
  HttpRequest request;
  request.url = urlBuilder_.buildFullPath();
  if (!http_.isValidUrl(request.url)) return response;
  request.timeout = timeout;
  request.body = requestContent_.object.toJSONData();
  if (!request.body) {
    const PLRError error("getContent Error");
    Logger::writeLog(PLRLogLevel::error, [&] {
      return "[Network Module] Can't parse response data. Error: " + error.description();
    });
    return response;
  }
  request.method = rawValue(type_);
  const JSONContent::Headers encoded = requestContent_.getBase64Headers();
  addHeaders(request, encoded);
  Logger::writeLog(PLRLogLevel::debug, [&] { return logMessage(request, encoded); });

  HttpResponse answer = http_.perform(request);
  if (answer.status) response.statusCode = *answer.status;
  response.data = std::move(answer.body);
  if (answer.error) response.error.emplace(*answer.error);
  return response;
}

void PlatformRequest::addHeaders(HttpRequest& request, const JSONContent::Headers& encoded) const {
  request.headers.emplace_back("Content-Length", std::to_string(request.body->size()));
  request.headers.emplace_back("Content-Type", requestContent_.headerKeyType);
  request.headers.insert(request.headers.end(), encoded.begin(), encoded.end());
  std::erase_if(request.headers, [](const auto& header) {
    if (!hasControlCharacter(header.first) && !hasControlCharacter(header.second)) return false;
    Logger::writeLog(PLRLogLevel::error,
                     "[Network Module] A header with control characters was not sent");
    return true;
  });
}

std::string PlatformRequest::logMessage(const HttpRequest& request,
                                        const JSONContent::Headers& encoded) const {
  const std::string identifier =
      requestIdentifier_ ? "Content UUID: " + *requestIdentifier_ + " \n" : "";
  return fmt::format(
      "[Network Module] \n Method: {}\n URL: {}\n Content-type: {}\n Headers: \n{}\n"
      " EncodedHeaders: \n{}\n {} Content: {} \n",
      request.method, request.url, requestContent_.headerKeyType,
      headerLines(requestContent_.headers), headerLines(encoded), identifier,
      indentedJson(*request.body));
}

}  // namespace pelorino
