#include "CurlSession.h"

#include <algorithm>
#include <chrono>
#include <cstdlib>
#include <new>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "ExitGate.h"

namespace pelorino {
namespace {

using namespace std::chrono_literals;

/// libcurl ends a wait earlier when it has something to do by then.
constexpr int longestPollMilliseconds = 10000;

/// One to the backend, one after a change of its address.
constexpr long keptConnections = 2;

/// Bytes a second below which nothing counts as moving.
constexpr long standstill = 1;

void check(CURLMcode code) {
  if (code != CURLM_OK) throw std::runtime_error(curl_multi_strerror(code));
}

/// An option that libcurl does not take may be one that protects: the exchange must not go on.
template <class T>
void set(CURL* easy, CURLoption option, T value) {
  const CURLcode code = (curl_easy_setopt)(easy, option, value);
  if (code != CURLE_OK) throw std::runtime_error(curl_easy_strerror(code));
}

void setProtection(CURL* easy) {
  set(easy, CURLOPT_PROTOCOLS_STR, "http,https");
  set(easy, CURLOPT_SSL_VERIFYPEER, 1L);
  set(easy, CURLOPT_SSL_VERIFYHOST, 2L);
  set(easy, CURLOPT_FOLLOWLOCATION, 0L);
  set(easy, CURLOPT_SSLVERSION, static_cast<long>(CURL_SSLVERSION_TLSv1_2));
  set(easy, CURLOPT_NETRC, static_cast<long>(CURL_NETRC_IGNORED));
}

void setTrust(CURL* easy, const char* file) {
  set(easy, CURLOPT_CAINFO, file);
  set(easy, CURLOPT_PROXY_CAINFO, file);
  // The folder of the system's certificates would be trusted beside the file.
  constexpr const char* none = nullptr;
  set(easy, CURLOPT_CAPATH, none);
  set(easy, CURLOPT_PROXY_CAPATH, none);
}

void setRoute(CURL* easy, const HttpRequest& request) {
  if (request.certificateAuthorityFile) {
    setTrust(easy, request.certificateAuthorityFile->c_str());
  } else if (const char* trusted = ::secure_getenv("SSL_CERT_FILE")) {
    // libcurl has a path built in and does not ask; other programs that use OpenSSL do.
    setTrust(easy, trusted);
  }
  if (request.proxy) set(easy, CURLOPT_PROXY, request.proxy->c_str());
}

void setConnection(CURL* easy, std::chrono::milliseconds timeout) {
  const auto patience = std::max(timeout, 1ms);
  const auto seconds = std::chrono::ceil<std::chrono::seconds>(patience);
  set(easy, CURLOPT_CONNECTTIMEOUT_MS, static_cast<long>(patience.count()));
  set(easy, CURLOPT_LOW_SPEED_TIME, static_cast<long>(seconds.count()));
  set(easy, CURLOPT_LOW_SPEED_LIMIT, standstill);
  set(easy, CURLOPT_NOSIGNAL, 1L);
  set(easy, CURLOPT_TCP_KEEPALIVE, 1L);
  set(easy, CURLOPT_MAXCONNECTS, keptConnections);
  // A name look-up that hangs is left behind, not waited for.
  set(easy, CURLOPT_QUICK_EXIT, 1L);
}

void setContent(CURL* easy, const HttpRequest& request) {
  set(easy, CURLOPT_URL, request.url.c_str());
  set(easy, CURLOPT_PATH_AS_IS, 1L);
  if (request.method == "GET" && !request.body) return;
  set(easy, CURLOPT_POST, 1L);
  set(easy, CURLOPT_POSTFIELDSIZE_LARGE,
      static_cast<curl_off_t>(request.body ? request.body->size() : 0));
  set(easy, CURLOPT_POSTFIELDS, request.body ? request.body->c_str() : "");
  set(easy, CURLOPT_CUSTOMREQUEST, request.method.c_str());
}

/// Joins the two handles for one exchange. The easy handle points into the request and must not
/// outlive it.
class Attachment final {
 public:
  Attachment(CURLM* multi, CURL* easy) : multi_(multi), easy_(easy) {
    const ExitGate::Pass pass;
    check(curl_multi_add_handle(multi_, easy_));
  }
  ~Attachment() {
    const ExitGate::Pass pass;
    curl_multi_remove_handle(multi_, easy_);
    curl_easy_reset(easy_);
  }
  Attachment(const Attachment&) = delete;
  Attachment& operator=(const Attachment&) = delete;

