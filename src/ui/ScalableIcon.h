#pragma once

#include <QColor>
#include <QIcon>
#include <QPixmap>

namespace kelvo {

/// The program's own drawings, on one 24 x 24 grid with strokes of 2.
enum class Icon {
  Load,
  Play,
  Stop,
  Pause,
  Rewind,
  Forward,
  SkipStart,
  SkipEnd,
  Up,
  Down,
  Cut,
  Clear,
  Edit,
  Add,
  Search,
  Lock,
  Unlock,
  Timer,
  Microphone,
  Headphones,
  Settings,
  Warning,
  Information,
  Question,
  Critical,
  Close,
  Check,
  Folder,
  Save,
  Queue,
  Crossfade,
  Disc,
  Volume,
  Undo
};
inline constexpr int iconCount = static_cast<int>(Icon::Undo) + 1;

/// The drawing as an icon that is sharp at every size and scale. Without a colour it follows the theme: text
/// colour, dim while disabled, readable on a lit (checked) button. Needs Theme::Apply. GUI thread.
[[nodiscard]] QIcon ScalableIcon(Icon icon, const QColor& colour = {});

/// The drawing at `side` logical pixels, for widgets that paint it themselves on a surface of `ratio` device
/// pixels.
[[nodiscard]] QPixmap IconPixmap(Icon icon, const QColor& colour, int side, qreal ratio);

}  // namespace kelvo
