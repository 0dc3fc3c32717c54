#pragma once

#include <curl/curl.h>

#include <memory>

namespace pelorino {

struct HttpRequest;

using CurlHeaders = std::unique_ptr<curl_slist, void (*)(curl_slist*)>;

/// The request's headers in their order, and what keeps curl from adding any but Host and Accept.
/// A line end within a header would make two headers of it, so it is sent as a blank.
[[nodiscard]] CurlHeaders curlHeadersOf(const HttpRequest& request);

}  // namespace pelorino
