#pragma once

#include "render/RenderRun.h"

#include <functional>

namespace kelvo {

class Console;

/// How the live desk is set now. Logic thread.
[[nodiscard]] RenderDesk::Setup SetupOf(Console& desk);
/// A copy of the live queue, for RenderOrder::fill: its rows, the lines of a group playlist, and what the
/// catalogue knows of their tracks. Logic thread; the copy goes to any other.
[[nodiscard]] std::function<QString(RenderDesk& desk)> CopyOfQueue(Console& desk);
/// The name of the live queue; empty while it has none.
[[nodiscard]] QString NameOfQueue(Console& desk);
/// Why the live queue can't be rendered now, in words; empty when it can.
[[nodiscard]] QString WhyNoRender(Console& desk);

}  // namespace kelvo
