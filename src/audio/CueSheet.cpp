#include "audio/CueSheet.h"

#include <algorithm>

namespace kelvo {

namespace {

constexpr std::size_t kMostTracks = 99;
constexpr FrameIndex kCueFrames = 75;  ///< a second

/// A sheet has no way to write a quotation mark, and a line is a line.
QString Quoted(QString text) {
  for (QChar& each : text) {
    if (each == QLatin1Char('"')) each = QLatin1Char('\'');
    if (each < QLatin1Char(' ')) each = QLatin1Char(' ');
  }
  return QLatin1Char('"') + text + QLatin1Char('"');
}

QString Index(FrameIndex frame) {
  const FrameIndex at = std::max<FrameIndex>(frame, 0) * kCueFrames / kEngineRate;
  const FrameIndex seconds = at / kCueFrames;
  return QStringLiteral("%1:%2:%3")
      .arg(seconds / 60, 2, 10, QLatin1Char('0'))
      .arg(seconds % 60, 2, 10, QLatin1Char('0'))
      .arg(at % kCueFrames, 2, 10, QLatin1Char('0'));
}

/// What a sheet calls the kind of the file: whatever is not compressed with a loss is a WAVE, but for the
/// bare sectors of a disc.
QString KindWord(const QString& soundFile) {
  if (soundFile.endsWith(QStringLiteral(".bin"), Qt::CaseInsensitive)) return QStringLiteral("BINARY");
  const bool mp3 = soundFile.endsWith(QStringLiteral(".mp3"), Qt::CaseInsensitive);
  return mp3 ? QStringLiteral("MP3") : QStringLiteral("WAVE");
}

}  // namespace

QByteArray CueSheetText(const QString& soundFile, const std::vector<CueTitle>& titles) {
  QString text = QStringLiteral("FILE %1 %2\r\n").arg(Quoted(soundFile), KindWord(soundFile));
  for (std::size_t i = 0; i < std::min(titles.size(), kMostTracks); ++i) {
    const CueTitle& each = titles[i];
    text += QStringLiteral("  TRACK %1 AUDIO\r\n").arg(i + 1, 2, 10, QLatin1Char('0'));
    text += QStringLiteral("    TITLE ") + Quoted(each.title) + QStringLiteral("\r\n");
    text += QStringLiteral("    PERFORMER ") + Quoted(each.performer) + QStringLiteral("\r\n");
    text += QStringLiteral("    INDEX 01 ") + Index(each.frame) + QStringLiteral("\r\n");
  }
  return text.toUtf8();
}

}  // namespace kelvo
