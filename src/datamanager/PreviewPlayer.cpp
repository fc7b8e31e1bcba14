#include "datamanager/PreviewPlayer.h"

#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QFileInfo>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kPlayTimer = 250ms;

}  // namespace

PreviewPlayer::PreviewPlayer(EventLoop& loop, AudioSystem& audio, std::shared_ptr<ManagerDesk> desk)
    : loop_(loop), desk_(std::move(desk)), graph_(audio) {
  desk_->OnDevice = [this](bool taken) {
    if (taken && (Playing() || play_.Running())) Stop();
    ApplyLevels();
    Q_EMIT Changed();
  };
}

PreviewPlayer::~PreviewPlayer() {
  desk_->OnDevice = nullptr;
}

void PreviewPlayer::Play(const QString& path) {
  if (path.isEmpty() || !WhyNot().isEmpty()) return;
  play_ = RunPlay(path);
}

Job<> PreviewPlayer::RunPlay(QString path) {
  const QString name = BaseName(QFileInfo(path).fileName());
  try {
    desk_->TakeDevice();
    graph_.GraphStop();
    graph_.SetOutPutDevice(desk_->Output());
    ApplyLevels();
    const OpenResult result = co_await graph_.SetGraphFile(path);
    if (!result.Ok()) {
      NoteInLog(QStringLiteral("The Data Manager cannot play %1: %2").arg(path, result.error));
      Say(tr("%1 can't be played").arg(name));
      co_return;
    }
    graph_.GraphPlay();
    playTimer_ = loop_.Every(kPlayTimer, [this] { Tick(); });
    Say(name);
  } catch (...) {
    Stop();
    basHandleError(QStringLiteral(" dman play"), tr("%1 could not be played.").arg(name));
  }
}

void PreviewPlayer::Stop() {
  play_.Cancel();
  playTimer_.Stop();
  graph_.GraphStop();
  Say(QStringLiteral("Stopped"));
}

void PreviewPlayer::Seek(double seconds) {
  if (File().isEmpty()) return;
  graph_.SetGraphPosition(seconds);
  Q_EMIT Changed();
}

void PreviewPlayer::ApplyLevels() {
  graph_.SetGraphVolume(desk_->Volume());
  graph_.SetGraphBalance(desk_->Balance());
}

void PreviewPlayer::Tick() {
  if (Playing()) {
    Q_EMIT Changed();
  } else {
    Stop();
  }
}

void PreviewPlayer::Say(const QString& words) {
  words_ = words;
  Q_EMIT Changed();
}

}  // namespace kelvo
