#include "playlists/TempoOutline.h"

#include <QStringList>

#include <cmath>

namespace kelvo {

double TempoOutline::At(double share) const {
  const double place = std::clamp(share, 0.0, 1.0) * (kPoints - 1);
  const int before = std::min(static_cast<int>(place), kPoints - 2);
  return std::lerp(static_cast<double>(Bpm(before)), static_cast<double>(Bpm(before + 1)), place - before);
}

void TempoOutline::SetLow(int bpm) {
  low_ = std::clamp(bpm, kLowest, high_);
  HoldPoints();
}

void TempoOutline::SetHigh(int bpm) {
  high_ = std::clamp(bpm, low_, kHighest);
  HoldPoints();
}

void TempoOutline::SetBpm(int point, int bpm) {
  bpm_[static_cast<std::size_t>(point)] = std::clamp(bpm, low_, high_);
}

void TempoOutline::HoldPoints() {
  for (int& bpm : bpm_) bpm = std::clamp(bpm, low_, high_);
}

std::optional<TempoOutline> TempoOutline::FromSetting(const QString& text) {
  const QStringList fields = text.split(QLatin1Char(','));
  if (fields.size() != kPoints + 2) return std::nullopt;
  TempoOutline outline;
  outline.low_ = kLowest;
  outline.high_ = kHighest;
  for (int point = 0; point < kPoints; ++point) outline.SetBpm(point, fields[point + 2].toInt());
  outline.SetHigh(fields[1].toInt());
  outline.SetLow(fields[0].toInt());
  return outline;
}

QString TempoOutline::ToSetting() const {
  QStringList fields{QString::number(low_), QString::number(high_)};
  for (const int bpm : bpm_) fields.append(QString::number(bpm));
  return fields.join(QLatin1Char(','));
}

}  // namespace kelvo
