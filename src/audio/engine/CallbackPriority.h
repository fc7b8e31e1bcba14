#pragma once

namespace kelvo {

/// Gives the threads that call back for sound real-time priority, where the system grants it to this user
/// (RLIMIT_RTPRIO); where it does not they stay as they are. Called each time a device was opened; any
/// thread.
void RaiseCallbackPriority();

}  // namespace kelvo
