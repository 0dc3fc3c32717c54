#pragma once

#include <array>
#include <exception>
#include <optional>
#include <string>
#include <type_traits>

#include "Encodable.h"
#include "Identifiers.h"
#include "Network.h"
#include "Report.h"

namespace pelorino {

/// What goes to an endpoint: the body, and the ids that travel beside it.
struct BackendMessage {
  Encodable data;
  Identifiers identifiers;
  std::optional<std::string> requestIdentifier;  ///< Names the exchange in the log; not sent.
};

template <class Request>
[[nodiscard]] BackendMessage messageOf(const Request& request, const Identifiers& identifiers) {
  return {Encodable(request), identifiers, {}};
}

/// The reports' text is shared, not copied, and their uuids name the exchange.
[[nodiscard]] BackendMessage messageOf(const Reports& reports, const Identifiers& identifiers);

/// One endpoint: a row of data. `Request` is what goes there and `Answer` what the caller gets,
/// whatever happens.
template <class Request, class Answer>
struct Endpoint {
  using Read = Answer (*)(const Response&);
  struct Accepted {
    int status = 0;
    Read read = nullptr;  ///< May throw.
  };

  const char* path;
  std::array<Accepted, 3> accepted;               ///< The statuses that mean something.
  Read otherwise;                                 ///< What any other status gives; may throw.
  Answer (*failed)(const std::exception& error);  ///< What a failure to ask or to read gives.

  [[nodiscard]] Answer read(const Response& response) const {
    for (const Accepted& each : accepted) {
      if (each.read && each.status == response.statusCode) return each.read(response);
    }
    return otherwise(response);
  }
};

/// An answer, and how the exchange went that gave it.
template <class Answer>
struct Reply {
  Answer answer;
  int statusCode;                 ///< 400 too when no HTTP answer came.
  std::optional<PLRError> error;  ///< Of the transport, or why nothing was sent or read.
};

/// What services ask of the backend.
class BackendProtocol {
 public:
  virtual ~BackendProtocol() = default;

  /// Blocks until the exchange ends, so it is called on a network queue. Does not retry; failures
  /// are values, and only std::bad_alloc is thrown. `appID` is the application key and goes into
  /// the URL as it is.
  template <class Request, class Answer>
  [[nodiscard]] Reply<Answer> ask(const Endpoint<Request, Answer>& endpoint,
                                  const std::string& appID, const Identifiers& identifiers,
                                  const std::type_identity_t<Request>& request) const {
    Response response;
    try {
      response = exchange(endpoint.path, appID, messageOf(request, identifiers));
      return {endpoint.read(response), response.statusCode, response.error};
    } catch (const std::exception& error) {
      return {endpoint.failed(error), response.statusCode,
              response.error.value_or(PLRError(error.what()))};
    }
  }

 private:
  /// Throws what a request that cannot be built throws.
  [[nodiscard]] virtual Response exchange(const char* path, const std::string& appID,
                                          BackendMessage message) const = 0;
};

/// The backend behind an HTTP exchange, which outlives this. Without state; the network queues
/// share it.
class Backend final : public BackendProtocol {
 public:
  explicit Backend(HttpExchange& http) : network_(http) {}

 private:
  [[nodiscard]] Response exchange(const char* path, const std::string& appID,
                                  BackendMessage message) const override;

  Network network_;
};

}  // namespace pelorino
