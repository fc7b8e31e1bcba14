#include "platform/Job.h"

namespace kelvo {
namespace {

std::function<void(std::exception_ptr)>& FailureHandler() {
  thread_local std::function<void(std::exception_ptr)> handler;
  return handler;
}

}  // namespace

void SetJobFailureHandler(std::function<void(std::exception_ptr)> handler) {
  FailureHandler() = std::move(handler);
}

void detail::ReportJobFailure(std::exception_ptr failure) {
  if (!FailureHandler()) std::rethrow_exception(failure);
  FailureHandler()(failure);
}

}  // namespace kelvo
