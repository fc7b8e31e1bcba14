#include "console/ConsoleSettings.h"

#include "platform/SettingsStore.h"
#include "platform/Words.h"

#include <QFileInfo>

namespace kelvo {
namespace {

const QString kStartup = QStringLiteral("Startup");
const QString kConStartup = QStringLiteral("ConStartup");
const QString kNoJing = QStringLiteral("NoJing");
const QString kNoPlay = QStringLiteral("NoPlay");
constexpr int kMost16 = 32767;
constexpr int kMost32 = 2147483647;

/// Reads keys of one section with the type and range of their reader.
class Reader {
 public:
  Reader(const SettingsStore& store, QString title) : store_(store), title_(std::move(title)) {}

  [[nodiscard]] QString Text(const QString& key, const QString& fallback,
                             const QString& section = kStartup) const {
    return store_.GetSetting(title_, section, key, fallback);
  }
  [[nodiscard]] int Number(const QString& key, int fallback, int lowest, int highest) const {
    const QString text = Text(key, {});
    bool isNumber = false;
    static_cast<void>(text.trimmed().toDouble(&isNumber));
    return isNumber ? WholeNumber(text, lowest, highest) : fallback;
  }
  [[nodiscard]] bool Truth(const QString& key, bool fallback) const {
    return TruthValue(Text(key, TruthText(fallback)), fallback);
  }

