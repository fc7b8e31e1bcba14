#pragma once

#include "database/Paths.h"
#include "support/TemporaryTree.h"

#include <QByteArray>
#include <QString>

namespace kelvo::testing {

/// The bytes of a track info file with settings of its own and two comment lines.
inline QByteArray InfoBytes(const QByteArray& duration = "180.5") {
  return "~ALL CATEGORIES,Rock,Pop\r\n~ALL ARTISTS,The Band\r\n~ALL "
         "ALBUMS\r\n1999-Dec\r\n120\r\n7\r\n1,2,3\r\n10,5\r\n"
         "20,30\r\n0\r\n1\r\n-3.5,0.2\r\n" +
         duration + "\r\nFirst comment\r\nSecond comment\r\n";
}

/// A media database in a folder that goes with the test.
class TestDatabase {
 public:
  TestDatabase() : paths(Paths::Below(tree.Path())) {
    for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) tree.MakeFolder(Paths::FolderName(slot));
  }

  /// A file in one of the database's folders; returns its path.
  QString Add(Paths::Slot slot, const QString& name, const QByteArray& bytes = "sound") const {
    return tree.Write(Paths::FolderName(slot) + QLatin1Char('/') + name, bytes);
  }
  /// A music file and its info file.
  QString AddTrack(const QString& base, const QByteArray& info = InfoBytes()) const {
    Add(Paths::Info, base + QStringLiteral(".kif"), info);
    return Add(Paths::Music, base + QStringLiteral(".mp3"));
  }
  [[nodiscard]] QByteArray Info(const QString& base) const {
    return tree.Read(Paths::FolderName(Paths::Info) + QLatin1Char('/') + base + QStringLiteral(".kif"));
  }
  [[nodiscard]] bool Holds(Paths::Slot slot, const QString& name) const {
    return tree.Exists(Paths::FolderName(slot) + QLatin1Char('/') + name);
  }

  TemporaryTree tree;
  Paths paths;
};

}  // namespace kelvo::testing
