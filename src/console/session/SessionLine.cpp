#include "console/session/SessionLine.h"

#include "database/GroupElement.h"
#include "platform/Words.h"

#include <QFileInfo>

#include <cmath>

namespace kelvo {
namespace {

enum Field : qsizetype { kStart, kClock, kCode, kDeck, kFade, kSpeed, kPos, kLength, kPath, kEnd, kFields };

constexpr char kEndMark[] = ".";

/// A path without the characters that end a field or a line.
QByteArray Escaped(const QString& path) {
  return path.toUtf8().replace("%", "%25").replace("\t", "%09").replace("\n", "%0A").replace("\r", "%0D");
}

QString Unescaped(const QByteArray& text) {
  return QString::fromUtf8(
      QByteArray(text).replace("%0D", "\r").replace("%0A", "\n").replace("%09", "\t").replace("%25", "%"));
}

}  // namespace

std::optional<SessionLine> SessionLine::Parse(const QByteArray& line) {
  const QList<QByteArray> fields = line.split('\t');
  if (fields.size() != kFields || fields[kEnd] != kEndMark) return std::nullopt;
  SessionLine read;
  read.sessionStart = QDateTime::fromString(QString::fromLatin1(fields[kStart]), Qt::ISODateWithMs);
  bool ok = false;
  read.event.Time = fields[kClock].toDouble(&ok);
  if (!ok || !read.sessionStart.isValid() || !(std::abs(read.event.Time) < 1e8)) return std::nullopt;
  // All but the clock's fraction is what an element of a group playlist holds: one reader judges both.
  const std::optional<GroupElement> element =
      GroupElement::Parse(QStringLiteral("0,0:00,0,%1,%2,%3,%4,%5,%6")
                              .arg(QString::fromLatin1(fields[kDeck]), QString::fromLatin1(fields[kFade]),
                                   QString::fromLatin1(fields[kSpeed]), QString::fromLatin1(fields[kCode]),
                                   QString::fromLatin1(fields[kPos]), QString::fromLatin1(fields[kLength])));
  if (!element || element->code == SessionCode::Repeat) return std::nullopt;
  SessionEvent& event = read.event;
  event.OnDeck = DeckOfPlayer(element->deck);
  event.FadeType = element->fade;
  event.Speed = element->speed;
  event.Code = element->code;
  event.Pos = element->position;
  event.Length = element->length;
  event.Path = Unescaped(fields[kPath]);
  event.Description = SessionDescription(event.Code, BaseName(QFileInfo(event.Path).fileName()));
  return read;
}

QByteArray SessionLine::Print() const {
  const QDateTime start = sessionStart.toOffsetFromUtc(sessionStart.offsetFromUtc());
  QByteArrayList fields(kFields);
  fields[kStart] = start.toString(Qt::ISODateWithMs).toLatin1();
  fields[kClock] = QByteArray::number(event.Time, 'f', 3);
  fields[kCode] = event.CodeWords().toLatin1();
  fields[kDeck] = event.DeckWords().toLatin1();
  fields[kFade] = event.FadeNumber().toLatin1();
  fields[kSpeed] = event.SpeedWords().toLatin1();
  fields[kPos] = event.PosWords().toLatin1();
  fields[kLength] = event.LengthWords().toLatin1();
  fields[kPath] = Escaped(event.Path);
  fields[kEnd] = kEndMark;
  return fields.join('\t') + '\n';
}

}  // namespace kelvo
