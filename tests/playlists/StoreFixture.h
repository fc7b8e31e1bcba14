#pragma once

#include "database/TestDatabase.h"
#include "platform/ErrorLog.h"
#include "platform/SettingsStore.h"
#include "platform/SimulatedEventLoop.h"
#include "platform/Words.h"
#include "playlists/PlaylistManager.h"
#include "support/ScriptedPrompter.h"

#include <QDir>

#include <gmock/gmock.h>

#include <optional>

namespace kelvo::testing {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The play queue, without a desk.
class QueueInMemory final : public PlaylistQueue {
 public:
  [[nodiscard]] int Count() const override { return static_cast<int>(rows.size()); }
  [[nodiscard]] QString Name() const override { return name; }
  [[nodiscard]] bool HoldsGroup() const override { return group; }
  [[nodiscard]] bool Closed() const override { return closed; }
  [[nodiscard]] bool Holds(Mref track) const override {
    return std::any_of(rows.begin(), rows.end(), [track](const Addition& row) { return row.track == track; });
  }
  [[nodiscard]] std::vector<Row> Rows() const override {
    std::vector<Row> saved;
    for (const Addition& row : rows) {
      saved.push_back(
          {row.title, row.path, row.track, row.line.isEmpty() ? QStringList() : row.line.split(u'|')});
    }
    return saved;
  }
  [[nodiscard]] QString GroupQuestion(const QString& cannot) const override {
    return name + u": "_s + cannot;
  }
  void SetName(const QString& newName) override { name = newName; }
  void Take(const Load& load) override {
    last = load;
    if (load.clearFirst) rows.clear();
    rows.insert(rows.end(), load.rows.begin(), load.rows.end());
    if (!load.name.isEmpty()) {
      name = load.name;
      group = load.group;
    }
  }
  [[nodiscard]] QStringList Titles() const {
    QStringList titles;
    for (const Addition& row : rows) titles.append(row.title);
    return titles;
  }

  std::vector<Addition> rows;
  QString name = u"(No Name)"_s;
  bool group = false;
  bool closed = false;
  std::optional<Load> last;
};

/// A store of playlists over a database of three tracks, in simulated time. What is discarded goes into the
/// folder "trash", unless there is none.
class StoreTest : public ::testing::Test {
 protected:
  StoreTest() {
    catalogue_.Replace(CatalogueTables(database_.paths(Paths::Music)));
    for (const QString& name : {u"ann - one"_s, u"bob - two"_s, u"cat - three"_s}) AddTrack(name);
    database_.tree.MakeFolder(u"trash"_s);
  }
  Mref AddTrack(const QString& name, double seconds = 60) {
    database_.AddTrack(name);
    CatalogueRow row;
    row.name = name;
    row.extension = u".mp3"_s;
    row.duration = seconds;
    return catalogue_.Append(row);
  }
  [[nodiscard]] QString MusicPath(const QString& name) const {
    return database_.paths(Paths::Music) + u'/' + name + u".mp3"_s;
  }
  /// Below the playlists' folder.
  [[nodiscard]] QString Place(const QString& relative) const {
    return database_.paths(Paths::Playlists) + u'/' + relative;
  }
  void MakeCategory(const QString& name) const { QDir().mkpath(Place(name)); }
  void AddEntry(const QString& playlist, const QString& file, const QString& target,
                const QString& arguments = u"Std"_s) const {
    QDir().mkpath(Place(playlist));
    PlaylistLink{target, arguments}.Write(Place(playlist) + u'/' + file);
  }
  void AddText(const QString& playlist, const QString& file, const QByteArray& bytes) const {
    QDir().mkpath(Place(playlist));
    database_.tree.Write(Paths::FolderName(Paths::Playlists) + u'/' + playlist + u'/' + file, bytes);
  }
  [[nodiscard]] QStringList Files(const QString& playlist) const {
    return QDir(Place(playlist)).entryList(QDir::Files | QDir::Hidden, QDir::Name);
  }
  [[nodiscard]] QStringList Trashed() const {
    return QDir(database_.tree.Path(u"trash"_s)).entryList(QDir::AllEntries | QDir::NoDotAndDotDot);
  }
  [[nodiscard]] PlaylistServices ForPlaylists() {
    PlaylistServices services{loop_, disks_, prompter_, catalogue_, database_.paths, program_, queue_, true};
    services.dmanAccess = dmanAccess_;
    services.trash = [this](const QString& path) {
      return hasTrash_ && QDir().rename(path, database_.tree.Path(u"trash/"_s + QFileInfo(path).fileName()));
    };
    return services;
  }
  void Open(PlaylistMode mode, std::vector<SaveRow> rows = {}) {
    manager_.emplace(PlaylistManager::Services{ForPlaylists(), mode, [rows] { return rows; }});
    manager_->Enter();
    Finish();
  }
  /// Opens it with a category and a playlist chosen; an empty name chooses none.
  void OpenAt(PlaylistMode mode, const QString& category, const QString& playlist = {},
              std::vector<SaveRow> rows = {}) {
    Open(mode, std::move(rows));
    manager_->ChooseCategory(category);
    Finish();
    if (!playlist.isEmpty()) manager_->ChoosePlaylist(playlist);
    Finish();
  }
  void Finish() {
    ASSERT_TRUE(loop_.RunUntil([this] { return !manager_->Busy() && !manager_->Shelf().Listing(); }, 5min));
    loop_.RunFor(1ms);
  }
  void Save(const QString& name) {
    manager_->SetName(name);
    manager_->Save();
    Finish();
  }
  [[nodiscard]] QString LastTold() const {
    return prompter_.asked.empty() ? QString() : prompter_.asked.back().text;
  }
  /// A queue of rows with these titles.
  void Enqueue(const QStringList& titles) const {
    for (const QString& title : titles) queue_->rows.push_back({ToMref(1), title, {}, {}});
  }

  TestDatabase database_;
  SimulatedEventLoop loop_{QDateTime(QDate(2007, 6, 1), QTime(22, 0))};
  ScriptedPrompter prompter_;
  ErrorLog log_{loop_, prompter_, database_.tree.Path(u"kelvo.log"_s)};
  SettingsStore settings_{loop_, database_.tree.Path(u"settings.ini"_s)};
  ProgramSettings program_{settings_, u"Kelvo"_s};
  Catalogue catalogue_;
  Disks disks_{loop_};
  std::shared_ptr<QueueInMemory> queue_ = std::make_shared<QueueInMemory>();
  bool dmanAccess_ = true;
  bool hasTrash_ = true;
  std::optional<PlaylistManager> manager_;
};

}  // namespace kelvo::testing
