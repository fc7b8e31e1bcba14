#include "audio/engine/RealtimeScope.h"

namespace kelvo {

namespace {
thread_local int depth = 0;
}

RealtimeScope::RealtimeScope() noexcept {
  ++depth;
}
RealtimeScope::~RealtimeScope() {
  --depth;
}
bool RealtimeScope::Active() noexcept {
  return depth > 0;
}

}  // namespace kelvo