 private:
  CURLM* multi_;
  CURL* easy_;
};

}  // namespace

CurlSession::CurlSession()
    : multi_(nullptr, [](CURLM* multi) { curl_multi_cleanup(multi); }),
      easy_(nullptr, curl_easy_cleanup),
      headers_(nullptr, curl_slist_free_all) {
  const ExitGate::Pass pass;
  multi_.reset(curl_multi_init());
  easy_.reset(curl_easy_init());
  if (!multi_ || !easy_) throw std::bad_alloc{};
}

CurlSession::~CurlSession() {
  const ExitGate::Pass pass;
  easy_.reset();
  multi_.reset();
}

HttpResponse CurlSession::exchange(const HttpRequest& request) {
  Answer answer;
  prepare(request, answer);
  const Attachment attachment(multi_.get(), easy_.get());
  const CURLcode code = drive();
  return response(code, std::move(answer));
}

std::size_t CurlSession::receiveHead(char* line, std::size_t size, std::size_t count,
                                     void* answer) noexcept {
  // A blank line ends the head of an answer; another head may follow an interim one.
  const std::string_view text(line, size * count);
  static_cast<Answer*>(answer)->hasWholeHead = text == "\r\n" || text == "\n";
  return size * count;
}

std::size_t CurlSession::receive(char* data, std::size_t size, std::size_t count,
                                 void* answer) noexcept {
  auto& into = *static_cast<Answer*>(answer);
  const std::size_t length = size * count;
  try {
    into.isTooLong = length > HttpExchange::maximumBody - into.body.size();
    if (into.isTooLong) return 0;
    into.body.append(data, length);
    return length;
  } catch (const std::bad_alloc&) {
    return 0;
  }
}

void CurlSession::prepare(const HttpRequest& request, Answer& answer) {
  const ExitGate::Pass pass;
  CURL* easy = easy_.get();
  curl_easy_reset(easy);
  setProtection(easy);
  setConnection(easy, request.timeout);
  setRoute(easy, request);
  setContent(easy, request);
  headers_ = curlHeadersOf(request);
  set(easy, CURLOPT_HTTPHEADER, headers_.get());
  set(easy, CURLOPT_HEADERFUNCTION, &CurlSession::receiveHead);
  set(easy, CURLOPT_HEADERDATA, &answer);
  set(easy, CURLOPT_WRITEFUNCTION, &CurlSession::receive);
  set(easy, CURLOPT_WRITEDATA, &answer);
  errorText_.front() = '\0';
  set(easy, CURLOPT_ERRORBUFFER, errorText_.data());
}

CURLcode CurlSession::drive() {
  while (perform()) {
    check(curl_multi_poll(multi_.get(), nullptr, 0, longestPollMilliseconds, nullptr));
  }
  return result();
}

/// False when the exchange has ended.
bool CurlSession::perform() {
  const ExitGate::Pass pass;
  int running = 0;
  check(curl_multi_perform(multi_.get(), &running));
  return running > 0;
}

CURLcode CurlSession::result() {
  const ExitGate::Pass pass;
  int left = 0;
  const CURLMsg* message = curl_multi_info_read(multi_.get(), &left);
  if (message == nullptr || message->msg != CURLMSG_DONE) return CURLE_GOT_NOTHING;
  return message->data.result;
}

HttpResponse CurlSession::response(CURLcode result, Answer answer) {
  const ExitGate::Pass pass;
  HttpResponse response;
  long status = 0;
  curl_easy_getinfo(easy_.get(), CURLINFO_RESPONSE_CODE, &status);
  if (answer.isTooLong) {
    response.status = static_cast<int>(status);
    response.error =
        "The body of the answer is over " + std::to_string(HttpExchange::maximumBody) + " bytes";
  } else if (result != CURLE_OK) {
    response.error = errorText_.front() != '\0' ? errorText_.data() : curl_easy_strerror(result);
  } else if (!answer.hasWholeHead) {
    // curl takes a connection that closes within the headers for the end of a good answer.
    response.error = "The answer ended within its headers";
  } else {
    response.status = static_cast<int>(status);
    if (!answer.body.empty()) response.body = std::move(answer.body);
  }
  return response;
}

}  // namespace pelorino
