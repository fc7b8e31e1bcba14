#pragma once

#include <QAction>
#include <QLabel>
#include <QLineEdit>

namespace kelvo {

/// Shows `text` in a label, and tells it behind what it is to those who can't see where it is: "Status: Total
/// Tracks :3".
inline void SetSpokenText(QLabel& label, const QString& what, const QString& text) {
  if (label.text() != text) label.setText(text);
  label.setAccessibleName(text.isEmpty() ? what : what + QStringLiteral(": ") + text);
}

/// Gives names to the signs inside of a line of text: the one that clears it, and that of the search.
inline void NameLineSigns(QLineEdit& line) {
  for (QAction* each : line.findChildren<QAction*>(QString(), Qt::FindDirectChildrenOnly)) {
    if (each->text().isEmpty())
      each->setText(each->objectName().isEmpty() ? QLineEdit::tr("Search") : QLineEdit::tr("Clear"));
  }
}

}  // namespace kelvo
