#include "audio/Recorder.h"

#include <QFileInfo>

#include <algorithm>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kLookEvery = 100ms;

/// What has begun is known when it can't be taken back any more: well within this time.
constexpr Nanoseconds kKnownWithin = 1s;

}  // namespace

Recorder::~Recorder() {
  Stop();
}

void Recorder::Start(std::shared_ptr<const Tap> tap, const QString& path, RecordingFile::Kind kind) {
  if (state_ != State::Idle) return;
  tap_ = tap;
  path_ = path;
  titles_.clear();
  noted_.clear();
  low_ = false;
  seen_ = 0;
  stuck_ = 0;
  recording_ = std::make_shared<Recording>(std::move(tap), path, kind);
  if (!loop_.Simulated()) {
    stop_ = yard_.Start([recording = recording_](const std::stop_token& stop) { recording->Run(stop); });
  }
  state_ = State::Recording;
  tick_ = loop_.Every(kLookEvery, [this] { Tick(); });
  Q_EMIT Changed();
}

void Recorder::Stop() {
  if (state_ != State::Recording) return;
  state_ = State::Closing;
  stuck_ = 0;
  SettleTitles();
  stop_.request_stop();
  Work();
  Q_EMIT Changed();
}

void Recorder::Work() {
  if (!loop_.Simulated() || loop_.Hangs(path_) || recording_->Ended()) return;
  recording_->Step();
  if (state_ == State::Closing) recording_->Finish();
}

void Recorder::NoteTitle(const QString& performer, const QString& title,
                         std::function<std::optional<FrameIndex>()> from) {
  if (state_ != State::Recording) return;
  noted_.push_back({{performer, title, 0}, std::move(from), loop_.Elapsed(), tap_->Settled()});
}

double Recorder::Seconds() const {
  return recording_ ? static_cast<double>(recording_->Frames()) / kEngineRate : 0;
}

std::optional<std::int64_t> Recorder::BytesLeft() const {
  const std::int64_t left = recording_ ? recording_->BytesLeft() : -1;
  return left < 0 ? std::nullopt : std::optional(left);
}

Nanoseconds Recorder::StuckFor() const {
  return state_ == State::Idle ? Nanoseconds(0) : stuck_ * kLookEvery;
}

double Recorder::SecondsLost() const {
  return recording_ ? static_cast<double>(recording_->Lost()) / kEngineRate : 0;
}

void Recorder::SettleTitles() {
  const FrameIndex first = recording_->First();
  if (first < 0) return;
  const std::size_t before = titles_.size();
  std::erase_if(noted_, [&](const Title& each) {
    std::optional<FrameIndex> frame = each.from ? each.from() : each.now;
    const bool late = state_ != State::Recording || loop_.Elapsed() - each.notedAt > kKnownWithin;
    if (!frame && !late) return false;
    titles_.push_back(each.title);
    titles_.back().frame = std::max<FrameIndex>(frame.value_or(each.now) - first, 0);
    return true;
  });
  if (titles_.size() == before) return;
  std::stable_sort(titles_.begin(), titles_.end(),
                   [](const CueTitle& a, const CueTitle& b) { return a.frame < b.frame; });
  recording_->SetCueSheet(CueSheetText(QFileInfo(path_).fileName(), titles_));
}

void Recorder::Tick() {
  if (state_ == State::Recording) SettleTitles();
  Work();
  if (recording_->Ended()) {
    End(recording_->Error());
    return;
  }
  // Looks are counted, for a machine that stood still says nothing of its disk.
  stuck_ = std::exchange(seen_, recording_->Frames()) == seen_ ? stuck_ + 1 : 0;
  if (StuckFor() >= kNoAnswer && (state_ == State::Closing || recording_->First() < 0)) {
    stop_.request_stop();
    End(tr("The disk of %1 does not answer.").arg(path_));
    return;
  }
  if (std::exchange(low_, SpaceIsLow()) != low_) Q_EMIT Changed();
}

void Recorder::End(const QString& error) {
  tick_.Stop();
  state_ = State::Idle;
  Q_EMIT Changed();
  Q_EMIT Ended(error);
}

}  // namespace kelvo
