#pragma once

#include <QString>

#include <vector>

class QWidget;

namespace kelvo {

/// A key and what it does, in words for the operator. A value.
struct KeyLine {
  QString words;
  QString key;
};

/// Tells the key that works a control: at the end of its tooltip, and in the list of keys.
void TellKey(QWidget& control, const QString& key);

/// The keys of a window as they are: those of its menus, then those of its controls.
[[nodiscard]] std::vector<KeyLine> KeysOf(const QWidget& window);

}  // namespace kelvo
