#include "audio/AudioEngine.h"

#include "audio/engine/Decoder.h"
#include "platform/ErrorLog.h"

#include <QLoggingCategory>

#include <algorithm>

namespace kelvo {

using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(logEngine, "kelvo.audio.engine", QtWarningMsg)

namespace {

/// How long the sound of a player that is gone may take to fade, before it is cut.
constexpr Nanoseconds kFadeAllowance = 200ms;

/// How long the start may wait for a sound server that does not answer.
constexpr Nanoseconds kLookAllowance = 5s;

}  // namespace

AudioEngine::AudioEngine(EventLoop& loop, std::unique_ptr<OutputBackend> backend)
    : loop_(loop), backend_(std::move(backend)) {
  outputs_.push_back(std::make_shared<Output>(loop_, *backend_, QString()));
  defaultStatus_ = outputs_.front()->Status();
  tick_ = loop_.Every(10ms, [this] { Tick(); });
}

AudioEngine::~AudioEngine() {
  tick_.Stop();
  soon_.Stop();
  // First, for it ends every callback: behind it nobody renders what is freed here.
  backend_.reset();
}

std::shared_ptr<Output> AudioEngine::FindOutput(const QString& name) const {
  const auto found =
      std::find_if(outputs_.begin(), outputs_.end(), [&](const auto& each) { return each->Name() == name; });
  return found == outputs_.end() ? nullptr : *found;
}

std::unique_ptr<MediaPlayer> AudioEngine::MakePlayer(const QString& output) {
  auto place = FindOutput(output);
  if (!place) {
    place = std::make_shared<Output>(loop_, *backend_, output);
    outputs_.push_back(place);
  }
  auto core = std::make_shared<PlayerCore>();
  if (!place->Mixer().Add(*core)) {
    throw Failure(QStringLiteral("There are too many players on one sound output."), 0, output);
  }
  if (backend_->Threaded()) {
    feeders_.push_back(
        {core.get(), yard_.Start([core](const std::stop_token& stop) { core->feeder.Run(stop); })});
  }
  auto player = std::make_unique<EnginePlayer>(*this, std::move(place), std::move(core));
  players_.push_back(player.get());
  return player;
}

Job<> AudioEngine::OutputsKnown() {
  const Nanoseconds until = loop_.Elapsed() + kLookAllowance;
  while (!backend_->HasLooked() && loop_.Elapsed() < until) co_await loop_.Sleep(10ms);
}

Job<double> AudioEngine::DurationOf(QString path) {
  const auto work = [path] {
    const auto decoder = OpenDecoder(path);
    return static_cast<double>(decoder->Frames()) / decoder->Rate();
  };
  co_return co_await loop_.Offload(EventLoop::Lane::Media, work);
}

std::uint64_t AudioEngine::Underruns(const QString& output) const {
  const auto place = FindOutput(output);
  return place ? place->Mixer().Underruns() : 0;
}

std::uint64_t AudioEngine::Dropouts(const QString& output) const {
  const auto place = FindOutput(output);
  return place ? place->Mixer().Dropouts() : 0;
}

std::optional<OutputStatus> AudioEngine::StatusOf(const QString& output) const {
  const auto place = FindOutput(output);
  return place ? std::optional(place->Status()) : std::nullopt;
}

void AudioEngine::OpenApart(std::function<void()> work) {
  if (backend_->Threaded()) {
    yard_.Start([work = std::move(work)](const std::stop_token&) { work(); });
  } else {
    work();
    PollSoon();
  }
}

void AudioEngine::PollSoon() {
  soon_ = loop_.After(0ns, [this] { PollPlayers(); });
}

void AudioEngine::Retire(EnginePlayer& player, std::shared_ptr<Output> output,
                         std::shared_ptr<PlayerCore> core) {
  std::erase(players_, &player);
  retired_.push_back({std::move(output), std::move(core), loop_.Elapsed() + kFadeAllowance, std::nullopt});
}

void AudioEngine::Tick() {
  for (const auto& output : outputs_) output->Tick();
  const auto tell = [](const char* what, std::uint64_t now, std::uint64_t& told) {
    if (now != told) qCInfo(logEngine) << what << now;
    told = now;
  };
  tell("underruns:", Underruns(), toldUnderruns_);
  tell("dropouts:", Dropouts(), toldDropouts_);
  FreeRetired();
  yard_.Sweep();
  const OutputStatus status = outputs_.front()->Status();
  // That a silent output has learned its device's name is no news.
  const bool stillSilent =
      status.kind == OutputStatus::Kind::OnSilentClock && defaultStatus_.kind == status.kind;
  const bool changed = status != defaultStatus_ && !stillSilent;
  if (changed) qCInfo(logEngine) << "the default output:" << static_cast<int>(status.kind) << status.device;
  defaultStatus_ = status;
  // Whoever is called below may make and drop players.
  PollPlayers();
  if (changed && OnDefaultOutputChanged) OnDefaultOutputChanged(status);
}

void AudioEngine::PollPlayers() {
  const std::vector<EnginePlayer*> present = players_;
  for (EnginePlayer* const player : present) {
    if (std::find(players_.begin(), players_.end(), player) != players_.end()) player->Poll();
  }
}

void AudioEngine::FreeRetired() {
  const Nanoseconds now = loop_.Elapsed();
  std::erase_if(retired_, [&](Retired& each) {
    OutputMixer& mixer = each.output->Mixer();
    if (!each.mark) {
      if (!each.core->voice.Silent() && now < each.deadline) return false;
      mixer.Remove(*each.core);
      each.mark = mixer.RenderMark();
    }
    if (!mixer.MayFree(*each.mark)) return false;
    const auto feeder = std::find_if(feeders_.begin(), feeders_.end(), [&](const FeederThread& thread) {
      return thread.core == each.core.get();
    });
    if (feeder != feeders_.end()) {
      feeder->stop.request_stop();
      feeders_.erase(feeder);
    }
    return true;
  });
  // Nobody plays there any more, so its device is let go.
  outputs_.erase(std::remove_if(outputs_.begin() + 1, outputs_.end(),
                                [](const auto& output) { return output.use_count() == 1; }),
                 outputs_.end());
}

}  // namespace kelvo
