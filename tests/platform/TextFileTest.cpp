#include "platform/ErrorLog.h"
#include "platform/TextFile.h"
#include "support/TemporaryTree.h"

#include <gtest/gtest.h>

#include <random>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using testing::TemporaryTree;

TEST(TextFile, WhatWasReadComesBackByteForByte) {
  QByteArray everyByte;
  for (int code = 0; code < 256; ++code) everyByte.append(static_cast<char>(code));
  const QByteArray texts[] = {
      "",
      "one",
      "\r\n",
      "\n\r\n\r\r\n",
      "one\r\ntwo\nthree\rfour",
      "one\r\ntwo\r\n",
      "caf\xE9\r\n",
      "caf\xC3\xA9\r\n",
      "\xEF\xBB\xBF"
      "caf\xC3\xA9\n",
      "\xEF\xBB\xBF",
      "\xEF\xBB\xBF\xEF\xBB\xBFtwo marks\n",
      "a\n\xEF\xBB\xBF inside\n",
      "bad \xC3\x28 utf-8\r\n",
      "\xEF\xBB\xBF mark and bad \xC3\x28\r\n",
      "\xED\xA0\x80 a lone surrogate\n",
      "\xC0\xAF overlong\n",
      "\xF0\x9F\x8E\xB5 beyond the plane\n",
      QByteArray("nul\0inside\n", 11),
      everyByte,
  };
  for (const QByteArray& text : texts)
    EXPECT_EQ(TextFile::FromBytes(text).ToBytes(), text) << text.toPercentEncoding().data();

  std::mt19937 random(7);
  const QByteArray pieces[] = {"\r", "\n", "\xEF\xBB\xBF", "\xC3\xA9", "\xC3", "\x80", "a", "\xE2\x82\xAC"};
  for (int round = 0; round < 5000; ++round) {
    QByteArray text;
    for (int piece = 0; piece < 6; ++piece) text += pieces[random() % std::size(pieces)];
    ASSERT_EQ(TextFile::FromBytes(text).ToBytes(), text) << text.toPercentEncoding().data();
  }
}

TEST(TextFile, LinesAreReadInEitherEncodingAndAnyLineEnd) {
  const TextFile page = TextFile::FromBytes("\x80uro\r\ncaf\xE9\nlast");
  EXPECT_EQ(page.Lines(), (QStringList{u"€uro"_s, u"café"_s, u"last"_s}));
  EXPECT_EQ(page.FileEncoding(), TextFile::Encoding::Windows1252);
  EXPECT_EQ(page.Line(3), QString());
  EXPECT_EQ(page.Line(-1), QString());
  EXPECT_EQ(TextFile::FromBytes("\xE2\x82\xACuro\r").Lines(), QStringList{u"€uro"_s});
  EXPECT_EQ(TextFile::FromBytes("\xEF\xBB\xBFplain").Lines(), QStringList{u"plain"_s});
  EXPECT_EQ(TextFile::FromBytes("").Count(), 0);
}

TEST(TextFile, AChangeLeavesTheOtherLinesAndTheirEndsAlone) {
  TextFile file = TextFile::FromBytes("one\ntwo\r\nthree");
  file.SetLine(1, u"2"_s);
  EXPECT_EQ(file.ToBytes(), "one\n2\r\nthree");
  file.Append(u"four"_s);
  EXPECT_EQ(file.ToBytes(), "one\n2\r\nthree\nfour\n");
  file.SetLine(5, u"six"_s);
  EXPECT_EQ(file.ToBytes(), "one\n2\r\nthree\nfour\n\nsix\n");
  file.RemoveFrom(1);
  EXPECT_EQ(file.ToBytes(), "one\n");

  TextFile fusing = TextFile::FromBytes("one\rtwo\nthree");
  fusing.SetLine(1, QString());
  EXPECT_EQ(TextFile::FromBytes(fusing.ToBytes()).Lines(), (QStringList{u"one"_s, QString(), u"three"_s}));
}

TEST(TextFile, NewFilesHaveTheHouseFormUnlessThatWouldLoseText) {
  EXPECT_EQ(TextFile(QStringList{u"caf\u00E9"_s, u"b"_s}).ToBytes(), "caf\xE9\r\nb\r\n");
  const QStringList beyond{u"Dvo\u0159\u00E1k"_s, u"\u65E5\u672C"_s};
  const QByteArray marked = TextFile(beyond).ToBytes();
  EXPECT_TRUE(marked.startsWith("\xEF\xBB\xBF"));
  EXPECT_EQ(TextFile::FromBytes(marked).Lines(), beyond);

  // Two letters of the page that are also one letter of UTF-8 must stay two.
  const QStringList ambiguous{u"\u00C3\u00A9"_s};
  EXPECT_EQ(TextFile::FromBytes(TextFile(ambiguous).ToBytes()).Lines(), ambiguous);
}

TEST(TextFile, ANameBeyondThePageTurnsTheWholeFileAndKeepsEveryLine) {
  TextFile file = TextFile::FromBytes("caf\xE9\r\n\x80\r\n");
  file.Append(u"\u0159"_s);
  const TextFile again = TextFile::FromBytes(file.ToBytes());
  EXPECT_EQ(again.FileEncoding(), TextFile::Encoding::Utf8WithMark);
  EXPECT_EQ(again.Lines(), (QStringList{u"café"_s, u"€"_s, u"\u0159"_s}));
}

TEST(TextFile, ThePageGoesBothWaysForEveryByte) {
  for (int code = 0; code < 256; ++code) {
    const QByteArray byte(1, static_cast<char>(code));
    const QString text = FromWindows1252(byte);
    ASSERT_EQ(text.size(), 1);
    EXPECT_TRUE(FitsWindows1252(text)) << code;
    EXPECT_EQ(ToWindows1252(text), byte) << code;
  }
  EXPECT_EQ(FromWindows1252("\x80\x9F\x81"), u"\u20AC\u0178\u0081"_s);
  EXPECT_FALSE(FitsWindows1252(u"\u0080"));
  EXPECT_EQ(ToWindows1252(u"a\u0159\U0001F3B5b"), "a??b");
}

TEST(TextFile, AFileThatIsNotThereOrNoFileSaysSoByName) {
  const TemporaryTree tree;
  for (const QString& path : {tree.Path(u"missing.kif"_s), tree.Path()}) {
    try {
      (void)TextFile::Read(path);
      ADD_FAILURE() << "read " << path.toStdString();
    } catch (const Failure& failure) {
      EXPECT_NE(std::string(failure.what()).find(path.toStdString()), std::string::npos) << failure.what();
      EXPECT_NE(failure.Number(), 0);
    }
  }
}

}  // namespace
}  // namespace kelvo
