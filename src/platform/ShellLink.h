#pragma once

#include <QByteArray>
#include <QString>

namespace kelvo {

/// A shell link (".lnk"): a target and its arguments. The only reader and writer of these files. A value; any
/// thread.
struct ShellLink {
  QString targetPath;  ///< absolute path of the file that the link points to; empty: it names none
  QString arguments;   ///< the entry's own data

  /// Throws Failure when the bytes are no whole shell link.
  [[nodiscard]] static ShellLink FromBytes(const QByteArray& bytes);
  [[nodiscard]] QByteArray ToBytes() const;
  [[nodiscard]] static ShellLink Read(const QString& path);
  /// Replaces the file (see ReplaceFile). Throws Failure.
  void Write(const QString& path) const;

  /// True when the file is a link by its name (extension LNK in any case) or by its first bytes.
  [[nodiscard]] static bool IsShellLink(const QString& path);
};

}  // namespace kelvo
