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
constexpr int kMost = 320;

/// How hard an encoder searches.
constexpr int kUsual = 3;
constexpr int kFast = 7;
constexpr int kThorough = 2;
constexpr int kUtmost = 0;

/// What a preset brings with it.
struct Brought {
  int number;
  int effort = kUsual;
  std::optional<int> vbrQuality = {};
};
constexpr std::array kBrought{Brought{1, kFast},     Brought{2, kThorough}, Brought{4, kUsual, 3},
                              Brought{5, kUtmost},   Brought{6, kUsual, 2}, Brought{7, kFast, 2},
                              Brought{8, kUsual, 0}, Brought{9, kFast, 0},  Brought{13, kUsual, 4},
                              Brought{14, kFast, 4}};
constexpr int kVoice = 3;
constexpr int kInsane = 10;
constexpr int kAverage = 11;
constexpr int kConstant = 12;

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

EncodingPlan EncodingPresets::Plan() const {
  const auto found = std::find_if(kBrought.begin(), kBrought.end(),
                                  [this](const Brought& each) { return each.number == preset; });
  const Brought brought = found == kBrought.end() ? Brought{preset} : *found;
  EncodingPlan plan{.kbps = bitRate,
                    .vbrQuality = brought.vbrQuality.value_or(vbrQuality),
                    .effort = brought.effort,
                    .mono = preset == kVoice};
  if (!vbr || preset == kConstant || preset == kInsane) plan.rate = EncodingPlan::Rate::Constant;
  if (preset == kAverage) plan.rate = EncodingPlan::Rate::Average;
  if (preset == kInsane) plan.kbps = sampleRate < kFirstForm ? kMostBelow : kMost;
  return plan;
}

QString EncodingPresets::PlanWords() const {
  const EncodingPlan plan = Plan();
  QString rate;
  switch (plan.rate) {
    case EncodingPlan::Rate::Constant:
      rate = Text::tr("a constant bit rate of %1 kbit/s").arg(plan.kbps);
      break;
    case EncodingPlan::Rate::Average:
      rate = Text::tr("a bit rate that varies around %1 kbit/s").arg(plan.kbps);
      break;
    case EncodingPlan::Rate::Variable:
      rate = Text::tr("a variable bit rate of quality %1").arg(plan.vbrQuality);
      break;
  }
  const QString sides = plan.mono ? Text::tr("mono") : Text::tr("stereo");
  return Text::tr("Files get %1, %2 Hz, %3.").arg(rate).arg(sampleRate).arg(sides);
}

}  // namespace kelvo
