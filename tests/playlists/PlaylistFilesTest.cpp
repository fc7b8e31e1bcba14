#include "platform/AtomicFile.h"
#include "platform/FileSteps.h"
#include "playlists/PlaylistFiles.h"
#include "support/TemporaryTree.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <gtest/gtest.h>

namespace kelvo::testing {
namespace {

using namespace Qt::StringLiterals;

const Trash kNoTrash = [](const QString&) { return false; };

/// A category in a temporary folder, made anew for each step at which a process is killed.
class Shelf {
 public:
  Shelf() { tree_.MakeFolder(u"root/Rock"_s); }
  [[nodiscard]] QString Root() const { return tree_.Path(u"root"_s); }
  [[nodiscard]] QString Playlist() const { return tree_.Path(u"root/Rock/Mix"_s); }
  [[nodiscard]] Trash Bin() const {
    return [place = tree_.MakeFolder(u"bin"_s)](const QString& path) {
      return QFile::rename(path, place + u'/' + QFileInfo(path).fileName());
    };
  }
  void Add(const QString& file, const QString& target) const {
    QDir().mkpath(Playlist());
    PlaylistLink{target, u"Std"_s}.Write(Playlist() + u'/' + file);
  }
  void AddText(const QString& file, const QByteArray& bytes) const {
    QDir().mkpath(Playlist());
    ReplaceFile(Playlist() + u'/' + file, bytes);
  }
  /// The targets in the order of the numbers, as a load reads them; "none" when there is no playlist.
  [[nodiscard]] QStringList Targets() const {
    if (!QFileInfo::exists(Playlist())) return {u"none"_s};
    QStringList targets;
    for (const PlaylistEntry& entry : ReadPlaylist(Playlist()).entries) {
      targets.append(entry.link ? entry.link->targetPath : u"broken"_s);
    }
    return targets;
  }
  [[nodiscard]] QStringList Below(const QString& folder = u"root/Rock"_s) const {
    return QDir(tree_.Path(folder)).entryList(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot);
  }

