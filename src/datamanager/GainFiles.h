#pragma once

#include "database/Catalogue.h"
#include "database/InfoFields.h"
#include "database/Paths.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <QObject>
#include <QString>
#include <QStringList>

#include <vector>

namespace kelvo {

/// The files whose volume is to be unified, and the place where what was found of them is kept. Outlives the
/// VolumeUnify that works on it; logic thread.
class GainFiles : public QObject {
  Q_OBJECT
 public:
  struct Entry {
    QString path;
    QString record;  ///< "89.0,1.5", volume and change; "?" when nothing is known
  };
  [[nodiscard]] virtual Job<std::vector<Entry>> List() = 0;
  /// Some of its files can be listed alone.
  [[nodiscard]] virtual bool CanListSome() const { return false; }
  /// From now on only these are; all when there are none.
  virtual void ListOnly(const QStringList& /*paths*/) {}
  [[nodiscard]] virtual bool ListsAll() const { return true; }
  /// Keeps what was found. A failure is told to the operator and the job goes on.
  [[nodiscard]] virtual Job<> Keep(QString path, Gain gain) = 0;

 Q_SIGNALS:
  /// All files are others.
  void Replaced();
  void Added(const GainFiles::Entry& file);
  void Renamed(const QString& before, const QString& path);
  void Removed(const QString& path);
  void Recorded(const QString& path, const QString& record);
};

/// Files that are no tracks: snippets, mixers, introductions. What was found of them is shown and nowhere
/// kept.
class PlainGainFiles final : public GainFiles {
 public:
  explicit PlainGainFiles(QStringList paths) : paths_(std::move(paths)) {}
  void Replace(QStringList paths);

  [[nodiscard]] Job<std::vector<Entry>> List() override;
  [[nodiscard]] Job<> Keep(QString path, Gain gain) override;

 private:
  QStringList paths_;
};

/// The tracks of the catalogue, all of them, or those tracks and jingles that were asked for. What was found
/// goes into line 12 of the track info file and into the catalogue; a track without such a file has it in the
/// catalogue alone.
class CatalogueGainFiles final : public GainFiles {
 public:
  CatalogueGainFiles(EventLoop& loop, Catalogue& catalogue, Paths paths);

  [[nodiscard]] bool CanListSome() const override { return true; }
  void ListOnly(const QStringList& paths) override;
  [[nodiscard]] bool ListsAll() const override { return only_.isEmpty(); }
  [[nodiscard]] Job<std::vector<Entry>> List() override;
  [[nodiscard]] Job<> Keep(QString path, Gain gain) override;

 private:
  void Follow();

  EventLoop& loop_;
  Catalogue& catalogue_;
  Paths paths_;
  QStringList only_;
};

}  // namespace kelvo
