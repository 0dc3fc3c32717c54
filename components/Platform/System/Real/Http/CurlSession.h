#pragma once

#include <curl/curl.h>

#include <array>
#include <memory>
#include <string>

#include "CurlHeaders.h"
#include "HttpExchange.h"

namespace pelorino {

/// One exchange after another over connections that are kept between them.
///
/// Threads: one at a time, after CurlLibrary::enterThread(). libcurl works inside the exit gate and
/// waits outside of it. Errors: exceptions; their text is for HttpResponse::error.
class CurlSession final {
 public:
  CurlSession();
  ~CurlSession();
  CurlSession(const CurlSession&) = delete;
  CurlSession& operator=(const CurlSession&) = delete;

  [[nodiscard]] HttpResponse exchange(const HttpRequest& request);

 private:
  struct Answer {
    std::string body;
    bool isTooLong = false;
    bool hasWholeHead = false;
  };

  static std::size_t receiveHead(char* line, std::size_t size, std::size_t count,
                                 void* answer) noexcept;
  static std::size_t receive(char* data, std::size_t size, std::size_t count,
                             void* answer) noexcept;

  void prepare(const HttpRequest& request, Answer& answer);
  [[nodiscard]] CURLcode drive();
  [[nodiscard]] bool perform();
  [[nodiscard]] CURLcode result();
  [[nodiscard]] HttpResponse response(CURLcode result, Answer answer);

  template <class T>
  using Handle = std::unique_ptr<T, void (*)(T*)>;

  Handle<CURLM> multi_;  ///< Keeps the connections.
  Handle<CURL> easy_;
  CurlHeaders headers_;
  std::array<char, CURL_ERROR_SIZE> errorText_{};
};

}  // namespace pelorino
