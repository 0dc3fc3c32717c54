#pragma once

#include <pthread.h>

namespace pelorino {

/// Keeps `pthread_cancel` from ending the calling thread meanwhile: what it throws must go on, and
/// nothing may leave a public operation. The thread ends at its next cancellation point.
class CancellationHeldBack {
 public:
  CancellationHeldBack() noexcept { pthread_setcancelstate(PTHREAD_CANCEL_DISABLE, &former_); }
  ~CancellationHeldBack() { pthread_setcancelstate(former_, nullptr); }
  CancellationHeldBack(const CancellationHeldBack&) = delete;
  CancellationHeldBack& operator=(const CancellationHeldBack&) = delete;

 private:
  int former_ = PTHREAD_CANCEL_ENABLE;
};

}  // namespace pelorino