 private:
  TemporaryTree tree_;
};

PlaylistOrder Order(const Shelf& shelf, const QStringList& targets, bool replace) {
  PlaylistOrder order{shelf.Playlist(), {}, replace};
  for (const QString& target : targets) order.entries.push_back({target.mid(1), {target, u"Std"_s}, {}});
  return order;
}

/// Kills the work before each of its steps in turn. `check` gets what is left after the next start has mended
/// it, and whether the work came to its end.
void KillAtEachStep(const std::function<void(const Shelf&)>& prepare,
                    const std::function<void(const Shelf&)>& work,
                    const std::function<void(const Shelf&, bool done)>& check) {
  for (int step = 0;; ++step) {
    const Shelf shelf;
    prepare(shelf);
    const bool killed = KilledBefore(step, [&] { work(shelf); });
    MendPlaylists(shelf.Root());
    EXPECT_FALSE(HasLeftOvers(shelf.Root())) << "step " << step;
    SCOPED_TRACE(step);
    check(shelf, !killed);
    if (!killed) {
      EXPECT_GT(step, 0) << "the steps are seen";
      return;
    }
    ASSERT_LT(step, 500);
  }
}

void ExpectOldOrNew(const QStringList& now, const QStringList& old, const QStringList& fresh, bool done) {
  EXPECT_TRUE(now == fresh || (!done && now == old)) << now.join(u' ').toStdString();
}

TEST(PlaylistFiles, ANewPlaylistIsWholeOrNotThereWheneverTheProcessDies) {
  KillAtEachStep([](const Shelf&) {},
                 [](const Shelf& shelf) {
                   std::atomic<int> done{0};
                   SavePlaylist(Order(shelf, {u"/a"_s, u"/b"_s}, false), kNoTrash, done);
                 },
                 [](const Shelf& shelf, bool done) {
                   ExpectOldOrNew(shelf.Targets(), {u"none"_s}, {u"/a"_s, u"/b"_s}, done);
                 });
}

TEST(PlaylistFiles, AReplacedPlaylistIsTheOldOrTheNewOneAndTheOldIsInTheTrash) {
  for (const bool trash : {true, false}) {
    KillAtEachStep(
        [](const Shelf& shelf) {
          shelf.Add(u" 1~old.lnk"_s, u"/old"_s);
          QDir().mkpath(shelf.Playlist() + u"/notes"_s);
        },
        [trash](const Shelf& shelf) {
          std::atomic<int> done{0};
          SavePlaylist(Order(shelf, {u"/a"_s, u"/b"_s}, true), trash ? shelf.Bin() : kNoTrash, done);
        },
        [trash](const Shelf& shelf, bool done) {
          ExpectOldOrNew(shelf.Targets(), {u"/old"_s}, {u"/a"_s, u"/b"_s}, done);
          if (done && trash) {
            EXPECT_EQ(shelf.Below(u"bin"_s), QStringList{u"Mix"_s});
          }
          if (!trash) {
            EXPECT_TRUE(QFileInfo::exists(shelf.Playlist() + u"/notes"_s)) << "no entry of ours";
          }
        });
  }
}

TEST(PlaylistFiles, WhatIsAppendedComesBehindTheHighestNumberAllOrNone) {
  KillAtEachStep(
      [](const Shelf& shelf) {
        shelf.Add(u" 1~x.lnk"_s, u"/x"_s);
        shelf.AddText(u"x1.txt"_s, "line");
        shelf.Add(u" 7~y.lnk"_s, u"/y"_s);
        shelf.AddText(u".hidden"_s, "kept");
      },
      [](const Shelf& shelf) {
        std::atomic<int> done{0};
        SavePlaylist(Order(shelf, {u"/a"_s, u"/b"_s}, false), kNoTrash, done);
      },
      [](const Shelf& shelf, bool done) {
        ExpectOldOrNew(shelf.Targets(), {u"/x"_s, u"/y"_s}, {u"/x"_s, u"/y"_s, u"/a"_s, u"/b"_s}, done);
        EXPECT_TRUE(QFileInfo::exists(shelf.Playlist() + u"/.hidden"_s));
        EXPECT_TRUE(QFileInfo::exists(shelf.Playlist() + u"/x1.txt"_s));
        if (done) {
          EXPECT_TRUE(QFileInfo::exists(shelf.Playlist() + u"/ 9~b.lnk"_s));
        }
      });
}

TEST(PlaylistFiles, ADeletedEntryNeverTakesAnotherWithIt) {
  KillAtEachStep(
      [](const Shelf& shelf) {
        for (int number = 1; number <= 12; ++number) {
          shelf.Add(u" %1~t%1.lnk"_s.arg(number), u"/t%1"_s.arg(number));
        }
      },
      [](const Shelf& shelf) { DeleteEntry(shelf.Playlist(), u" 2~t2.lnk"_s, kNoTrash); },
      [](const Shelf& shelf, bool done) {
        QStringList without{u"/t1"_s};
        for (int number = 3; number <= 12; ++number) without.append(u"/t%1"_s.arg(number));
        QStringList all = without;
        all.insert(1, u"/t2"_s);
        ExpectOldOrNew(shelf.Targets(), shelf.Targets().size() == 12 ? all : without, without, done);
        if (done) {
          EXPECT_TRUE(QFileInfo::exists(shelf.Playlist() + u"/11~t12.lnk"_s)) << "without the blank";
        }
      });
}

TEST(PlaylistFiles, GapsCloseWithTheirCompanionsAndNoLineIsEverMissing) {
  KillAtEachStep(
      [](const Shelf& shelf) {
        QString name = u"`"_s;
        for (const int number : {2, 2, 5, 9}) {
          name[0] = QChar(name[0].unicode() + 1);
          shelf.Add(u" %1~%2.lnk"_s.arg(number).arg(name), u"/"_s + name);
          shelf.AddText(name + QString::number(number) + u".txt"_s, name.toUtf8());
        }
        shelf.Add(u"none~z.lnk"_s, u"/z"_s);
      },
      [](const Shelf& shelf) { CloseGaps(shelf.Playlist()); },
      [](const Shelf& shelf, bool done) {
        EXPECT_EQ(shelf.Targets(), (QStringList{u"/a"_s, u"/b"_s, u"/c"_s, u"/d"_s, u"/z"_s}));
        const PlaylistFolder folder = ReadPlaylist(shelf.Playlist());
        for (std::size_t place = 0; place < 4; ++place) {
          EXPECT_EQ(folder.entries[place].line, folder.entries[place].name.name);
          if (done) {
            EXPECT_EQ(folder.entries[place].name.number, static_cast<int>(place) + 1);
          }
        }
        if (done) {
          EXPECT_EQ(folder.files, 9) << "no line is left under its old name";
        }
      });
}

TEST(PlaylistFiles, ADeletedPlaylistIsWholeOrGone) {
  KillAtEachStep(
      [](const Shelf& shelf) {
        for (int number = 1; number <= 3; ++number) shelf.Add(u" %1~t.lnk"_s.arg(number), u"/t"_s);
      },
      [](const Shelf& shelf) { DiscardFolder(shelf.Playlist(), kNoTrash); },
      [](const Shelf& shelf, bool done) {
        ExpectOldOrNew(shelf.Targets(), {u"/t"_s, u"/t"_s, u"/t"_s}, {u"none"_s}, done);
        if (done) {
          EXPECT_TRUE(shelf.Below().isEmpty());
        }
      });
}

TEST(PlaylistFiles, ASaveThatFailsLeavesWhatWasThere) {
  const Shelf shelf;
  shelf.Add(u" 1~old.lnk"_s, u"/old"_s);
  PlaylistOrder order = Order(shelf, {u"/a"_s}, true);
  order.entries.push_back({u"too much"_s, {u"/b"_s, QString(70000, u'x')}, {}});
  std::atomic<int> done{0};
  EXPECT_ANY_THROW(SavePlaylist(order, kNoTrash, done));
  EXPECT_EQ(shelf.Targets(), QStringList{u"/old"_s});
  EXPECT_EQ(shelf.Below(), QStringList{u"Mix"_s}) << "nothing is left beside it";
}

TEST(PlaylistFiles, ANameThatIsTakenIsNotRenamedOver) {
  const Shelf shelf;
  shelf.Add(u" 1~old.lnk"_s, u"/old"_s);
  QDir().mkpath(shelf.Root() + u"/Rock/Other"_s);
  EXPECT_ANY_THROW(RenameFolder(shelf.Playlist(), u"Other"_s));
  RenameFolder(shelf.Playlist(), u"mix"_s);
  EXPECT_EQ(shelf.Below(), (QStringList{u"mix"_s, u"Other"_s}));
}

}  // namespace
}  // namespace kelvo::testing
