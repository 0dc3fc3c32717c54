#pragma once

#include <pthread.h>

namespace pelorino {

/// While it exists, `pthread_cancel` does not end the calling thread: cancellation is an exception
/// that must not be caught, and no exception may leave a public operation. The thread ends at its
/// next cancellation point after that.
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
