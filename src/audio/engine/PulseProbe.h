#pragma once

namespace kelvo {

/// True when a PulseAudio server answers and says that it has no output at all. SDL's driver must not be
/// started then: of such a server it reads the name of the default output, which is not there, and takes the
/// program down. Waits for the server for up to half a second; the device thread.
[[nodiscard]] bool PulseServerHasNoOutput();

}  // namespace kelvo
