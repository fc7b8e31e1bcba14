#include "datamanager/GainOutput.h"

#include "database/InfoFields.h"

#include <QList>

#include <algorithm>
#include <cmath>
#include <limits>

namespace kelvo {
namespace {

constexpr char kTab = '\t';
constexpr qsizetype kTagFields = 11;
constexpr qsizetype kAnalysisFields = 19;
/// The column heads and what is behind the last line end.
constexpr qsizetype kFailedAnalysisFields = 7;
/// The tag that the tool stores cuts a greater gain to this, so what it says from here on is not the gain.
constexpr double kCutGain = 9.99999;
/// No music is so far from the target; silence is told as 64.82.
constexpr double kMostGain = 128;
constexpr double kMostAmp = 1e7;
/// A line of progress is shorter; a longer one is no line.
constexpr qsizetype kMostLine = 512;

std::optional<double> NumberOf(const QByteArray& field, double most) {
  const std::optional<double> number = NumberIn({field.constData(), static_cast<std::size_t>(field.size())});
  return number && std::abs(*number) <= most ? number : std::nullopt;
}

std::optional<std::int16_t> GlobalGain(const QByteArray& field) {
  using Limits = std::numeric_limits<std::int16_t>;
  const std::optional<double> number = NumberOf(field, Limits::max());
  return number ? std::optional(static_cast<std::int16_t>(std::nearbyint(*number))) : std::nullopt;
}

QByteArray WithoutCarriageReturns(QByteArray output) {
  return output.replace("\r\n", "\n");
}

}  // namespace

std::optional<Mp3Info> StoredTagsIn(const QByteArray& output) {
  const QByteArray lines = WithoutCarriageReturns(output);
  const qsizetype end = lines.indexOf('\n');
  if (end < 0) return std::nullopt;
  const QList<QByteArray> fields = lines.mid(end + 1).split(kTab);
  if (fields.size() != kTagFields) return std::nullopt;
  Mp3Info record;
  record.RadiodBGain = NumberOf(fields[2], kMostGain);
  if (record.RadiodBGain && std::abs(*record.RadiodBGain) >= kCutGain) record.RadiodBGain.reset();
  record.RawRadiodBGain = record.RadiodBGain;
  record.CurrMaxAmp = NumberOf(fields[3], kMostAmp);
  record.CurrMaxGain = GlobalGain(fields[4]);
  record.CurrMinGain = GlobalGain(fields[5]);
  record.AlbumdBGain = record.RawAlbumdBGain = NumberOf(fields[7], kMostGain);
  return record;
}

AnalysisAnswer AnalysisIn(const QByteArray& output, const QString& trackName) {
  const QList<QByteArray> fields = WithoutCarriageReturns(output).replace('\n', kTab).split(kTab);
  if (fields.size() >= kAnalysisFields) {
    Mp3Info record;
    record.CurrMaxAmp = NumberOf(fields[9], kMostAmp);
    record.RadiodBGain = record.RawRadiodBGain = NumberOf(fields[8], kMostGain);
    record.CurrMaxGain = GlobalGain(fields[10]);
    record.CurrMinGain = GlobalGain(fields[11]);
    if (record.RadiodBGain && record.CurrMaxAmp) return {record};
  }
  const QString told =
      fields.size() >= kFailedAnalysisFields ? QString::fromUtf8(fields[6]).trimmed() : QString();
  return {std::nullopt, told.contains(trackName) ? told : QString()};
}

ApplyWords ApplyWordsIn(const QByteArray& output) {
  const QByteArray words = output.toLower();
  if (words.contains("not enough temp space on disk")) return ApplyWords::NoDiscSpace;
  return words.contains("can't open") ? ApplyWords::CannotOpen : ApplyWords::Nothing;
}

std::optional<int> ProgressReader::Take(const QByteArray& piece) {
  std::optional<int> percent;
  rest_ += piece;
  for (qsizetype end = rest_.indexOf('\r'); end >= 0; end = rest_.indexOf('\r')) {
    const QByteArray line = rest_.left(end).simplified();
    rest_.remove(0, end + 1);
    const QList<QByteArray> fields = line.split(' ');
    const bool tells =
        fields.size() == 5 && fields[0].endsWith('%') && fields[1] == "of" && fields[3] == "bytes";
    if (!tells) continue;
    bool number = false;
    const int told = fields[0].chopped(1).toInt(&number);
    // The last one is 200.
    if (number) percent = std::clamp(told, 0, 100);
  }
  if (rest_.size() > kMostLine) rest_.clear();
  return percent;
}

}  // namespace kelvo
