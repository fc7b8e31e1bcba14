#include "platform/SettingsText.h"

#include <algorithm>
#include <iterator>

namespace kelvo {
namespace {

constexpr QLatin1StringView kBetween(" / ");

bool NeedsNumber(QStringView text, qsizetype at) {
  const QChar character = text[at];
  if (character.isHighSurrogate()) return at + 1 >= text.size() || !text[at + 1].isLowSurrogate();
  if (character.isLowSurrogate()) return at == 0 || !text[at - 1].isHighSurrogate();
  const bool atAnEdge = at == 0 || at == text.size() - 1;
  return character.category() == QChar::Other_Control || character == QChar(QChar::ByteOrderMark) ||
         (atAnEdge && character.isSpace());
}

/// `text` in a form that fits on one line, keeps its edges and holds none of `reserved` bare.
QString Escaped(QStringView text, QLatin1StringView reserved) {
  QString escaped;
  escaped.reserve(text.size() + 8);
  for (qsizetype at = 0; at < text.size(); ++at) {
    const QChar character = text[at];
    if (character == QLatin1Char('\\') || reserved.contains(character)) {
      escaped += QLatin1Char('\\');
      escaped += character;
    } else if (character == QLatin1Char('\n')) {
      escaped += QLatin1StringView("\\n");
    } else if (character == QLatin1Char('\r')) {
      escaped += QLatin1StringView("\\r");
    } else if (character == QLatin1Char('\t')) {
      escaped += QLatin1StringView("\\t");
    } else if (character == QLatin1Char(' ') && (at == 0 || at == text.size() - 1)) {
      escaped += QLatin1StringView("\\s");
    } else if (NeedsNumber(text, at)) {
      escaped += QStringLiteral("\\x%1").arg(static_cast<uint>(character.unicode()), 4, 16, QLatin1Char('0'));
    } else {
      escaped += character;
    }
  }
  return escaped;
}

QString Plain(QStringView escaped) {
  QString plain;
  plain.reserve(escaped.size());
  for (qsizetype at = 0; at < escaped.size(); ++at) {
    if (escaped[at] != QLatin1Char('\\') || at + 1 == escaped.size()) {
      plain += escaped[at];
      continue;
    }
    const QChar marked = escaped[++at];
    if (marked == QLatin1Char('n')) {
      plain += QLatin1Char('\n');
    } else if (marked == QLatin1Char('r')) {
      plain += QLatin1Char('\r');
    } else if (marked == QLatin1Char('t')) {
      plain += QLatin1Char('\t');
    } else if (marked == QLatin1Char('s')) {
      plain += QLatin1Char(' ');
    } else if (marked == QLatin1Char('x')) {
      bool isNumber = false;
      const ushort code = escaped.mid(at + 1, 4).toUShort(&isNumber, 16);
      if (isNumber && at + 4 < escaped.size()) {
        plain += QChar(code);
        at += 4;
      } else {
        plain += marked;
      }
    } else {
      plain += marked;
    }
  }
  return plain;
}

/// The place of `character` without a backslash before it; -1 when it doesn't.
qsizetype IndexOfBare(QStringView text, QChar character) {
  for (qsizetype at = 0; at < text.size(); ++at) {
    if (text[at] == QLatin1Char('\\')) {
      ++at;
    } else if (text[at] == character) {
      return at;
    }
  }
  return -1;
}

}  // namespace

SettingsText::Address SettingsText::AddressOf(const QString& title, const QString& section,
                                              const QString& key) {
  return {title, section.toCaseFolded(), key.toCaseFolded()};
}

std::optional<std::pair<QString, QString>> SettingsText::NameInHead(QStringView line) {
  const QStringView inside = line.sliced(1);
  const qsizetype close = IndexOfBare(inside, QLatin1Char(']'));
  const qsizetype between = IndexOfBare(inside, QLatin1Char('/'));
  if (close < 0 || between < 0 || between > close) return std::nullopt;
  return std::pair(Plain(inside.first(between).trimmed()),
                   Plain(inside.sliced(between + 1, close - between - 1).trimmed()));
}

std::optional<SettingsText::Entry> SettingsText::EntryInLine(QStringView line) {
  if (line.startsWith(QLatin1Char(';')) || line.startsWith(QLatin1Char('#'))) return std::nullopt;
  const qsizetype equals = IndexOfBare(line, QLatin1Char('='));
  if (equals < 0) return std::nullopt;
  return Entry{Plain(line.first(equals).trimmed()), Plain(line.sliced(equals + 1).trimmed())};
}

SettingsText SettingsText::FromBytes(const QByteArray& bytes) {
  SettingsText text;
  bool odd = false;
  text.sections_.emplace_back();
  qsizetype begin = 0;
  while (begin < bytes.size()) {
    const qsizetype feed = bytes.indexOf('\n', begin);
    const qsizetype next = feed < 0 ? bytes.size() : feed + 1;
    const QByteArray raw = bytes.sliced(begin, next - begin);
    begin = next;
    // A line in another encoding says nothing: its value would not be the one that was meant.
    const QString decoded = raw.isValidUtf8() ? QString::fromUtf8(raw) : QString();
    const QStringView line = QStringView(decoded).trimmed();
    odd = odd || !(raw.trimmed().isEmpty() || line.startsWith(QLatin1Char(';')) ||
                   line.startsWith(QLatin1Char('#')) || line.startsWith(QLatin1Char('[')));
    if (line.startsWith(QLatin1Char('['))) {
      text.sections_.push_back({NameInHead(line), raw, {}});
    } else {
      text.sections_.back().lines.push_back({raw, EntryInLine(line)});
    }
  }
  text.Index();
  text.garbage_ = bytes.contains('\0') || (odd && text.places_.empty());
  return text;
}

QByteArray SettingsText::ToBytes() const {
  QByteArray bytes;
  for (const Section& section : sections_) {
    bytes += section.head;
    for (const Line& line : section.lines) bytes += line.bytes;
  }
  return bytes;
}

/// Where a key is given twice, the first counts.
void SettingsText::Index() {
  places_.clear();
  for (size_t at = 0; at < sections_.size(); ++at) {
    const Section& section = sections_[at];
    if (!section.name) continue;
    for (size_t line = 0; line < section.lines.size(); ++line) {
      const auto& entry = section.lines[line].entry;
      if (entry)
        places_.try_emplace(AddressOf(section.name->first, section.name->second, entry->key),
                            Place{at, line});
    }
  }
}

std::optional<QString> SettingsText::Value(const QString& title, const QString& section,
                                           const QString& key) const {
  const auto found = places_.find(AddressOf(title, section, key));
  if (found == places_.end()) return std::nullopt;
  return sections_[found->second.section].lines[found->second.line].entry->value;
}

void SettingsText::EndLastLine() {
  if (sections_.empty()) return;
  Section& last = sections_.back();
  QByteArray& bytes = last.lines.empty() ? last.head : last.lines.back().bytes;
  if (!bytes.isEmpty() && !bytes.endsWith('\n')) bytes += '\n';
}

SettingsText::Section& SettingsText::SectionFor(const QString& title, const QString& section) {
  const auto found = std::find_if(sections_.begin(), sections_.end(), [&](const Section& each) {
    return each.name && each.name->first == title &&
           each.name->second.toCaseFolded() == section.toCaseFolded();
  });
  if (found != sections_.end()) return *found;
  const bool separate = std::any_of(sections_.begin(), sections_.end(), [](const Section& each) {
    return !each.head.isEmpty() || !each.lines.empty();
  });
  if (separate) sections_.back().lines.push_back({QByteArrayLiteral("\n"), std::nullopt});
  const QString head = QLatin1Char('[') + Escaped(title, QLatin1StringView("]/")) + kBetween +
                       Escaped(section, QLatin1StringView("]/")) + QStringLiteral("]\n");
  return sections_.emplace_back(Section{std::pair(title, section), head.toUtf8(), {}});
}

bool SettingsText::SetValue(const QString& title, const QString& section, const QString& key,
                            const QString& value) {
  const auto lineOf = [&value](const QString& name) {
    const QString line = Escaped(name, QLatin1StringView("=[;#")) + QLatin1Char('=') + Escaped(value, {});
    return Line{line.toUtf8() + '\n', Entry{name, value}};
  };
  const auto found = places_.find(AddressOf(title, section, key));
  if (found != places_.end()) {
    Line& line = sections_[found->second.section].lines[found->second.line];
    if (line.entry->value == value) return false;
    line = lineOf(QString(line.entry->key));
    return true;
  }
  EndLastLine();
  Section& target = SectionFor(title, section);
  const auto lastEntry = std::find_if(target.lines.rbegin(), target.lines.rend(),
                                      [](const Line& line) { return line.entry.has_value(); });
  target.lines.insert(lastEntry.base(), lineOf(key));
  Index();
  return true;
}

bool SettingsText::Remove(const QString& title, const QString& section, const QString& key) {
  bool removed = false;
  // A second line of the same key, which a person may have written, must not take effect.
  for (auto found = places_.find(AddressOf(title, section, key)); found != places_.end();
       found = places_.find(AddressOf(title, section, key))) {
    auto& lines = sections_[found->second.section].lines;
    lines.erase(std::next(lines.begin(), static_cast<std::ptrdiff_t>(found->second.line)));
    Index();
    removed = true;
  }
  return removed;
}

}  // namespace kelvo
