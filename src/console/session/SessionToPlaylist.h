#pragma once

#include "console/session/SessionRows.h"
#include "platform/Prompter.h"

#include <utility>
#include <vector>

namespace kelvo {

/// What a stretch of a session is saved as: a group playlist, which plays the mix again step by step, or a
/// standard one, which teaches each track the fade that it was brought in with.
enum class SessionSave { Group, Standard };

/// Why these rows can't be saved so, in words for the operator; empty when they can. `picked`: row numbers
/// from 0, in the order of the list.
[[nodiscard]] QString WhyNotSaved(const std::vector<SessionEvent>& rows, const std::vector<int>& picked,
                                  SessionSave save);
/// The refusal of rows with gaps between them, and what its help says.
[[nodiscard]] QString GapsRefusal();
[[nodiscard]] PromptHelp GapsHelp();

/// A row that loads a track, and what the playlist keeps for it.
struct SessionArguments {
  int row;
  QString text;
};
/// For each picked row that loads a track. A group: its line (see ParseGroupLine), with every picked event of
/// the track until it is loaded again. Standard: type, speed and `delta` of the track's first fade, joined by
/// ","; empty without one. `delta`: seconds before the end.
[[nodiscard]] std::vector<SessionArguments> ArgumentsOf(const std::vector<SessionEvent>& rows,
                                                        const std::vector<int>& picked, SessionSave save,
                                                        int delta);

}  // namespace kelvo
