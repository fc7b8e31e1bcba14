#include "platform/ShellLink.h"

#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/TextFile.h"
#include "platform/Words.h"

#include <QDataStream>
#include <QFile>
#include <QStringList>
#include <QtEndian>

#include <algorithm>
#include <optional>

namespace kelvo {
namespace {

// The parts of the format, in the order of the file: header, item list, link info, strings, further blocks.
constexpr quint32 kHeaderSize = 0x4C;
constexpr QByteArrayView kClass("\x01\x14\x02\x00\x00\x00\x00\x00\xC0\x00\x00\x00\x00\x00\x00\x46", 16);

constexpr quint32 kHasItemList = 0x01;
constexpr quint32 kHasLinkInfo = 0x02;
constexpr quint32 kHasName = 0x04;
constexpr quint32 kHasRelativePath = 0x08;
constexpr quint32 kHasWorkingFolder = 0x10;
constexpr quint32 kHasArguments = 0x20;
constexpr quint32 kIsUnicode = 0x80;

constexpr quint32 kInfoHasLocalPath = 0x01;
constexpr quint32 kInfoHasNetworkPath = 0x02;
/// The header of the link info with, and the least size of one without, the offsets of the Unicode texts.
constexpr quint32 kInfoHeaderWithUnicode = 0x24;
constexpr quint32 kInfoHeader = 0x1C;

/// The longest text that a string of the format holds, in UTF-16 units.
constexpr qsizetype kLongestString = 0xFFFF;

[[noreturn]] void Refuse(const QString& why) {
  throw Failure(QStringLiteral("Not a usable shell link : ") + why);
}

/// A piece of the file. Every offset and length in it is somebody's claim, so all looks are checked.
class Piece {
 public:
  explicit Piece(QByteArrayView bytes) : bytes_(bytes) {}

  [[nodiscard]] qsizetype Size() const { return bytes_.size(); }
  [[nodiscard]] bool Has(qsizetype offset, qsizetype length) const {
    return offset >= 0 && length >= 0 && offset <= Size() && length <= Size() - offset;
  }
  [[nodiscard]] quint16 U16(qsizetype offset) const { return Number<quint16>(offset); }
  [[nodiscard]] quint32 U32(qsizetype offset) const { return Number<quint32>(offset); }
  [[nodiscard]] quint8 U8(qsizetype offset) const { return Number<quint8>(offset); }
  [[nodiscard]] Piece Part(qsizetype offset, qsizetype length) const {
    if (!Has(offset, length)) Refuse(QStringLiteral("it is cut short"));
    return Piece(bytes_.sliced(offset, length));
  }
  [[nodiscard]] Piece From(qsizetype offset) const {
    return Part(offset, std::max<qsizetype>(Size() - offset, 0));
  }

  [[nodiscard]] QString Ansi() const { return FromWindows1252(bytes_); }
  [[nodiscard]] QString Unicode() const {
    QString text(Size() / 2, Qt::Uninitialized);
    for (qsizetype at = 0; at < text.size(); ++at) text[at] = QChar(U16(at * 2));
    return text;
  }
  /// The text at `offset` up to its zero, or to the end of the piece where there is none.
  [[nodiscard]] QString AnsiAt(qsizetype offset) const {
    const QByteArrayView rest = From(offset).bytes_;
    return FromWindows1252(rest.first(std::find(rest.begin(), rest.end(), '\0') - rest.begin()));
  }
  [[nodiscard]] QString UnicodeAt(qsizetype offset) const {
    const QString rest = From(offset).Unicode();
    return rest.left(std::find(rest.begin(), rest.end(), QChar()) - rest.begin());
  }

