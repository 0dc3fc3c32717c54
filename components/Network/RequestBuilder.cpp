#include "RequestBuilder.h"

#include "PlatformRequest.h"

namespace pelorino {

std::unique_ptr<RequestProtocol> RequestBuilder::build() const {
  if (!requestContent) throw PLRError("[Network Module] requestContent is nil");
  return std::make_unique<PlatformRequest>(http_, type_, urlBuilder_, requestContent,
                                           requestIdentifier);
}

}  // namespace pelorino
