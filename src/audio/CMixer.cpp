#include "audio/CMixer.h"

#include "audio/AudioSystem.h"
#include "platform/ErrorLog.h"

#include <algorithm>

namespace kelvo {

namespace {

// The published codes of line, control and target types.
constexpr int kSpeakers = 4;
constexpr int kWaveOut = 0x1008;
constexpr int kWaveOutTarget = 1;
constexpr int kVolumeControl = 0x50030001;
constexpr int kMostVolume = 0xFFFF;

void CheckIndex(int index, std::size_t count, const QString& text, const QString& source) {
  if (index >= 0 && static_cast<std::size_t>(index) < count) return;
  throw Failure(text.arg(count), 0, source);
}

}  // namespace

QString MixerErrorText(int code) {
  static constexpr std::array kGeneral = {
      "no error",
      "unspecified error",
      "device ID out of range",
      "driver failed enable",
      "device already allocated",
      "device handle is invalid",
      "no device driver present",
      "memory allocation error",
      "function isn't supported",
      "error value out of range",
      "invalid flag passed",
      "invalid parameter passed",
      "handle being used",
      "specified alias not found",
      "bad registry database",
      "registry key not found",
      "registry read error",
      "registry write error",
      "registry delete error",
      "registry value not found",
      "driver does not call DriverCallback",
  };
  static constexpr std::array kMixer = {"invalid line", "invalid control", "invalid value"};
  static constexpr int kMixerBase = 1024;
  const auto from = [code](const auto& texts, int base) -> const char* {
    const auto index = static_cast<std::size_t>(code) - static_cast<std::size_t>(base);
    return code >= base && index < texts.size() ? texts[index] : nullptr;
  };
  const char* text = from(kGeneral, 0);
  if (!text) text = from(kMixer, kMixerBase);
  return QString::fromLatin1(text ? text : "unknown error");
}

CMixer::Mixer CMixer::DescribeOutput(const QString& name) {
  Control volume;
  volume.name = QStringLiteral("Volume");
  volume.type = kVolumeControl;
  volume.most = kMostVolume;
  volume.channels = {kMostVolume, kMostVolume};

  Line players;
  players.name = QStringLiteral("Wave");
  players.type = kWaveOut;
  players.target = kWaveOutTarget;
  players.channels = 2;
  players.active = true;
  players.controls = {volume};

  Line master = players;
  master.name = name;
  master.type = kSpeakers;
  master.sources = {players};

  Mixer mixer;
  mixer.name = name;
  mixer.destinations = {std::move(master)};
  return mixer;
}

void CMixer::Create() {
  const QStringList names = audio_.OutputNames();
  mixers_.clear();
  destination_ = source_ = {};
  if (names.isEmpty()) {
    constexpr int kNoDriver = 6;
    throw Failure(MixerErrorText(kNoDriver), kNoDriver, QStringLiteral("CMixer:Create"));
  }
  std::transform(names.begin(), names.end(), std::back_inserter(mixers_), DescribeOutput);
  SetMixerID(0);
}

void CMixer::SetMixerID(int index) {
  CheckIndex(index, mixers_.size(), QStringLiteral("There are only %1mixers on this system."),
             QStringLiteral("CMixer:MixerID[LET]"));
  mixer_ = index;
  SetDstLineID(0);
}

QString CMixer::MixerName() const {
  return mixers_.empty() ? QString() : mixers_[static_cast<std::size_t>(mixer_)].name;
}

int CMixer::numDestinations() const {
  return mixers_.empty() ? 0
                         : static_cast<int>(mixers_[static_cast<std::size_t>(mixer_)].destinations.size());
}

void CMixer::SetDstLineID(int index) {
  CheckIndex(index, static_cast<std::size_t>(numDestinations()),
             QStringLiteral("There are only %1 destination lines on this mixer."),
             QStringLiteral("CMixer:DstLineID[LET]"));
  destination_ = {};
  destination_.line =
      &mixers_[static_cast<std::size_t>(mixer_)].destinations[static_cast<std::size_t>(index)];
  destination_.index = index;
  source_ = {};
  if (!destination_.line->sources.empty()) SetSrcLineID(0);
}

void CMixer::SetSrcLineID(int index) {
  CheckIndex(
      index, DestinationLine().sources.size(),
      QStringLiteral("There are only %1 source lines associated with the current destination line ( ") +
          DstLineName() + QStringLiteral(" )"),
      QStringLiteral("CMixer:SrcLineID[LET]"));
  source_ = {};
  source_.line = &destination_.line->sources[static_cast<std::size_t>(index)];
  source_.index = index;
}

void CMixer::SetDstControlID(int index) {
  SelectControl(destination_, index, QStringLiteral("CMixer:DstcontrolID[LET]"));
}
void CMixer::SetSrcControlID(int index) {
  SelectControl(source_, index, QStringLiteral("CMixer:SrccontrolID[LET]"));
}
void CMixer::SetDstChannelID(int index) {
  SelectChannel(destination_, index, QStringLiteral("CMixer:DstChannelID[LET]"));
}
void CMixer::SetSrcChannelID(int index) {
  SelectChannel(source_, index, QStringLiteral("CMixer:SrcChannelID[LET]"));
}

int CMixer::numDstLineConnections() const {
  return static_cast<int>(DestinationLine().sources.size());
}
int CMixer::numDstControlChannels() const {
  return static_cast<int>(ControlOf(destination_).channels.size());
}
int CMixer::numSrcControlChannels() const {
  return static_cast<int>(ControlOf(source_).channels.size());
}

const CMixer::Line& CMixer::LineOf(const Cursor& cursor) {
  static const Line none;
  return cursor.line ? *cursor.line : none;
}
const CMixer::Line& CMixer::DestinationLine() const {
  return LineOf(destination_);
}
const CMixer::Line& CMixer::SourceLine() const {
  return LineOf(source_);
}

const CMixer::Control& CMixer::ControlOf(const Cursor& cursor) {
  static const Control none;
  const auto& controls = LineOf(cursor).controls;
  return controls.empty() ? none : controls[static_cast<std::size_t>(cursor.control)];
}

int CMixer::ChannelOf(const Cursor& cursor) {
  const auto& channels = ControlOf(cursor).channels;
  return channels.empty() ? 0 : channels[static_cast<std::size_t>(cursor.channel)];
}

void CMixer::SetChannel(Cursor& cursor, int value) {
  if (!cursor.line || cursor.line->controls.empty()) return;
  Control& control = cursor.line->controls[static_cast<std::size_t>(cursor.control)];
  if (control.channels.empty()) return;
  control.channels[static_cast<std::size_t>(cursor.channel)] = std::clamp(value, control.least, control.most);
}

void CMixer::SelectControl(Cursor& cursor, int index, const QString& source) {
  CheckIndex(index, LineOf(cursor).controls.size(),
             QStringLiteral("There are only %1 controls  on this line."), source);
  cursor.control = index;
  cursor.channel = 0;
}

void CMixer::SelectChannel(Cursor& cursor, int index, const QString& source) {
  CheckIndex(index, ControlOf(cursor).channels.size(),
             QStringLiteral("There are only %1 channels  on this line."), source);
  cursor.channel = index;
}

}  // namespace kelvo
