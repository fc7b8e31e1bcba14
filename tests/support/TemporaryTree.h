#pragma once

#include <QByteArray>
#include <QString>
#include <QTemporaryDir>

namespace kelvo::testing {

/// A folder that goes with the test.
class TemporaryTree {
 public:
  TemporaryTree();
  /// The absolute path of `relative` in the folder, or of the folder itself.
  [[nodiscard]] QString Path(const QString& relative = {}) const;
  /// Makes folders as needed; each returns the absolute path.
  QString MakeFolder(const QString& relative) const;
  QString Write(const QString& relative, const QByteArray& bytes) const;
  [[nodiscard]] QByteArray Read(const QString& relative) const;
  [[nodiscard]] bool Exists(const QString& relative) const;

 private:
  QTemporaryDir folder_;
};

}  // namespace kelvo::testing
