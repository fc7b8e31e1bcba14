#include "config/Configuration.h"

#include "audio/CMixer.h"
#include "platform/ErrorLog.h"

#include <QFileInfo>

#include <utility>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr auto kLookEvery = 1s;

Prompt Message(const QString& text) {
  Prompt message;
  message.text = text;
  message.icon = PromptIcon::Exclamation;
  return message;
}

Prompt Question(const QString& text, Buttons buttons) {
  Prompt question;
  question.text = text;
  question.buttons = buttons;
  question.icon = PromptIcon::Question;
  return question;
}

}  // namespace

Configuration::Configuration(Services services) : services_(std::move(services)), player_(services_.audio) {
  // The monitor's panel changes it too.
  services_.settings.Listen(setting::PFLDeviceId, this, [this](const QString&) { FollowDevice(); });
}

void Configuration::FollowDevice() {
  const ConfigValues now = ReadConfig(services_.settings);
  const bool untouched =
      values_.PFLDeviceId == stored_.PFLDeviceId && values_.PFLDeviceName == stored_.PFLDeviceName;
  const auto take = [&now](ConfigValues& values) {
    values.PFLDevice = now.PFLDevice;
    values.PFLDeviceName = now.PFLDeviceName;
    values.PFLDeviceId = now.PFLDeviceId;
  };
  take(stored_);
  if (untouched) take(values_);
  Q_EMIT Changed();
}

void Configuration::Begin() {
  stored_ = values_ = ReadConfig(services_.settings);
  resetRows_.clear();
  ReadOutputs(true);
  Look();
  tick_ = services_.loop.Every(kLookEvery, [this] {
    ReadOutputs(false);
    Q_EMIT Changed();
  });
}

void Configuration::End() {
  tick_.Stop();
  play_.Cancel();
  player_.GraphStop();
  values_ = stored_;
  Q_EMIT Changed();
}

void Configuration::Look() {
  ReadOutputs(false);
  look_ = RunLook();
  Q_EMIT Changed();
}

Job<> Configuration::RunLook() {
  const auto missing = [path = WarningLoop()] { return !QFileInfo::exists(path); };
  loopMissing_ = co_await services_.loop.Offload(EventLoop::Lane::Apart, missing);
  Q_EMIT Changed();
}

void Configuration::ReadOutputs(bool tell) {
  outputs_.clear();
  whyNoOutputs_.clear();
  CMixer mixer(services_.audio);
  try {
    mixer.Create();
    for (int device = 0; device < mixer.numMixerDevs(); ++device) {
      mixer.SetMixerID(device);
      outputs_.append(mixer.MixerName());
    }
  } catch (const Failure& failure) {
    whyNoOutputs_ = QStringLiteral("No Audio Mixers Detected!") + QStringLiteral(" src: ") + failure.Source();
    if (tell) services_.prompter.Tell(Message(whyNoOutputs_));
  }
}

void Configuration::Change(const std::function<void(ConfigValues&)>& change) {
  change(values_);
  Q_EMIT Changed();
}

void Configuration::Save() {
  if (!question_.Running()) question_ = RunSave();
}

Job<> Configuration::RunSave() {
  const Prompt question =
      Question(QStringLiteral("Are You Sure You Want To Alter Configuration Settings ?"), Buttons::YesNo);
  const Answer answer = co_await services_.prompter.Ask(question);
  if (answer != Answer::Yes) co_return;
  const bool kept = co_await Keep();
  if (kept) Q_EMIT Saved();
}

Job<bool> Configuration::Keep() {
  if (const QString why = values_.Presets.WhyInvalid(); !why.isEmpty()) {
    const Prompt message = Message(why);
    co_await services_.prompter.Ask(message);
    co_return false;
  }
  ConfigValues values = values_;
  // Where it is now, and what it is called.
  if (const qsizetype output = MonitorOutput(); output >= 0) {
    values.PFLDevice = static_cast<int>(output);
    values.PFLDeviceName = outputs_[output];
    values.PFLDeviceId = services_.audio.OutputId(outputs_[output]);
  }
  WriteConfig(services_.settings, values);
  services_.settings.Set(setting::AudioWarningFilePath, WarningLoop());
  stored_ = values_ = values;
  resetRows_.clear();
  Q_EMIT Changed();
  Q_EMIT Written();
  co_return true;
}

Job<bool> Configuration::MayClose() {
  if (!Dirty()) co_return true;
  const Prompt question = Question(tr("Save Changes ?"), Buttons::YesNoCancel);
  const Answer answer = co_await services_.prompter.Ask(question);
  if (answer == Answer::Yes) {
    const bool kept = co_await Keep();
    co_return kept;
  }
  if (answer != Answer::No) co_return false;
  values_ = stored_;
  Q_EMIT Changed();
  co_return true;
}

void Configuration::Reset(std::vector<std::size_t> rows) {
  if (!rows.empty() && !question_.Running()) question_ = RunReset(std::move(rows));
}

