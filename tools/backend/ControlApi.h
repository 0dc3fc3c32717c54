#pragma once

namespace httplib {
class Server;
}

namespace pelorino::backend {

class AnswerScript;
class ExchangeStore;

/// Adds the paths with which a test or a person controls the backend:
///
///   POST /control/answer  {"endpoint":"/analytics/config","status":200,"body":{...}}, or "text"
///                         for a body that is taken as it is
///   POST /control/fault   {"endpoint":"/analytics/report","times":2, ...} with any of
///                         "status":500  "delayMs":1000  "drop":"before"|"after"
///                         "truncate":true  "garbage":true  "hugeBody":104857600
///                         "location":"http://elsewhere" along with a status that redirects
///   POST /control/reset   forgets answers, faults and everything received
///   GET  /control/received?endpoint=&since=   the exchanges after that id, oldest first
///   GET  /control/summary                     what arrived of each application, device and user
///
/// A request that makes no sense is answered with 400 and {"error":"..."}.
void serveControl(httplib::Server& server, ExchangeStore& store, AnswerScript& script);

}  // namespace pelorino::backend
