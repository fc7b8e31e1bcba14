#pragma once

#include <QString>

namespace kelvo {

/// Who this program is, in its own words.
struct ProgramFacts {
  QString title = QStringLiteral("Kelvo 2007");
  int major = 1;
  int minor = 1;
  int revision = 4;
  QString comments = QStringLiteral("Two Deck Live Console");
  QString copyright = QStringLiteral("GPL-3.0-or-later");

  [[nodiscard]] QString Version() const {
    return QStringLiteral("%1.%2.%3").arg(major).arg(minor).arg(revision);
  }
  [[nodiscard]] QString VersionLine() const {
    return QStringLiteral("Version ") + Version() + QStringLiteral(" - ") + comments;
  }
  [[nodiscard]] QString AboutLine() const {
    return title + QLatin1Char(' ') + Version() + QStringLiteral("  ") + copyright + QStringLiteral("  ") +
           comments;
  }
};

}  // namespace kelvo
