#pragma once

#include "database/PlaylistEntry.h"
#include "database/TestDatabase.h"
#include "database/TrackInfo.h"
#include "database/TransferSteps.h"
#include "datamanager/LibraryChanges.h"
#include "platform/Disks.h"
#include "platform/ErrorLog.h"
#include "platform/FileSteps.h"
#include "platform/SimulatedEventLoop.h"
#include "platform/Words.h"
#include "support/ScriptedPrompter.h"

#include <QDir>
#include <QDirIterator>

#include <gmock/gmock.h>

#include <map>

namespace kelvo::testing {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// A trash that is a folder; without one nothing goes in.
class FolderTrash final : public TrashBin {
 public:
  explicit FolderTrash(QString folder) : folder_(std::move(folder)) {}
  std::optional<QString> Put(const QString& path) override {
    if (!there || !QDir().rename(path, PlaceOf(path))) return std::nullopt;
    return PlaceOf(path);
  }
  QString Find(const QString& path) const override {
    return QFileInfo::exists(PlaceOf(path)) ? PlaceOf(path) : QString();
  }
  bool TakeBack(const QString& place, const QString& path) override { return QDir().rename(place, path); }
  [[nodiscard]] QString PlaceOf(const QString& path) const {
    return folder_ + u'/' + QString(path).replace(u'/', u'%');
  }
  [[nodiscard]] QStringList Names() const {
    QStringList names;
    for (const QString& each : QDir(folder_).entryList(QDir::AllEntries | QDir::NoDotAndDotDot))
      names.append(each.section(u'%', -1));
    return names;
  }
  bool there = true;

 private:
  QString folder_;
};

/// A library of three tracks with a genre, an artist and playlists, in simulated time.
class LibraryTest : public ::testing::Test {
 protected:
  LibraryTest() {
    for (const QString& name : {u"Rock"_s, u"Pop"_s, kAllCategories}) MakeName(Paths::Categories, name);
    for (const QString& name : {u"The Band"_s, u"Others"_s, kAllArtists}) MakeName(Paths::Artists, name);
    for (const QString& name : {u"ann - one"_s, u"bob - two"_s, u"cat - three"_s}) database_.AddTrack(name);
    Reload();
    MakeChanges();
  }
  void MakeName(Paths::Slot slot, const QString& name) const {
    QDir().mkpath(database_.paths(slot) + u'/' + name);
  }
  /// Reads the tracks and names that are on disk.
  void Reload() {
    CatalogueTables tables(database_.paths(Paths::Music));
    for (const QString& file : QDir(database_.paths(Paths::Music)).entryList(QDir::Files, QDir::Name)) {
      const auto info = ReadTrackInfo(TrackInfoPath(database_.paths, BaseName(file)));
      tables.Append(RowFrom(info.value_or(TrackInfo()), file, 60));
    }
    tables.GenreList = QDir(database_.paths(Paths::Categories)).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    tables.ArtistList = QDir(database_.paths(Paths::Artists)).entryList(QDir::Dirs | QDir::NoDotAndDotDot);
    catalogue_.Replace(std::move(tables));
  }
  /// As at a start of the program: what it keeps of changes is what is on disk.
  void MakeChanges() {
    changes_ = std::make_shared<LibraryChanges>(LibraryChanges::Services{.loop = loop_,
                                                                         .prompter = prompter_,
                                                                         .catalogue = catalogue_,
                                                                         .paths = database_.paths,
                                                                         .trash = trash_});
    loop_.RunFor(1ms);
  }
  [[nodiscard]] QString MusicPath(const QString& name) const {
    return database_.paths(Paths::Music) + u'/' + name + u".mp3"_s;
  }
  void AddEntry(const QString& playlist, const QString& file, const QString& target,
                const QString& arguments = u"Std"_s) const {
    const QString folder = database_.paths(Paths::Playlists) + u'/' + playlist;
    QDir().mkpath(folder);
    PlaylistLink{target, arguments}.Write(folder + u'/' + file);
  }
  void AddText(const QString& playlist, const QString& file, const QByteArray& bytes) const {
    database_.tree.Write(Paths::FolderName(Paths::Playlists) + u'/' + playlist + u'/' + file, bytes);
  }
  [[nodiscard]] QStringList Files(const QString& playlist) const {
    return QDir(database_.paths(Paths::Playlists) + u'/' + playlist).entryList(QDir::Files, QDir::Name);
  }
  [[nodiscard]] QString Target(const QString& playlist, const QString& file) const {
    return PlaylistLink::Read(database_.paths(Paths::Playlists) + u'/' + playlist + u'/' + file).targetPath;
  }
  /// Every file and folder of the library but what the program keeps hidden, with the bytes of each file.
  using Snapshot = std::map<QString, QByteArray>;
  [[nodiscard]] Snapshot Library(bool hidden = false) const {
    Snapshot all;
    const auto filter = QDir::AllEntries | QDir::NoDotAndDotDot | (hidden ? QDir::Hidden : QDir::Filter(0));
    QDirIterator each(database_.tree.Path(), filter, QDirIterator::Subdirectories);
    while (each.hasNext()) {
      const QString path = each.next();
      const QString place = QDir(database_.tree.Path()).relativeFilePath(path);
      if (place.startsWith(u"trash"_s) || place.startsWith(u"kelvo.log"_s) ||
          place.contains(u"/.last-change"_s))
        continue;
      all[place] = each.fileInfo().isDir() ? QByteArray("folder") : database_.tree.Read(place);
    }
    return all;
  }
  /// The places that are not the same; empty when all are.
  [[nodiscard]] static std::string Difference(const Snapshot& one, const Snapshot& other) {
    QStringList places;
    for (const auto& [place, bytes] : one) {
      const auto found = other.find(place);
      if (found == other.end() || found->second != bytes) places.append(place);
    }
    for (const auto& [place, bytes] : other) {
      if (!one.contains(place)) places.append(u"no "_s + place);
    }
    return places.join(u'\n').toStdString();
  }
  /// The library is as it was.
  void ExpectLibrary(const Snapshot& before, bool hidden = false) const {
    EXPECT_EQ(Difference(Library(hidden), before), "");
  }
  [[nodiscard]] QString LastTold() const {
    return prompter_.asked.empty() ? QString() : prompter_.asked.back().text;
  }
  void Undo() {
    prompter_.answers = {Answer::Yes};
    changes_->Undo();
    ASSERT_TRUE(loop_.RunUntil([this] { return !changes_->Running(); }));
    loop_.RunFor(1ms);
  }

  TestDatabase database_;
  SimulatedEventLoop loop_{QDateTime(QDate(2007, 6, 1), QTime(22, 0))};
  ScriptedPrompter prompter_;
  ErrorLog log_{loop_, prompter_, database_.tree.Path(u"kelvo.log"_s)};
  Catalogue catalogue_;
  Disks disks_{loop_};
  std::shared_ptr<FolderTrash> trash_ = std::make_shared<FolderTrash>(database_.tree.MakeFolder(u"trash"_s));
  std::shared_ptr<LibraryChanges> changes_;
  NoFlushes quick_;
};

}  // namespace kelvo::testing
