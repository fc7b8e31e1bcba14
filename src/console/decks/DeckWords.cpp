#include "console/decks/DeckWords.h"

#include "database/TrackInfo.h"
#include "platform/Words.h"

#include <algorithm>

namespace kelvo {
namespace {

const QString kLineBreak = QStringLiteral("\r\n");
constexpr qsizetype kNamesShown = 4;

QString NamesOf(const ReferenceLine& references) {
  if (references.names.isEmpty()) return QStringLiteral("None");
  return references.names.first(std::min(references.names.size(), kNamesShown)).join(QStringLiteral(": "));
}

QString StyleWord(int style) {
  return style > 0 ? QStringLiteral("Strong") : QStringLiteral("Soft");
}

}  // namespace

QString TrackInfoWords(const TrackInfo& info, double duration) {
  const QString gap = QStringLiteral("   ");
  QString words = QStringLiteral("Date : ") + info.Text(InfoLine::ReleaseDate) + gap +
                  QStringLiteral("Hi Pos : ") + info.Text(InfoLine::HiPos) + gap + QStringLiteral("BPM : ") +
                  info.Text(InfoLine::Bpm) + gap + QStringLiteral("Dur : ") + MinutesSeconds(duration) +
                  kLineBreak;
  words += QStringLiteral("Genres  ") + NamesOf(info.Get(InfoFields::Categories)) + kLineBreak;
  words += QStringLiteral("Artists   ") + NamesOf(info.Get(InfoFields::Artists)) + kLineBreak;
  words += QStringLiteral("Albums  ") + NamesOf(info.Get(InfoFields::Albums)) + kLineBreak;
  for (const QString& comment : info.Comments()) {
    if (!comment.isEmpty()) words += comment + kLineBreak;
  }
  return words;
}

QString StyleWords(const TrackPlaySettings& play) {
  return QStringLiteral("Starts: ") + StyleWord(play.StartStyle) + QStringLiteral(" : Ends: ") +
         StyleWord(play.EndStyle);
}

QString RequestWords(const QString& request, int halfWidth) {
  const QString stars(std::max(halfWidth - 8, 1), QLatin1Char('*'));
  return stars + QStringLiteral("REQUESTS") + stars + kLineBreak + request + kLineBreak;
}

}  // namespace kelvo
