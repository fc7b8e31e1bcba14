#include "platform/ErrorLog.h"
#include "platform/ShellLink.h"
#include "support/TemporaryTree.h"

#include <QDataStream>

#include <gtest/gtest.h>

#include <random>

namespace kelvo {
namespace {

using namespace Qt::StringLiterals;
using testing::TemporaryTree;

/// Little-endian bytes as another system's writer would put them.
class Bytes {
 public:
  Bytes& U16(quint16 value) { return Number(value, 2); }
  Bytes& U32(quint32 value) { return Number(value, 4); }
  Bytes& Raw(const QByteArray& bytes) {
    bytes_ += bytes;
    return *this;
  }
  Bytes& Wide(const QString& text) {
    for (const QChar character : text) U16(character.unicode());
    return *this;
  }
  [[nodiscard]] qsizetype Size() const { return bytes_.size(); }
  [[nodiscard]] const QByteArray& All() const { return bytes_; }

 private:
  Bytes& Number(quint32 value, int bytes) {
    for (int at = 0; at < bytes; ++at) bytes_ += static_cast<char>(value >> (8 * at) & 0xFFU);
    return *this;
  }
  QByteArray bytes_;
};

QByteArray Header(quint32 flags) {
  Bytes header;
  header.U32(0x4C).Raw(QByteArray::fromHex("0114020000000000c000000000000046")).U32(flags);
  return header.All() + QByteArray(0x4C - header.Size(), '\0');
}

QByteArray Item(const QByteArray& body) {
  return Bytes().U16(static_cast<quint16>(body.size() + 2)).Raw(body).All();
}

/// A file's entry: type, size, date, attributes, short name, and the long name in an extension of version 3.
QByteArray FileItem(char type, const QByteArray& shortName, const QString& longName) {
  QByteArray body = QByteArray(1, type) + QByteArray(11, '\0') + shortName + '\0';
  if (body.size() % 2 != 0) body += '\0';
  if (!longName.isEmpty()) {
    Bytes extension;
    const auto size = static_cast<quint16>(20 + 2 * longName.size() + 2 + 2);
    extension.U16(size).U16(3).U32(0xBEEF0004).U32(0).U32(0).U16(0x14).U16(0).Wide(longName).U16(0);
    extension.U16(static_cast<quint16>(body.size() + 2));
    body += extension.All();
  }
  return Item(body);
}

QByteArray ItemList() {
  const QByteArray root = Item(QByteArray("\x1F\x50", 2) + QByteArray(16, 'r'));
  const QByteArray drive = Item(QByteArray("\x2F") + "C:\\" + QByteArray(19, '\0'));
  const QByteArray folder = FileItem('\x31', "MUSICF~1", u"Music files"_s);
  const QByteArray file = FileItem('\x32', "caf\xE9.mp3", QString());
  const QByteArray items = root + drive + folder + file + QByteArray(2, '\0');
  return Bytes().U16(static_cast<quint16>(items.size())).Raw(items).All();
}

TEST(ShellLink, TargetAndArgumentsComeBackInAnyScript) {
  const TemporaryTree tree;
  const QString targets[] = {u"/music/Artist - Title.mp3"_s, u"/m\u00FCsik/\u65E5\u672C - \U0001F3B5.wav"_s,
                             u"/"_s, QString()};
  const QString arguments[] = {QString(), u"Std"_s, u"1,Pan,\u0159, ,\"q\" \\"_s, QString(65535, u'x')};
  for (const QString& target : targets) {
    for (const QString& argument : arguments) {
      ShellLink{target, argument}.Write(tree.Path(u" 1~a.lnk"_s));
      const ShellLink read = ShellLink::Read(tree.Path(u" 1~a.lnk"_s));
      EXPECT_EQ(read.targetPath, target);
      EXPECT_EQ(read.arguments, argument);
    }
  }
  EXPECT_THROW((void)(ShellLink{u"/a"_s, QString(65536, u'x')}.ToBytes()), Failure) << "never cut in silence";
}

TEST(ShellLink, ATargetInAnItemListAloneIsFound) {
  const QByteArray ansi =
      Header(0x01 | 0x04 | 0x20) + ItemList() + Bytes().U16(4).Raw("name").U16(3).Raw("St\xE9").All();
  const ShellLink read = ShellLink::FromBytes(ansi);
  EXPECT_EQ(read.targetPath, u"C:\\Music files\\caf\u00E9.mp3"_s);
  EXPECT_EQ(read.arguments, u"St\u00E9"_s);
}

TEST(ShellLink, TheLocationCountsBeforeTheItemListAndMayBeInTwoPiecesOrOnTheNetwork) {
  Bytes local;
  local.U32(0x1C + 10 + 10).U32(0x1C).U32(1).U32(0).U32(0x1C).U32(0).U32(0x1C + 10);
  local.Raw(QByteArray("D:\\Music\\", 9) + '\0').Raw(QByteArray("t\xEF.mp3", 6) + QByteArray(4, '\0'));
  const QByteArray arguments = Bytes().U16(3).Wide(u"Std"_s).All();
  const ShellLink read =
      ShellLink::FromBytes(Header(0x01 | 0x02 | 0x20 | 0x80) + ItemList() + local.All() + arguments);
  EXPECT_EQ(read.targetPath, u"D:\\Music\\t\u00EF.mp3"_s);
  EXPECT_EQ(read.arguments, u"Std"_s);

  Bytes network;
  network.U32(0x1C + 0x14 + 9 + 6).U32(0x1C).U32(2).U32(0).U32(0).U32(0x1C).U32(0x1C + 0x14 + 9);
  network.U32(0x14 + 9).U32(0).U32(0x14).U32(0).U32(0x20000).Raw(QByteArray("\\\\srv\\m1", 8) + '\0');
  network.Raw(QByteArray("a.mp3", 5) + '\0');
  EXPECT_EQ(ShellLink::FromBytes(Header(0x02) + network.All()).targetPath, u"\\\\srv\\m1\\a.mp3"_s);
}

TEST(ShellLink, EveryTruncationAndEveryLieIsEitherReadOrRefused) {
  const QByteArray whole[] = {
      ShellLink{u"/music/a.mp3"_s, u"Std"_s}.ToBytes(),
      Header(0x01 | 0x04 | 0x20) + ItemList() + Bytes().U16(1).Raw("n").U16(3).Raw("Std").All()};
  const auto tryToRead = [](const QByteArray& bytes) {
    try {
      return ShellLink::FromBytes(bytes).arguments;
    } catch (const Failure&) {
      return u"refused"_s;
    }
  };
  std::mt19937 random(5);
  for (const QByteArray& link : whole) {
    for (qsizetype length = 0; length < link.size(); ++length) {
      const QString got = tryToRead(link.first(length));
      EXPECT_TRUE(got == u"refused"_s || length >= link.size() - 4)
          << "arguments lost in silence at " << length;
    }
    for (int round = 0; round < 20000; ++round) {
      QByteArray lie = link;
      for (int change = 0; change < 4; ++change) {
        lie[static_cast<qsizetype>(20 + random() % static_cast<unsigned>(lie.size() - 20))] =
            static_cast<char>(random());
      }
      (void)tryToRead(lie);
    }
  }
}

TEST(ShellLink, ALinkIsToldByItsNameOrItsFirstBytes) {
  const TemporaryTree tree;
  EXPECT_TRUE(ShellLink::IsShellLink(tree.Write(u"a.LnK"_s, "")));
  EXPECT_TRUE(ShellLink::IsShellLink(tree.Write(u"b"_s, ShellLink{u"/a"_s, {}}.ToBytes())));
  EXPECT_FALSE(ShellLink::IsShellLink(tree.Write(u"c.mp3"_s, "L")));
  EXPECT_FALSE(ShellLink::IsShellLink(tree.Path(u"missing"_s)));
}

}  // namespace
}  // namespace kelvo