Job<> Configuration::RunReset(std::vector<std::size_t> rows) {
  const Prompt question = Question(
      QStringLiteral("Are You Sure You Wish To Reset Selected Values To Defaults ?"), Buttons::YesNo);
  const Answer answer = co_await services_.prompter.Ask(question);
  if (answer != Answer::Yes) co_return;
  beforeReset_ = values_;
  resetRows_ = std::move(rows);
  for (const std::size_t row : resetRows_) ResetRows()[row].copy(ConfigValues(), values_);
  Q_EMIT Changed();
  Prompt message;
  message.text = QStringLiteral(
      "The Selected Values Have Been Reset\r\nPlease Examine The Reset Values, Then Click Save And Close !");
  message.icon = PromptIcon::Information;
  services_.prompter.Tell(message);
}

void Configuration::UndoReset() {
  for (const std::size_t row : std::exchange(resetRows_, {})) ResetRows()[row].copy(beforeReset_, values_);
  Q_EMIT Changed();
}

const QString& Configuration::MonitorId() const {
  return values_.PFLDeviceId.isEmpty() ? values_.PFLDeviceName : values_.PFLDeviceId;
}

qsizetype Configuration::MonitorOutput() const {
  const QString name = services_.audio.OutputNamed(MonitorId());
  return name.isEmpty() ? -1 : outputs_.indexOf(name);
}

QString Configuration::MonitorName() const {
  const qsizetype output = MonitorOutput();
  return output < 0 ? values_.PFLDeviceName : outputs_[output];
}

bool Configuration::DeviceMissing() const {
  return values_.PFLDeviceName != QString(setting::PFLDeviceName.fallback) && MonitorOutput() < 0;
}

QString Configuration::WhyNotForMonitor(qsizetype output) const {
  return output == 0 ? tr("The programme goes out there") : QString();
}

void Configuration::ChooseOutput(int output) {
  if (output < 0 || output >= outputs_.size() || !WhyNotForMonitor(output).isEmpty()) return;
  Change([this, output](ConfigValues& values) {
    values.PFLDevice = output;
    values.PFLDeviceName = outputs_[output];
    values.PFLDeviceId = services_.audio.OutputId(outputs_[output]);
  });
}

QString Configuration::WarningLoop() const {
  const QString stored = services_.settings.Get(setting::AudioWarningFilePath);
  return stored.isEmpty() ? services_.programFolder + QStringLiteral("/ello.Mp3") : stored;
}

void Configuration::PickWarningLoop() {
  if (!pick_.Running()) pick_ = RunPick();
}

Job<> Configuration::RunPick() {
  try {
    const QString from = QFileInfo(WarningLoop()).path();
    const std::optional<QString> picked = co_await services_.prompter.PickFile(
        QStringLiteral("Change Audio Warning Loop"), from, QStringLiteral("Mp3 Audio (*.mp3)"));
    if (!picked) co_return;
    const double seconds = co_await services_.audio.DurationOf(*picked);
    if (seconds > kLongestLoop) {
      const Prompt message = Message(QStringLiteral("The file ") + QFileInfo(*picked).fileName() +
                                     QStringLiteral(" Duration Is too long for Warning loop\r\n") +
                                     QStringLiteral("Length Can Be No More Than 0.75 Seconds !"));
      co_await services_.prompter.Ask(message);
      co_return;
    }
    services_.settings.Set(setting::AudioWarningFilePath, *picked);
    Look();
  } catch (...) {
    basHandleError(QStringLiteral(" KelvoConfig loop"), tr("The file cannot be the warning loop."));
  }
}

QString Configuration::WhyNoLoop() const {
  if (loopMissing_) return tr("The file isn't there");
  return MonitorThere() || !services_.onAir() ? QString()
                                              : tr("The desk is on air, and the monitor has no device");
}

void Configuration::PlayLoop() {
  if (WhyNoLoop().isEmpty()) play_ = RunPlay(MonitorThere() ? MonitorId() : QString());
}

QString Configuration::WhyNoTest() const {
  if (outputs_.size() < 2) return tr("Only one sound output is there: the monitor needs a second");
  if (!MonitorThere()) return tr("Choose a device that is there");
  return loopMissing_ ? tr("The warning loop's file isn't there") : QString();
}

void Configuration::TestDevice() {
  if (WhyNoTest().isEmpty()) play_ = RunPlay(MonitorId());
}

Job<> Configuration::RunPlay(QString output) {
  try {
    player_.SetOutPutDevice(output);
    const OpenResult opened = co_await player_.SetGraphFile(WarningLoop());
    if (opened.kind == OpenResult::Kind::Failed) throw Failure(opened.error, 0, WarningLoop());
    if (opened.Ok()) player_.GraphPlay();
  } catch (...) {
    basHandleError(QStringLiteral(" KelvoConfig play"), tr("The warning loop cannot be played."));
  }
}

}  // namespace kelvo
