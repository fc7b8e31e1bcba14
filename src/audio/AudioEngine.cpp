#include "audio/AudioEngine.h"

#include "audio/engine/OpenDecoder.h"
#include "platform/ErrorLog.h"

#include <QLoggingCategory>

#include <algorithm>
#include <cmath>

namespace kelvo {

using namespace std::chrono_literals;

Q_LOGGING_CATEGORY(logEngine, "kelvo.audio.engine", QtWarningMsg)

namespace {

/// How long the sound of a player that is gone may take to fade and to leave a device's queue, before it is
/// cut.
constexpr Nanoseconds kFadeAllowance = 1s;

/// A disk that gave nothing for so long is not waited for.
constexpr Nanoseconds kNoAnswer = 10s;
constexpr Nanoseconds kStepsPoll = 250ms;

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
  // First, for it ends every callback: after it nothing renders what is freed here.
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
  auto core = MakeCore(*place);
  PlayerHost& host = *this;
  auto player = std::make_unique<EnginePlayer>(host, std::move(place), std::move(core));
  players_.push_back(player.get());
  return player;
}

std::shared_ptr<PlayerCore> AudioEngine::MakeCore(Output& output) {
  auto core = std::make_shared<PlayerCore>();
  if (!output.Mixer().Add(*core)) {
    throw Failure(QStringLiteral("There are too many players on one sound output."), 0, output.Name());
  }
  if (backend_->Threaded() || backend_->DecodesAhead()) {
    if (!backend_->Threaded()) core->feeder.SetThreaded();
    feeders_.push_back(
        {core.get(), yard_.Start([core](const std::stop_token& stop) { core->feeder.Run(stop); })});
  }
  return core;
}

Job<> AudioEngine::OutputsKnown() {
  const Nanoseconds until = loop_.Elapsed() + kLookAllowance;
  while (!backend_->HasLooked() && loop_.Elapsed() < until) co_await loop_.Sleep(10ms);
}

Job<double> AudioEngine::DurationOf(QString path) {
  struct Look {
    OpeningPtr opening = std::make_shared<Opening>();
    OneShot<bool> ended;
    double seconds = 0;
    std::exception_ptr failure;
  };
  const auto look = std::make_shared<Look>();
  const auto work = [look, path] {
    try {
      const auto decoder = OpenDecoder(path, look->opening);
      look->seconds = static_cast<double>(decoder->Frames()) / decoder->Rate();
    } catch (...) {
      look->failure = std::current_exception();
    }
  };
  loop_.RunLook(path, work, [look] { look->ended.Set(true); });
  std::uint64_t steps = 0;
  Nanoseconds movedAt = loop_.Elapsed();
  const Timer watch = loop_.Every(kStepsPoll, [&] {
    const std::uint64_t now = look->opening->steps.load(std::memory_order_relaxed);
    if (std::exchange(steps, now) != now) movedAt = loop_.Elapsed();
    if (loop_.Elapsed() - movedAt < kNoAnswer) return;
    look->opening->cancelled.store(true, std::memory_order_relaxed);
    look->ended.Set(false);
  });
  const bool answered = co_await look->ended.Wait();
  if (!answered) throw Failure(QStringLiteral("The disk of %1 does not answer.").arg(path), 0, path);
  if (look->failure) std::rethrow_exception(look->failure);
  co_return look->seconds;
}

std::uint64_t AudioEngine::Underruns(const QString& output) const {
  const auto place = FindOutput(output);
  return place ? place->Mixer().Underruns() : 0;
}

std::uint64_t AudioEngine::Dropouts(const QString& output) const {
  const auto place = FindOutput(output);
  return place ? place->Mixer().Dropouts() : 0;
}

std::shared_ptr<const Tap> AudioEngine::TapOf(const QString& output) const {
  const auto place = FindOutput(output);
  return place ? place->Mixer().OpenTap() : nullptr;
}

Nanoseconds AudioEngine::ReserveOf(const QString& output) const {
  const auto place = FindOutput(output);
  return place ? place->Reserve() : 0ns;
}

double AudioEngine::GainReduction(const QString& output) const {
  const auto place = FindOutput(output);
  return place ? -20 * std::log10(place->Mixer().LimiterGain()) : 0;
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

void AudioEngine::Retire(std::shared_ptr<Output> output, std::shared_ptr<PlayerCore> core) {
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
  // Nothing plays there any more, so its device is closed.
  outputs_.erase(std::remove_if(outputs_.begin() + 1, outputs_.end(),
                                [](const auto& output) { return output.use_count() == 1; }),
                 outputs_.end());
}

}  // namespace kelvo
