#include "platform/ErrorLog.h"
#include "platform/QtEventLoop.h"
#include "platform/SettingsStore.h"
#include "platform/SimulatedEventLoop.h"
#include "support/TemporaryTree.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

#include <gtest/gtest.h>
#include <sys/stat.h>

#include <random>

namespace kelvo {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;
using testing::TemporaryTree;

TEST(SettingsText, AnyTextComesBackFromAnyPlace) {
  const QStringList texts = {
      QString(),
      u" "_s,
      u"  leading and trailing\t"_s,
      u"two\r\nlines\n"_s,
      u"a=b"_s,
      u"[head / like]"_s,
      u"a / b"_s,
      u"; comment"_s,
      u"# comment"_s,
      u"back\\slash\\n \\"_s,
      u"\\x0041"_s,
      u"D\u00FCr\u0159\u65E5\U0001F3B5"_s,
      u"\u2003wide blanks\u00A0"_s,
      u"\uFEFFmark"_s,
      u"a,b\u0001\u0085\u2028"_s,
      QString(QChar(0xD800)),
      QString(QChar(0)),
      u"]"_s,
  };
  SettingsText text;
  for (const QString& each : texts) {
    text.SetValue(each, u"Startup"_s, u"Key"_s, u"title"_s);
    text.SetValue(u"Desk"_s, each, u"Key"_s, u"section"_s);
    text.SetValue(u"Desk"_s, u"Keys"_s, each, u"key"_s);
    text.SetValue(u"Desk"_s, u"Values"_s, QString::number(texts.indexOf(each)), each);
  }
  const SettingsText again = SettingsText::FromBytes(text.ToBytes());
  EXPECT_FALSE(again.IsGarbage());
  for (const QString& each : texts) {
    EXPECT_EQ(again.Value(each, u"Startup"_s, u"Key"_s), u"title"_s) << each.toStdString();
    EXPECT_EQ(again.Value(u"Desk"_s, each, u"Key"_s), u"section"_s) << each.toStdString();
    EXPECT_EQ(again.Value(u"Desk"_s, u"Keys"_s, each), u"key"_s) << each.toStdString();
    EXPECT_EQ(again.Value(u"Desk"_s, u"Values"_s, QString::number(texts.indexOf(each))), each)
        << each.toStdString();
  }

  std::mt19937 random(3);
  const QString letters = u"\\xs=[]/;# \t\r\n0a1\u00E9\U0001D11E\uFEFF"_s;
  for (int round = 0; round < 2000; ++round) {
    QString value;
    for (int at = 0; at < 6; ++at)
      value += letters[static_cast<qsizetype>(random() % static_cast<unsigned>(letters.size()))];
    SettingsText one;
    one.SetValue(value, value, value, value);
    ASSERT_EQ(SettingsText::FromBytes(one.ToBytes()).Value(value, value, value), value)
        << one.ToBytes().toStdString();
  }
}

TEST(SettingsText, WhatAPersonWroteKeepsItsPlaceAndItsBytes) {
  const QByteArray bytes =
      "; my desk\r\n\r\n[Desk / Startup]\r\n Paths = /music , /info \r\n# a remark\r\ngarbage \xFF\xFE\r\n"
      "[broken head\r\nKey=lost\r\n[Other / Startup]\nPaths=x";
  SettingsText text = SettingsText::FromBytes(bytes);
  EXPECT_EQ(text.ToBytes(), bytes);
  EXPECT_EQ(text.Value(u"Desk"_s, u"STARTUP"_s, u"paths"_s), u"/music , /info"_s);
  EXPECT_FALSE(text.SetValue(u"Desk"_s, u"startup"_s, u"PATHS"_s, u"/music , /info"_s));
  EXPECT_EQ(text.ToBytes(), bytes) << "the same value is no change";

  text.SetValue(u"Desk"_s, u"Startup"_s, u"Lag"_s, u"2"_s);
  text.SetValue(u"Other"_s, u"Startup"_s, u"Lag"_s, u"3"_s);
  const QByteArray expected =
      "; my desk\r\n\r\n[Desk / Startup]\r\n Paths = /music , /info \r\nLag=2\n# a remark\r\ngarbage "
      "\xFF\xFE\r\n"
      "[broken head\r\nKey=lost\r\n[Other / Startup]\nPaths=x\nLag=3\n";
  EXPECT_EQ(text.ToBytes(), expected);
}

TEST(SettingsText, TheSpellingOfTheFirstWriterStaysAndTitlesAreApart) {
  SettingsText text;
  text.SetValue(u"Desk"_s, u"Startup"_s, u"JukeLag"_s, u"2"_s);
  text.SetValue(u"Desk"_s, u"STARTUP"_s, u"JUKELAG"_s, u"3"_s);
  text.SetValue(u"Quiz"_s, u"Startup"_s, u"JukeLag"_s, u"9"_s);
  EXPECT_EQ(text.ToBytes(), "[Desk / Startup]\nJukeLag=3\n\n[Quiz / Startup]\nJukeLag=9\n");
  EXPECT_TRUE(text.Remove(u"Desk"_s, u"startup"_s, u"jukelag"_s));
  EXPECT_FALSE(text.Value(u"Desk"_s, u"Startup"_s, u"JukeLag"_s));
  EXPECT_EQ(text.Value(u"Quiz"_s, u"Startup"_s, u"JukeLag"_s), u"9"_s);
}

TEST(SettingsStore, ChangesAreReadAtOnceAndOnDiskATurnLater) {
  const TemporaryTree tree;
  SimulatedEventLoop loop;
  SettingsStore store(loop, tree.Path(u"new/folder/settings.ini"_s));
  EXPECT_EQ(store.GetSetting(u"Desk"_s, u"Startup"_s, u"Paths"_s, u"NoPaths"_s), u"NoPaths"_s);
  store.SaveSetting(u"Desk"_s, u"Startup"_s, u"Paths"_s, u"/music"_s);
  store.SaveSetting(u"Desk"_s, u"Startup"_s, u"Lag"_s, u"2"_s);
  EXPECT_EQ(store.GetSetting(u"Desk"_s, u"Startup"_s, u"Paths"_s), u"/music"_s);
  EXPECT_FALSE(tree.Exists(u"new"_s));
  loop.RunFor(1s);
  EXPECT_EQ(tree.Read(u"new/folder/settings.ini"_s), "[Desk / Startup]\nPaths=/music\nLag=2\n");
  store.DeleteSetting(u"Desk"_s, u"Startup"_s, u"Paths"_s);
  loop.RunFor(1s);
  EXPECT_EQ(tree.Read(u"new/folder/settings.ini"_s), "[Desk / Startup]\nLag=2\n");
}

TEST(SettingsStore, NothingIsLostAtTheEndAndNothingOlderIsWrittenOverIt) {
  const TemporaryTree tree;
  for (int round = 0; round < 30; ++round) {
    {
      QtEventLoop loop;
      SettingsStore store(loop, tree.Path(u"settings.ini"_s));
      store.SaveSetting(u"Desk"_s, u"Startup"_s, u"Round"_s, QString::number(round));
      QCoreApplication::processEvents();
      store.SaveSetting(u"Desk"_s, u"Startup"_s, u"Last"_s, QString::number(round));
    }
    const QByteArray number = QByteArray::number(round);
    ASSERT_EQ(tree.Read(u"settings.ini"_s), "[Desk / Startup]\nRound=" + number + "\nLast=" + number + '\n');
  }
}

TEST(SettingsStore, AFileThatIsNoTextIsSetAsideBeforeItsPlaceIsTaken) {
  const TemporaryTree tree;
  SimulatedEventLoop loop;
  const QByteArray binary("\0\0\0\xFF", 4);
  tree.Write(u"settings.ini"_s, binary);
  tree.MakeFolder(u"folder.ini"_s);
  for (const QString& name : {u"settings.ini"_s, u"folder.ini"_s}) {
    SettingsStore store(loop, tree.Path(name));
    EXPECT_EQ(store.GetSetting(u"Desk"_s, u"A"_s, u"B"_s, u"default"_s), u"default"_s);
    EXPECT_EQ(QDir(tree.Path()).entryList({name + u".unreadable*"_s}).size(), 0)
        << "reading alone moves nothing";
    store.SaveSetting(u"Desk"_s, u"A"_s, u"B"_s, u"1"_s);
    store.Flush();
    EXPECT_EQ(tree.Read(name), "[Desk / A]\nB=1\n");
  }
  EXPECT_EQ(tree.Read(u"settings.ini.unreadable-20070601-200000"_s), binary);
  EXPECT_TRUE(tree.Exists(u"folder.ini.unreadable-20070601-200000"_s));
}

TEST(SettingsStore, SettingsThatAreThereButCannotBeReadAreToldApartFromNone) {
  const TemporaryTree tree;
  SimulatedEventLoop loop;
  const auto why = [&](const QString& name) { return SettingsStore(loop, tree.Path(name)).WhyUnreadable(); };
  EXPECT_EQ(why(u"none.ini"_s), QString());
  EXPECT_EQ(why(u"no/folder/none.ini"_s), QString());
  tree.Write(u"empty.ini"_s, "\n; nothing yet\n");
  EXPECT_EQ(why(u"empty.ini"_s), QString());
  tree.Write(u"good.ini"_s, "garbage\n[Desk / A]\nB=1\n");
  EXPECT_EQ(why(u"good.ini"_s), QString());
  tree.Write(u"garbage.ini"_s, "\xFF\xD8\xFFthis is a picture\n");
  EXPECT_NE(why(u"garbage.ini"_s), QString());
  tree.MakeFolder(u"folder.ini"_s);
  EXPECT_NE(why(u"folder.ini"_s), QString());
  ASSERT_TRUE(QFile::link(tree.Path(u"unmounted/settings.ini"_s), tree.Path(u"link.ini"_s)));
  EXPECT_NE(why(u"link.ini"_s), QString()) << "they are on a disk that is not there";
  ASSERT_TRUE(QFile::link(tree.Path(u"unmounted"_s), tree.Path(u"kelvo"_s)));
  EXPECT_NE(why(u"kelvo/settings.ini"_s), QString());
}

TEST(SettingsStore, ATrialSaysWhetherAWriteWouldSucceedAndLeavesNothing) {
  const TemporaryTree tree;
  tree.Write(u"file"_s, "in the folder's place");
  EXPECT_THROW(SettingsStore::TryToWrite(tree.Path(u"file/settings.ini"_s)), Failure);
  EXPECT_THROW(SettingsStore::TryToWrite(u"/proc/kelvo/settings.ini"_s), Failure);
  SettingsStore::TryToWrite(tree.Path(u"kelvo/settings.ini"_s));
  EXPECT_TRUE(QDir(tree.Path(u"kelvo"_s)).isEmpty(QDir::AllEntries | QDir::Hidden | QDir::NoDotAndDotDot));
}

TEST(SettingsStore, AFailedWriteIsTriedAgainWithTheNextChange) {
  const TemporaryTree tree;
  SimulatedEventLoop loop;
  tree.Write(u"config"_s, "a file where the folder should be");
  SettingsStore store(loop, tree.Path(u"config/settings.ini"_s));
  store.SaveSetting(u"Desk"_s, u"A"_s, u"B"_s, u"1"_s);
  loop.RunFor(1s);
  EXPECT_THROW(store.Flush(), Failure);
  ASSERT_TRUE(QFile::remove(tree.Path(u"config"_s)));
  store.SaveSetting(u"Desk"_s, u"A"_s, u"C"_s, u"2"_s);
  loop.RunFor(1s);
  EXPECT_EQ(tree.Read(u"config/settings.ini"_s), "[Desk / A]\nB=1\nC=2\n");
}

}  // namespace
}  // namespace kelvo
