#include "console/DeskSliders.h"

#include "platform/Words.h"

#include <algorithm>

namespace kelvo {
namespace {

constexpr int kMostVolume = 10000;

}  // namespace

JingleSettings JingleSettings::FromSetting(const QString& text) {
  JingleSettings jingles;
  const QStringList fields = SplitFields(text);
  jingles.jingleVolume = WholeNumber(fields.value(0), -kMostVolume, kMostVolume);
  jingles.autoFadeDepth = WholeNumber(fields.value(1), 0, 2000);
  jingles.autoFadeSpeed = WholeNumber(fields.value(2), 1, 10);
  for (std::size_t button = 0; button < jingles.captions.size(); ++button) {
    jingles.captions[button] = fields.value(3 + static_cast<qsizetype>(button));
    jingles.tags[button] = fields.value(7 + static_cast<qsizetype>(button));
  }
  jingles.filters = fields.mid(11);
  return jingles;
}

QString JingleSettings::ToSetting() const {
  QStringList fields{QString::number(jingleVolume), QString::number(autoFadeDepth),
                     QString::number(autoFadeSpeed)};
  for (const QString& caption : captions) fields.append(caption);
  for (const QString& tag : tags) fields.append(tag);
  return JoinFields(fields + filters);
}

PlaySettings PlaySettings::Of(const TrackDefaults& defaults) {
  PlaySettings play;
  play.fadeSpeed = std::clamp(defaults.DefaultFadeSpeed, 0, 50);
  play.delta = defaults.DefaultDelta;
  return play;
}

PlaySettings PlaySettings::FromSetting(const QString& text) {
  PlaySettings play;
  const QStringList fields = SplitFields(text);
  play.fadeSpeed = WholeNumber(fields.value(0), 0, 50);
  play.delta = WholeNumber(fields.value(1), 0, setting::kMost16);
  play.monitorVolume = WholeNumber(fields.value(2), -kMostVolume, kMostVolume);
  return play;
}

QString PlaySettings::ToSetting() const {
  return JoinFields({QString::number(fadeSpeed), QString::number(delta), QString::number(monitorVolume)});
}

}  // namespace kelvo
