#pragma once

#include "database/Catalogue.h"
#include "database/FolderListing.h"
#include "database/InfoBatch.h"
#include "database/Paths.h"
#include "database/TrackInfo.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <QSet>
#include <QString>
#include <QStringList>

#include <functional>
#include <memory>

namespace kelvo {

class AudioSystem;

/// One of the two bars of the loading window.
struct LoadBar {
  int value = 0;
  int maximum = 0;
  QString words;
  bool operator==(const LoadBar&) const = default;
};

/// How a load ended.
enum class LoadOutcome {
  Done,
  NoMusic,       ///< the music folder holds no file
  UnstableFile,  ///< a track info file is too short: the program has to close
};

/// Reads the whole media database, once at the start and again when a full reload is asked for. What it reads
/// enters the catalogue in one piece at the end. It yields between items, reads files off the logic's
/// thread, and gives each music file without a track info file a new one. Owned by who runs the load; one
/// load at a time; logic thread.
class CatalogueLoader {
 public:
  CatalogueLoader(EventLoop& loop, AudioSystem& audio, Catalogue& catalogue, Paths paths,
                  TrackDefaults defaults, QString title);

  /// Failures on the way are handled (basHandleError, " Getdb") and the load goes on with what can be read. A
  /// load that ends as UnstableFile leaves the catalogue as it was.
  [[nodiscard]] Job<LoadOutcome> Load();
  /// The track info file that ended the load as UnstableFile.
  [[nodiscard]] const QString& UnstableFile() const { return unstableFile_; }

  /// What became of a change of the library that a crash had broken off, in words for the operator; empty when
  /// there was none. It is ended before anything is read.
  [[nodiscard]] const QString& Mended() const { return mended_; }

  /// The first bar is for the reference lists, the second for sound bites and tracks.
  LoadBar references;
  LoadBar tracks;
  std::function<void()> OnProgress;

 private:
  Job<FolderListing> List(QString folder, EntryKind kind);
  Job<> LoadReferences(Paths::Slot slot, QString words, QStringList* list, bool cleanUp);
  Job<> LoadSoundBites();
  Job<> LoadUtility();
  Job<LoadOutcome> LoadTracks();
  Job<InfoBatch> ReadBatch(std::shared_ptr<InfoReader> reader, std::shared_ptr<const QStringList> names,
                           qsizetype start, qsizetype count);
  /// Takes a record that was read; false for every other.
  bool AppendRead(const InfoBatch& batch, const InfoBatch::Record& record);
  /// A track whose info file could not be read; false when that ends the load.
  Job<bool> AppendOdd(std::shared_ptr<InfoReader> reader, QString fileName, InfoBatch::Status status);
  Job<> AppendMissing(QString name, QString extension);
  void AppendUnreadable(const QString& name, const QString& extension);
  void TellBadDuration(const QString& name);
  void Show(LoadBar& bar, int value, int maximum, const QString& words);
  void ShowDone(LoadBar& bar);
  [[nodiscard]] QString Stamp() const;

  EventLoop& loop_;
  AudioSystem& audio_;
  Catalogue& catalogue_;
  Paths paths_;
  TrackDefaults defaults_;
  QString title_;
  CatalogueTables tables_;  ///< read so far
  QSet<QString> made_;  ///< base names that were given a new info file in this load
  QString unstableFile_;
  QString mended_;
  bool toldBadDuration_ = false;
};

}  // namespace kelvo
