#include "platform/TextFile.h"

#include "platform/AtomicFile.h"

#include <QStringDecoder>

#include <algorithm>
#include <array>
#include <optional>

namespace kelvo {
namespace {

/// What the codes 0x80 to 0x9F of the page mean; all others mean the character of the same number.
constexpr std::array<char16_t, 32> kUpperControls = {
    0x20AC, 0x0081, 0x201A, 0x0192, 0x201E, 0x2026, 0x2020, 0x2021, 0x02C6, 0x2030, 0x0160,
    0x2039, 0x0152, 0x008D, 0x017D, 0x008F, 0x0090, 0x2018, 0x2019, 0x201C, 0x201D, 0x2022,
    0x2013, 0x2014, 0x02DC, 0x2122, 0x0161, 0x203A, 0x0153, 0x009D, 0x017E, 0x0178};

constexpr bool IsUpperControl(unsigned code) {
  return (code & ~0x1FU) == 0x80U;
}

std::optional<char> ToByte(QChar character) {
  const char16_t code = character.unicode();
  if (code < 0x80 || (code >= 0xA0 && code <= 0xFF)) return static_cast<char>(code);
  const auto found = std::find(kUpperControls.begin(), kUpperControls.end(), code);
  if (found == kUpperControls.end()) return std::nullopt;
  return static_cast<char>(0x80 + (found - kUpperControls.begin()));
}

constexpr QByteArrayView kMark("\xEF\xBB\xBF");

bool HasUpperHalf(QByteArrayView bytes) {
  return std::any_of(bytes.begin(), bytes.end(), [](char byte) { return (byte & '\x80') != 0; });
}

/// The text of `bytes` when it is UTF-8 from which the same bytes can be made again.
std::optional<QString> FromUtf8(QByteArrayView bytes) {
  if (!bytes.isValidUtf8()) return std::nullopt;
  // A decoder of its own: QString::fromUtf8 swallows a mark that is part of the text.
  QStringDecoder decode(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
  QString text = decode(bytes);
  if (text.toUtf8() != bytes) return std::nullopt;
  return text;
}

}  // namespace

QString FromWindows1252(QByteArrayView bytes) {
  QString text = QString::fromLatin1(bytes);
  QChar* characters = nullptr;
  for (qsizetype at = 0; at < bytes.size(); ++at) {
    const auto code = static_cast<unsigned char>(bytes[at]);
    if (!IsUpperControl(code)) continue;
    if (characters == nullptr) characters = text.data();
    characters[at] = QChar(kUpperControls[code & 0x1FU]);
  }
  return text;
}

bool FitsWindows1252(QStringView text) {
  return std::all_of(text.begin(), text.end(), [](QChar character) { return ToByte(character).has_value(); });
}

QByteArray ToWindows1252(QStringView text) {
  QByteArray bytes;
  bytes.reserve(text.size());
  for (qsizetype at = 0; at < text.size(); ++at) {
    bytes.append(ToByte(text[at]).value_or('?'));
    const bool pair = text[at].isHighSurrogate() && at + 1 < text.size() && text[at + 1].isLowSurrogate();
    if (pair) ++at;
  }
  return bytes;
}

TextFile::TextFile(const QStringList& lines) {
  lines_.reserve(static_cast<size_t>(lines.size()));
  for (const QString& line : lines) lines_.push_back({line, LineEnd::CrLf});
}

TextFile TextFile::FromBytes(const QByteArray& bytes) {
  TextFile file;
  std::optional<QString> text;
  if (HasUpperHalf(bytes)) {
    const bool marked = bytes.startsWith(kMark);
    text = FromUtf8(QByteArrayView(bytes).sliced(marked ? kMark.size() : 0));
    if (text) file.encoding_ = marked ? Encoding::Utf8WithMark : Encoding::Utf8;
  }
  if (!text) text = FromWindows1252(bytes);

  const QStringView all(*text);
  qsizetype begin = 0;
  while (begin < all.size()) {
    const auto* const found = std::find_if(all.begin() + begin, all.end(), [](QChar character) {
      return character == QLatin1Char('\n') || character == QLatin1Char('\r');
    });
    const qsizetype stop = found - all.begin();
    LineEnd end = LineEnd::None;
    qsizetype next = stop;
    if (stop < all.size()) {
      const bool pair = all.sliced(stop).startsWith(QLatin1StringView("\r\n"));
      end = pair ? LineEnd::CrLf : all[stop] == QLatin1Char('\n') ? LineEnd::Lf : LineEnd::Cr;
      next = stop + (pair ? 2 : 1);
    }
    file.lines_.push_back({all.sliced(begin, stop - begin).toString(), end});
    begin = next;
  }
  return file;
}

QString TextFile::Joined() const {
  QString all;
  for (const TextLine& line : lines_) {
    // A lone return before an emptied line with a lone feed would read as one end for both.
    const bool fuses = all.endsWith(QLatin1Char('\r')) && line.text.isEmpty() && line.end == LineEnd::Lf;
    if (fuses) all += QLatin1Char('\n');
    all += line.text;
    if (fuses || line.end == LineEnd::CrLf) {
      all += QLatin1StringView("\r\n");
    } else if (line.end != LineEnd::None) {
      all += QLatin1Char(line.end == LineEnd::Lf ? '\n' : '\r');
    }
  }
  return all;
}

QByteArray TextFile::ToBytes() const {
  const QString all = Joined();
  if (encoding_ == Encoding::Windows1252 && FitsWindows1252(all)) {
    QByteArray bytes = ToWindows1252(all);
    // What would read as UTF-8 again would come back as other letters.
    if (!HasUpperHalf(bytes) || !bytes.isValidUtf8()) return bytes;
  }
  const bool unmarked = encoding_ == Encoding::Utf8 && !all.startsWith(QChar(QChar::ByteOrderMark));
  return unmarked ? all.toUtf8() : kMark.toByteArray() + all.toUtf8();
}

TextFile TextFile::Read(const QString& path) {
  return FromBytes(ReadWholeFile(path));
}

void TextFile::Write(const QString& path) const {
  ReplaceFile(path, ToBytes());
}

QString TextFile::Line(qsizetype index) const {
  return index >= 0 && index < Count() ? lines_[static_cast<size_t>(index)].text : QString();
}

QStringList TextFile::Lines() const {
  QStringList lines;
  lines.reserve(Count());
  for (const TextLine& line : lines_) lines.append(line.text);
  return lines;
}

TextFile::LineEnd TextFile::EndOfNewLine() const {
  return lines_.empty() || lines_.front().end == LineEnd::None ? LineEnd::CrLf : lines_.front().end;
}

void TextFile::SetLine(qsizetype index, const QString& text) {
  if (index < 0) return;
  while (Count() <= index) Append({});
  lines_[static_cast<size_t>(index)].text = text;
}

void TextFile::Append(const QString& text) {
  const LineEnd end = EndOfNewLine();
  if (!lines_.empty() && lines_.back().end == LineEnd::None) lines_.back().end = end;
  lines_.push_back({text, end});
}

void TextFile::RemoveFrom(qsizetype index) {
  if (index >= 0 && index < Count()) lines_.resize(static_cast<size_t>(index));
}

}  // namespace kelvo