 private:
  const SettingsStore& store_;
  QString title_;
};

JingleSettings ReadJingles(const QString& text) {
  JingleSettings jingles;
  if (text == kNoJing) return jingles;
  const QStringList fields = text.split(QLatin1Char(','));
  jingles.jingleVolume = WholeNumber(fields.value(0), -10000, 10000);
  jingles.autoFadeDepth = WholeNumber(fields.value(1), 0, 2000);
  jingles.autoFadeSpeed = WholeNumber(fields.value(2), 1, 10);
  for (std::size_t button = 0; button < jingles.captions.size(); ++button) {
    jingles.captions[button] = fields.value(3 + static_cast<qsizetype>(button));
    jingles.tags[button] = fields.value(7 + static_cast<qsizetype>(button));
  }
  jingles.filters = fields.mid(11);
  return jingles;
}

QString JinglesText(const JingleSettings& jingles) {
  QStringList fields{QString::number(jingles.jingleVolume), QString::number(jingles.autoFadeDepth),
                     QString::number(jingles.autoFadeSpeed)};
  for (const QString& caption : jingles.captions) fields.append(caption);
  for (const QString& tag : jingles.tags) fields.append(tag);
  return (fields + jingles.filters).join(QLatin1Char(','));
}

PlaySettings ReadPlay(const QString& text, const TrackDefaults& defaults) {
  PlaySettings play;
  play.fadeSpeed = std::clamp(defaults.DefaultFadeSpeed, 0, 50);
  play.delta = defaults.DefaultDelta;
  if (text == kNoPlay) return play;
  const QStringList fields = text.split(QLatin1Char(','));
  play.fadeSpeed = WholeNumber(fields.value(0), 0, 50);
  play.delta = WholeNumber(fields.value(1), 0, kMost16);
  play.monitorVolume = WholeNumber(fields.value(2), -10000, 10000);
  return play;
}

}  // namespace

std::optional<Colour> Colour::FromText(const QString& text) {
  const QStringList fields = text.split(QLatin1Char(','));
  if (fields.size() != 3) return std::nullopt;
  std::array<std::uint8_t, 3> values{};
  for (std::size_t index = 0; index < values.size(); ++index) {
    bool number = false;
    const int value = fields[static_cast<qsizetype>(index)].trimmed().toInt(&number);
    if (!number || value < 0 || value > 255) return std::nullopt;
    values[index] = static_cast<std::uint8_t>(value);
  }
  return Colour{values[0], values[1], values[2]};
}

QString Colour::ToText() const {
  return QStringLiteral("%1,%2,%3").arg(red).arg(green).arg(blue);
}

ConsoleSettings ReadConsoleSettings(const SettingsStore& store, const QString& title,
                                    const QString& programFolder) {
  const Reader reader(store, title);
  ConsoleSettings settings;
  settings.decks.FFwFRev = reader.Number(QStringLiteral("FFwFRev"), 5, 0, kMost32);
  settings.JukeLag = reader.Number(QStringLiteral("JukeLag"), 2, 0, kMost16);
  settings.DmanAccess = reader.Truth(QStringLiteral("DmanAccess"), true);
  if (!settings.DmanAccess) settings.DmanPassWord = reader.Text(QStringLiteral("DmanPassWord"), {});
  settings.defaults.DefaultFade = reader.Number(QStringLiteral("DefaultFade"), 0, -kMost16, kMost16);
  settings.defaults.DefaultFadeSpeed =
      reader.Number(QStringLiteral("DefaultFadeSpeed"), 25, -kMost16, kMost16);
  settings.defaults.DefaultDelta = reader.Number(QStringLiteral("DefaultDelta"), 3, -kMost16, kMost16);
  settings.AudioWarningFilePath =
      reader.Text(QStringLiteral("AudioWarningFilePath"), programFolder + QStringLiteral("/ello.Mp3"));
  settings.AudioWarningsOn = Val(reader.Text(QStringLiteral("AudioWarnings"), QStringLiteral("0"))) == 1 &&
                             QFileInfo::exists(settings.AudioWarningFilePath);
  settings.PanFadeBias = reader.Number(QStringLiteral("PanFadeBias"), 12, -kMost16, kMost16);
  settings.PrevSecs = reader.Number(QStringLiteral("PrevSecs"), 15, 0, kMost32);
  settings.decks.FixTrackDur =
      Val(reader.Text(QStringLiteral("FixTrackDurErrors"), QStringLiteral("1"))) == 1;
  settings.decks.AfadeSet = reader.Truth(QStringLiteral("AfadeSet"), true);
  settings.SpectralDisplay = reader.Number(QStringLiteral("SpectralDisplay"), 5, -kMost32, kMost32);
  settings.PFLDevice = reader.Number(QStringLiteral("PFLDevice"), -1, -1, kMost32);
  settings.PFLDeviceName = reader.Text(QStringLiteral("PFLDeviceName"), QStringLiteral("None"));
  settings.jingles = ReadJingles(reader.Text(QStringLiteral("JingleSettings"), kNoJing, kConStartup));
  settings.play =
      ReadPlay(reader.Text(QStringLiteral("PlaySettings"), kNoPlay, kConStartup), settings.defaults);
  return settings;
}

std::optional<Colour> ReadColour(const SettingsStore& store, const QString& title, ColourGroup group) {
  const Reader reader(store, title);
  switch (group) {
    case ColourGroup::Console:
      return Colour::FromText(reader.Text(QStringLiteral("ConBackCol"), QStringLiteral("164,117,56")));
    case ColourGroup::Decks:
      return Colour::FromText(reader.Text(QStringLiteral("DeckBackCol"), QStringLiteral("44,166,211")));
    case ColourGroup::SoundBites:
      return Colour::FromText(reader.Text(QStringLiteral("SbitesBackCol"), QStringLiteral("44,166,211")));
    case ColourGroup::Lists:
      return Colour::FromText(reader.Text(QStringLiteral("SlistsBackCol"), QStringLiteral("66,189,166")));
  }
  return std::nullopt;
}

void SaveConsoleSettings(SettingsStore& store, const QString& title, const ConsoleSettings& settings,
                         int width, int height) {
  const PlaySettings& play = settings.play;
  store.SaveSetting(title, kConStartup, QStringLiteral("JingleSettings"), JinglesText(settings.jingles));
  store.SaveSetting(title, kConStartup, QStringLiteral("PlaySettings"),
                    QStringLiteral("%1,%2,%3").arg(play.fadeSpeed).arg(play.delta).arg(play.monitorVolume));
  store.SaveSetting(title, kConStartup, QStringLiteral("Height"), QString::number(height));
  store.SaveSetting(title, kConStartup, QStringLiteral("Width"), QString::number(width));
  // Nobody reads this one: the bias of the next start lies under Startup and is the configuration's alone to
  // change.
  store.SaveSetting(title, kConStartup, QStringLiteral("PanFadeBias"), QString::number(settings.PanFadeBias));
}

}  // namespace kelvo
