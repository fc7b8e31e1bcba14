#include "playlists/M3uList.h"

#include <gtest/gtest.h>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;

QStringList PathsOf(const QByteArray& bytes) {
  QStringList paths;
  for (const M3uList::Entry& entry : M3uList::FromBytes(bytes, u"/lists/a"_s).entries)
    paths.append(entry.path);
  return paths;
}

TEST(M3uList, PathsOfAllKindsAreUnderstood) {
  EXPECT_EQ(
      PathsOf(
          "a.mp3\n./b.mp3\r\n../c/d.mp3\r/e f.mp3\n  \n# note\n#PLAYLIST:x\nsub\\g.mp3\n..\\h.mp3\n:i/j.mp3"),
      (QStringList{u"/lists/a/a.mp3"_s, u"/lists/a/b.mp3"_s, u"/lists/c/d.mp3"_s, u"/e f.mp3"_s,
                   u"/lists/a/sub/g.mp3"_s, u"/lists/h.mp3"_s, u"/lists/a/:i/j.mp3"_s}));
  EXPECT_EQ(PathsOf("C:\\M\\a.mp3\nd:/M/b.mp3\n\\\\nas\\m\\c.mp3\nhttps://r/x\nfile:///m/%C3%A9%20t.mp3\n"),
            (QStringList{u"C:\\M\\a.mp3"_s, u"d:/M/b.mp3"_s, u"\\\\nas\\m\\c.mp3"_s, u"https://r/x"_s,
                         u"/m/\u00E9 t.mp3"_s}));
}

TEST(M3uList, TextIsUtf8OrTheOldPage) {
  EXPECT_EQ(PathsOf("\xEF\xBB\xBF#EXTM3U\n/caf\xC3\xA9.mp3\n"), QStringList{u"/caf\u00E9.mp3"_s});
  EXPECT_EQ(PathsOf("/caf\xE9.mp3\n"), QStringList{u"/caf\u00E9.mp3"_s});
}

TEST(M3uList, TitlesAndLengthsBelongToThePathBehindThem) {
  const M3uList list = M3uList::FromBytes(
      "#EXTINF:215 tvg-id=\"x\",Ann, Bob - "
      "One\n#EXTALB:Album\n/a\n/b\n#EXTINF:-1,Live\n/c\n#extinf:12.9\n/d\n"
      "#EXTINF:99999999999,x\n/e\n",
      u"/"_s);
  const std::vector<M3uList::Entry> expected{{u"/a"_s, u"Ann, Bob - One"_s, 215},
                                             {u"/b"_s, {}, -1},
                                             {u"/c"_s, u"Live"_s, -1},
                                             {u"/d"_s, {}, 12},
                                             {u"/e"_s, u"x"_s, -1}};
  EXPECT_EQ(list.entries, expected);
}

TEST(M3uList, WhatIsWrittenIsReadBackAsItWas) {
  M3uList list;
  for (const QString& path :
       {u"/m/a.mp3"_s, u"/m/#1 hit.mp3"_s, u"/m/C:x.mp3"_s, u"/m/a\\b.mp3"_s, u"/m/ two\nlines.mp3"_s,
        u"/m/end .mp3 "_s, u"/other/\u65E5\u672C.wav"_s, u"/m/ blank.mp3"_s, u"C:\\M\\x.mp3"_s}) {
    list.entries.push_back({path, u"Title"_s, 7});
  }
  const QByteArray bytes = list.ToBytes(u"/m"_s);
  EXPECT_EQ(M3uList::FromBytes(bytes, u"/m"_s).entries, list.entries) << bytes.constData();
  EXPECT_TRUE(bytes.startsWith("#EXTM3U\n#EXTINF:7,Title\na.mp3\n"));
  M3uList moved = M3uList::FromBytes(bytes, u"/stick"_s);
  EXPECT_EQ(moved.entries[0].path, u"/stick/a.mp3"_s) << "the list and its music move together";
}

TEST(M3uList, AFloodOfLinesEnds) {
  EXPECT_EQ(PathsOf(QByteArray("a\n").repeated(M3uList::kMostEntries + 5)).size(), M3uList::kMostEntries);
}

}  // namespace
}  // namespace kelvo
