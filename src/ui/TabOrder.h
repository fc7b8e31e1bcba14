#pragma once

class QWidget;

namespace kelvo {

/// Lets Tab go through a window as it is read: in the order of its layouts and splitters, whatever was made
/// first.
void TabByLayout(QWidget& window);

}  // namespace kelvo