 private:
  template <typename T>
  [[nodiscard]] T Number(qsizetype offset) const {
    return qFromLittleEndian<T>(Part(offset, sizeof(T)).bytes_.data());
  }
  QByteArrayView bytes_;
};

QString Joined(const QString& folder, const QString& name) {
  const bool bare = folder.isEmpty() || name.isEmpty() || folder.endsWith(QLatin1Char('\\')) ||
                    folder.endsWith(QLatin1Char('/'));
  return bare ? folder + name : folder + QLatin1Char('\\') + name;
}

QString NetworkPath(const Piece& info, const QString& suffix) {
  const quint32 offset = info.U32(0x14);
  const Piece network = info.From(offset);
  const quint32 nameAt = network.U32(0x08);
  constexpr quint32 kWithoutUnicode = 0x14;
  const QString name =
      nameAt > kWithoutUnicode ? network.UnicodeAt(network.U32(0x14)) : network.AnsiAt(nameAt);
  return Joined(name, suffix);
}

QString PathInLinkInfo(const Piece& info) {
  const quint32 headerSize = info.U32(0x04);
  const quint32 flags = info.U32(0x08);
  if (headerSize < kInfoHeader) Refuse(QStringLiteral("its location has no header"));
  const bool unicode = headerSize >= kInfoHeaderWithUnicode;
  const quint32 suffixAt = info.U32(0x18);
  const quint32 unicodeSuffixAt = unicode ? info.U32(0x20) : 0;
  QString suffix;
  if (unicodeSuffixAt != 0) {
    suffix = info.UnicodeAt(unicodeSuffixAt);
  } else if (suffixAt != 0) {
    suffix = info.AnsiAt(suffixAt);
  }
  if ((flags & kInfoHasLocalPath) != 0) {
    const quint32 unicodeAt = unicode ? info.U32(0x1C) : 0;
    // The base is the whole path, or a folder that ends in its separator.
    return (unicodeAt != 0 ? info.UnicodeAt(unicodeAt) : info.AnsiAt(info.U32(0x10))) + suffix;
  }
  return (flags & kInfoHasNetworkPath) != 0 ? NetworkPath(info, suffix) : QString();
}

/// The long name in an item's extension, by the extension's version; none when there is no such extension.
std::optional<QString> LongName(const Piece& item) {
  const quint16 extensionAt = item.U16(item.Size() - 2);
  constexpr quint32 kNames = 0xBEEF0004;
  if (extensionAt < 0x0E || !item.Has(extensionAt, 20)) return std::nullopt;
  const Piece extension = item.From(extensionAt);
  const quint16 version = extension.U16(2);
  if (extension.U32(4) != kNames || version < 3) return std::nullopt;
  qsizetype nameAt = 20;
  if (version >= 7) nameAt = 38;
  if (version >= 8) nameAt += 4;
  if (version >= 9) nameAt += 4;
  if (!extension.Has(nameAt, 2)) return std::nullopt;
  QString name = extension.UnicodeAt(nameAt);
  return name.isEmpty() ? std::nullopt : std::optional(std::move(name));
}

/// The path that an item list tells: a drive, then a name for each folder and the file.
QString PathInItems(const Piece& items) {
  QString path;
  for (qsizetype at = 0; items.Has(at, 2);) {
    const quint16 size = items.U16(at);
    constexpr quint16 kLeastItem = 3;
    if (size < kLeastItem || !items.Has(at, size)) break;
    const Piece item = items.Part(at, size);
    at += size;
    const quint8 type = item.U8(2);
    const auto kind = static_cast<quint8>(type & 0x70U);
    if (kind == 0x20 && size > kLeastItem) {
      path = item.AnsiAt(3);
    } else if (kind == 0x30 && size > 0x10) {
      constexpr quint8 kUnicodeName = 0x04;
      constexpr qsizetype kShortName = 0x0E;
      const auto name = LongName(item);
      const bool wide = (type & kUnicodeName) != 0;
      path = Joined(path, name ? *name : wide ? item.UnicodeAt(kShortName) : item.AnsiAt(kShortName));
    }
  }
  return path;
}

void AppendString(QDataStream& out, const QString& text, const char* what) {
  if (text.size() > kLongestString) {
    throw Failure(QStringLiteral("Too long for a shell link : ") + QLatin1StringView(what));
  }
  out << static_cast<quint16>(text.size());
  for (const QChar character : text) out << static_cast<quint16>(character.unicode());
}

QByteArray Utf16WithZero(const QString& text) {
  QByteArray bytes;
  QDataStream out(&bytes, QIODevice::WriteOnly);
  out.setByteOrder(QDataStream::LittleEndian);
  for (const QChar character : text) out << static_cast<quint16>(character.unicode());
  out << quint16{0};
  return bytes;
}

QByteArray LinkInfo(const QString& targetPath) {
  const QByteArray ansi = ToWindows1252(targetPath) + '\0';
  const QByteArray unicode = Utf16WithZero(targetPath);
  constexpr quint32 kVolumeSize = 0x11;
  constexpr quint32 kFixedDrive = 3;
  constexpr quint32 kLabelAt = 0x10;
  const quint32 ansiAt = kInfoHeaderWithUnicode + kVolumeSize;
  const quint32 suffixAt = ansiAt + static_cast<quint32>(ansi.size());
  const quint32 unicodeAt = suffixAt + 1;
  const quint32 unicodeSuffixAt = unicodeAt + static_cast<quint32>(unicode.size());

  QByteArray info;
  QDataStream out(&info, QIODevice::WriteOnly);
  out.setByteOrder(QDataStream::LittleEndian);
  out << unicodeSuffixAt + 2 << kInfoHeaderWithUnicode << kInfoHasLocalPath;
  out << kInfoHeaderWithUnicode << ansiAt << quint32{0} << suffixAt << unicodeAt << unicodeSuffixAt;
  out << kVolumeSize << kFixedDrive << quint32{0} << kLabelAt << quint8{0};
  return info + ansi + '\0' + unicode + QByteArray(2, '\0');
}

bool BeginsAsLink(QByteArrayView bytes) {
  return bytes.size() >= 4 + kClass.size() && qFromLittleEndian<quint32>(bytes.data()) == kHeaderSize &&
         bytes.sliced(4, kClass.size()) == kClass;
}

}  // namespace

ShellLink ShellLink::FromBytes(const QByteArray& bytes) {
  if (!BeginsAsLink(bytes)) Refuse(QStringLiteral("it doesn't begin as one"));
  const Piece file(bytes);
  const quint32 flags = file.U32(0x14);
  qsizetype at = kHeaderSize;
  ShellLink link;

  QString itemPath;
  if ((flags & kHasItemList) != 0) {
    const quint16 size = file.U16(at);
    itemPath = PathInItems(file.Part(at + 2, size));
    at += 2 + size;
  }
  if ((flags & kHasLinkInfo) != 0) {
    const quint32 size = file.U32(at);
    if (size < kInfoHeader) Refuse(QStringLiteral("its location has no header"));
    link.targetPath = PathInLinkInfo(file.Part(at, size));
    at += size;
  }
  if (link.targetPath.isEmpty()) link.targetPath = itemPath;

  const bool unicode = (flags & kIsUnicode) != 0;
  for (const quint32 kind : {kHasName, kHasRelativePath, kHasWorkingFolder, kHasArguments}) {
    if ((flags & kind) == 0) continue;
    const qsizetype length = file.U16(at) * (unicode ? qsizetype{2} : qsizetype{1});
    const Piece text = file.Part(at + 2, length);
    if (kind == kHasArguments) link.arguments = unicode ? text.Unicode() : text.Ansi();
    at += 2 + length;
  }
  return link;
}

QByteArray ShellLink::ToBytes() const {
  constexpr quint32 kArchive = 0x20;
  constexpr quint32 kShowNormal = 1;
  QByteArray bytes;
  QDataStream out(&bytes, QIODevice::WriteOnly);
  out.setByteOrder(QDataStream::LittleEndian);
  out << kHeaderSize;
  out.writeRawData(kClass.data(), static_cast<int>(kClass.size()));
  const bool hasTarget = !targetPath.isEmpty();
  out << ((hasTarget ? kHasLinkInfo : 0U) | kHasArguments | kIsUnicode) << kArchive;
  // Three times of the target and its size, which this link doesn't tell; no icon, no hot key.
  out << quint64{0} << quint64{0} << quint64{0} << quint32{0} << qint32{0} << kShowNormal;
  out << quint16{0} << quint16{0} << quint32{0} << quint32{0};
  const QByteArray info = hasTarget ? LinkInfo(targetPath) : QByteArray();
  out.writeRawData(info.constData(), static_cast<int>(info.size()));
  AppendString(out, arguments, "its arguments");
  out << quint32{0};
  return bytes;
}

ShellLink ShellLink::Read(const QString& path) {
  constexpr qint64 kLargest = qint64{1} << 20;
  const QByteArray bytes = ReadWholeFile(path, kLargest);
  try {
    return FromBytes(bytes);
  } catch (const Failure& failure) {
    throw Failure(QString::fromStdString(failure.what()) + QStringLiteral(" : ") + path, 0, path);
  }
}

void ShellLink::Write(const QString& path) const {
  ReplaceFile(path, ToBytes());
}

bool ShellLink::IsShellLink(const QString& path) {
  if (UpperExtension(path) == QLatin1StringView("LNK")) return true;
  QFile file(path);
  return file.open(QIODevice::ReadOnly) && BeginsAsLink(file.read(4 + kClass.size()));
}

}  // namespace kelvo
