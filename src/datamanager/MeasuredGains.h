#pragma once

#include "datamanager/Mp3Info.h"
#include "datamanager/TreatedCopy.h"

#include <QByteArray>
#include <QHash>
#include <QString>

#include <optional>

namespace kelvo {

/// What was measured of files, so that no file is measured twice: not after a run that was cancelled, not for
/// another target, not after a restart. It holds as long as the file has the size and the date of then. Kept
/// in one text file, to which each result is added as soon as it is known: a line each, of which a killed
/// program loses the last at most. A value; any thread.
class MeasuredGains {
 public:
  /// What the file holds; a line that is no result is passed over. Nothing where there is no such file.
  [[nodiscard]] static MeasuredGains FromBytes(const QByteArray& bytes);
  /// Reads it, and writes it anew where most of it is outdated. Blocks; any thread. What can't be read is
  /// empty.
  [[nodiscard]] static MeasuredGains Load(const QString& file);

  /// Something was measured of it, which may be outdated.
  [[nodiscard]] bool Knows(const QString& path) const { return kept_.contains(path); }
  [[nodiscard]] std::optional<Mp3Info> Find(const QString& path, const FileMark& mark) const;
  /// Takes a result, and gives the line to be added to the file.
  [[nodiscard]] QByteArray Add(const QString& path, const FileMark& mark, const Mp3Info& record);
  /// Adds lines to the file. Blocks; Lane::Files. What can't be written is left: it is measured again.
  static void Append(const QString& file, const QByteArray& lines);

 private:
  struct Kept {
    FileMark mark;
    Mp3Info record;
  };
  [[nodiscard]] static QByteArray LineOf(const QString& path, const Kept& kept);

  QHash<QString, Kept> kept_;
};

}  // namespace kelvo
