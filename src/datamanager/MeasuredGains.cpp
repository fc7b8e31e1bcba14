#include "datamanager/MeasuredGains.h"

#include "database/InfoFields.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QList>

namespace kelvo {
namespace {

constexpr char kTab = '\t';
/// Size, date, gain, peak, greatest and smallest gain, path; the mark behind them shows that the line is
/// whole.
constexpr qsizetype kFields = 8;
const QByteArray kWhole = QByteArrayLiteral(".");
/// Lines that may be outdated without being taken out.
constexpr qsizetype kSpareLines = 1000;

QByteArray NumberOf(const std::optional<double>& value) {
  return value ? QByteArray::number(*value, 'g', 12) : QByteArrayLiteral("?");
}

template <typename Value>
std::optional<Value> ValueIn(const QByteArray& field) {
  const std::optional<double> number = NumberIn({field.constData(), static_cast<std::size_t>(field.size())});
  return number ? std::optional(static_cast<Value>(*number)) : std::nullopt;
}

template <typename Value>
std::optional<double> AsDouble(const std::optional<Value>& value) {
  return value ? std::optional<double>(*value) : std::nullopt;
}

}  // namespace

QByteArray MeasuredGains::LineOf(const QString& path, const Kept& kept) {
  const Mp3Info& record = kept.record;
  const QList<QByteArray> fields{QByteArray::number(kept.mark.size),
                                 QByteArray::number(kept.mark.changed),
                                 NumberOf(record.RadiodBGain),
                                 NumberOf(record.CurrMaxAmp),
                                 NumberOf(AsDouble(record.CurrMaxGain)),
                                 NumberOf(AsDouble(record.CurrMinGain)),
                                 path.toUtf8().toPercentEncoding(" /-_.,;()[]{}'&+!#$@="),
                                 kWhole};
  return fields.join(kTab) + '\n';
}

MeasuredGains MeasuredGains::FromBytes(const QByteArray& bytes) {
  MeasuredGains gains;
  for (const QByteArray& line : bytes.split('\n')) {
    const QList<QByteArray> fields = line.split(kTab);
    if (fields.size() != kFields || fields.last() != kWhole) continue;
    Kept kept{{fields[0].toLongLong(), fields[1].toLongLong()}, {}};
    kept.record.RadiodBGain = kept.record.RawRadiodBGain = ValueIn<double>(fields[2]);
    kept.record.CurrMaxAmp = ValueIn<double>(fields[3]);
    kept.record.CurrMaxGain = ValueIn<std::int16_t>(fields[4]);
    kept.record.CurrMinGain = ValueIn<std::int16_t>(fields[5]);
    if (kept.record.RadiodBGain)
      gains.kept_.insert(QString::fromUtf8(QByteArray::fromPercentEncoding(fields[6])), kept);
  }
  return gains;
}

MeasuredGains MeasuredGains::Load(const QString& file) {
  if (!QFileInfo(file).isFile()) return {};
  try {
    const QByteArray bytes = ReadWholeFile(file);
    MeasuredGains gains = FromBytes(bytes);
    if (bytes.count('\n') > 2 * gains.kept_.size() + kSpareLines) {
      QByteArray fresh;
      for (auto kept = gains.kept_.cbegin(); kept != gains.kept_.cend(); ++kept)
        fresh += LineOf(kept.key(), kept.value());
      ReplaceFile(file, fresh);
    }
    return gains;
  } catch (const Failure&) {
    return {};
  }
}

std::optional<Mp3Info> MeasuredGains::Find(const QString& path, const FileMark& mark) const {
  const auto kept = kept_.constFind(path);
  return kept != kept_.cend() && kept->mark == mark ? std::optional(kept->record) : std::nullopt;
}

QByteArray MeasuredGains::Add(const QString& path, const FileMark& mark, const Mp3Info& record) {
  Kept kept{mark, record};
  // The target is of the moment.
  kept.record.ModifydBGain.reset();
  kept_.insert(path, kept);
  return LineOf(path, kept);
}

void MeasuredGains::Append(const QString& file, const QByteArray& lines) {
  QDir().mkpath(QFileInfo(file).path());
  QFile opened(file);
  if (opened.open(QIODevice::WriteOnly | QIODevice::Append)) opened.write(lines);
}

}  // namespace kelvo
