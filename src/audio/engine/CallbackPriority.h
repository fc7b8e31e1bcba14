#pragma once

namespace kelvo {

/// Asks for real-time priority for the calling thread, which works for a device. Returns whether it was
/// granted.
bool RaiseCallbackPriority();

}  // namespace kelvo
