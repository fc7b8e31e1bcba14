#include "audio/EncodingPresets.h"

#include <QCoreApplication>

#include <algorithm>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(EncodingPresets)
};

/// Below this rate a file is of the second form of the format, whose frames hold less.
constexpr int kFirstForm = 32000;
constexpr int kMostBelow = 160;

bool IsIn(std::span<const int> list, int value) {
  return std::find(list.begin(), list.end(), value) != list.end();
}

}  // namespace

std::optional<EncodingPresets> EncodingPresets::FromSetting(const QString& text) {
  const QStringList fields = text.split(QLatin1Char(','));
  std::array<int, 5> values{};
  if (fields.size() != static_cast<qsizetype>(values.size())) return std::nullopt;
  for (std::size_t index = 0; index < values.size(); ++index) {
    bool isNumber = false;
    values[index] = fields[static_cast<qsizetype>(index)].trimmed().toInt(&isNumber);
    if (!isNumber) return std::nullopt;
  }
  return EncodingPresets{values[0], values[1], values[2], values[3], values[4] == 1};
}

QString EncodingPresets::ToSetting() const {
  return QStringLiteral("%1,%2,%3,%4,%5")
      .arg(preset)
      .arg(bitRate)
      .arg(sampleRate)
      .arg(vbrQuality)
      .arg(vbr ? 1 : 0);
}

QString EncodingPresets::WhyInvalid() const {
  using namespace EncodingLists;
  std::optional<int> wrong;
  if (!IsIn(kVbrQualities, vbrQuality)) wrong = vbrQuality;
  if (!IsIn(kSampleRates, sampleRate)) wrong = sampleRate;
  if (!IsIn(kBitRates, bitRate)) wrong = bitRate;
  if (std::none_of(kPresets.begin(), kPresets.end(),
                   [this](const Preset& each) { return each.number == preset; }))
    wrong = preset;
  if (wrong) return Text::tr("The Mp3 Quality Setting %1 Is Not A valid Option !").arg(*wrong);
  if (sampleRate < kFirstForm && bitRate > kMostBelow)
    return Text::tr("At A Sample Rate Of %1 The Bit Rate Can Be No More Than %2 !")
        .arg(sampleRate)
        .arg(kMostBelow);
  return {};
}

}  // namespace kelvo
