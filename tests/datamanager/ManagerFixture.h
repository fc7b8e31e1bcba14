#pragma once

#include "database/TestDatabase.h"
#include "datamanager/TrackList.h"
#include "platform/ErrorLog.h"
#include "support/HeldWorkLoop.h"
#include "support/ScriptedPrompter.h"

#include <gmock/gmock.h>

#include <chrono>

namespace kelvo::testing {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// A database with files on disk and its catalogue, and a Data Manager's list over it.
class ManagerTest : public ::testing::Test {
 protected:
  ManagerTest() { catalogue_.Replace(CatalogueTables(database_.paths(Paths::Music))); }

  /// A track with its two files; its info file says what its row does.
  Mref Add(const QString& name, const QString& genres = {}, const QString& artists = {},
           const QString& gain = u"?"_s, const QString& bpm = u"120"_s, qsizetype bytes = 5) {
    CatalogueRow row;
    row.name = name;
    row.extension = u".mp3"_s;
    row.genres = genres.isEmpty() ? kAllCategories : kAllCategories + u',' + genres;
    row.artists = artists.isEmpty() ? kAllArtists : kAllArtists + u',' + artists;
    row.date = u"1999-Dec"_s;
    row.bpm = bpm;
    row.gain = gain;
    row.duration = 65;
    database_.Add(Paths::Music, name + u".mp3"_s, QByteArray(bytes, 's'));
    const QString lines =
        QStringList{row.genres, row.artists, kAllAlbums, row.date, bpm,  u"7"_s,  u"1,2,3"_s,
                    u"10,5"_s,  u"20,30"_s,  u"0"_s,     u"1"_s,   gain, u"65"_s, u"A comment"_s}
            .join(u"\r\n"_s);
    database_.Add(Paths::Info, name + u".kif"_s, (lines + u"\r\n"_s).toUtf8());
    const Mref track = catalogue_.Append(row);
    for (const QString& genre : genres.split(u',', Qt::SkipEmptyParts)) {
      if (!catalogue_.GenreList.contains(genre, Qt::CaseInsensitive))
        catalogue_.AddReference(ReferenceSet::Genres, genre);
    }
    for (const QString& artist : artists.split(u',', Qt::SkipEmptyParts))
      catalogue_.AddReference(ReferenceSet::Artists, artist);
    return track;
  }
  /// The desk's index of names knows all tracks.
  void IndexNames() {
    Job<> job = words_.Extend(loop_);
    EXPECT_TRUE(loop_.RunUntil([&job] { return !job.Running(); }));
  }
  /// What a column shows, row by row.
  static QStringList Column(const TrackList& list, ManagerColumn column = ManagerColumn::FileName) {
    QStringList texts;
    for (int row = 0; row < list.Count(); ++row) texts.append(list.Text(row, column));
    return texts;
  }
  void Settle(const TrackList& list) {
    EXPECT_TRUE(loop_.RunUntil([&list] { return list.JobWords().isEmpty(); }));
    loop_.RunFor(100ms);
  }
  [[nodiscard]] TrackList::Services ForList() {
    return {
        .loop = loop_, .disks = disks_, .catalogue = catalogue_, .words = words_, .paths = database_.paths};
  }

  TestDatabase database_;
  HeldWorkLoop loop_;
  ScriptedPrompter prompter_;
  ErrorLog log_{loop_, prompter_, {}};
  Disks disks_{loop_};
  Catalogue catalogue_;
  TrackFilter words_{catalogue_};
};

}  // namespace kelvo::testing
