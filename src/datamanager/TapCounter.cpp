#include "datamanager/TapCounter.h"

#include "audio/SoundLook.h"
#include "database/KeptTracks.h"
#include "database/TrackInfo.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QFileInfo>

#include <atomic>
#include <cmath>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

const QString kTag = QStringLiteral(" tap");
constexpr Nanoseconds kBeat = 100ms;

QString NameOf(const QString& path) {
  return BaseName(QFileInfo(path).fileName());
}

}  // namespace

/// One listening to a file, by the thread that does it and by who waits for it.
struct TapCounter::Listening {
  QString path;
  OpeningPtr opening = std::make_shared<Opening>();
  std::atomic<int> percent{0};
  std::optional<FileTempo> tempo = {};
  QString error = {};
};

TapCounter::TapCounter(Services services)
    : services_(std::move(services)),
      graph_(services_.audio),
      beatTimer_(services_.loop.Every(kBeat, [this] { Tick(); })) {
  FollowCatalogue();
}

TapCounter::~TapCounter() {
  EndListening();
}

void TapCounter::FollowCatalogue() {
  services_.catalogue.Listen(
      this,
      [this](const TrackRenamed& renamed) {
        if (renamed.pathBefore != path_) return;
        path_ = renamed.path;
        Q_EMIT Changed();
      },
      [this](const TrackRemoved& removed) {
        if (removed.path != path_) return;
        Stop();
        EndListening();
        heard_.reset();
        heardWords_.clear();
        path_.clear();
        Q_EMIT Changed();
      },
      [this](const TrackChanged& changed) {
        const bool bpm = changed.fields & TrackField::Bpm;
        if (bpm && services_.catalogue.TrackPaths(changed.track) == path_) Q_EMIT Changed();
      });
}

void TapCounter::Take(const QString& path) {
  if (path == path_) return;
  Stop();
  path_ = path;
  heard_.reset();
  heardWords_.clear();
  Listen();
  Q_EMIT Changed();
}

void TapCounter::Leave() {
  Stop();
  armed_ = false;
  Q_EMIT Changed();
}

// The player.

QString TapCounter::WhyNoPlay() const {
  if (path_.isEmpty()) return tr("No track is selected");
  return services_.device.whyNot();
}

void TapCounter::Play() {
  if (WhyNoPlay().isEmpty()) play_ = RunPlay();
}

Job<> TapCounter::RunPlay() {
  const QString path = path_;
  const QString output = services_.device.output();
  if (opened_ != path || graph_.OutPutDevice() != output) {
    graph_.SetOutPutDevice(output);
    const OpenResult opened = co_await graph_.SetGraphFile(path);
    if (opened.kind == OpenResult::Kind::Failed) {
      const Failure why(WithoutPath(opened.error, path), 0, path);
      basHandleError(kTag, std::make_exception_ptr(why), tr("%1 cannot be played.").arg(NameOf(path)));
    }
    if (!opened.Ok()) co_return;
    opened_ = path;
  }
  if (!WhyNoPlay().isEmpty()) co_return;
  if (graph_.GraphPosition() >= graph_.GraphDuration()) graph_.SetGraphPosition(0);
  graph_.GraphPlay();
  Q_EMIT Changed();
}

void TapCounter::Stop() {
  play_.Cancel();
  graph_.GraphPause();
  Q_EMIT Changed();
}

void TapCounter::Tick() {
  // The desk went on air on the only device, or the monitor was opened on this one.
  if (Playing() && !services_.device.whyNot().isEmpty()) Stop();
  lamp_ = !path_.isEmpty() && opened_ == path_ && flash_.On(Position());
  if (listening_) Q_EMIT Changed();
  Q_EMIT Beat();
}

// The count.

QString TapCounter::Caption() const {
  return armed_ ? QStringLiteral("See Result") : QStringLiteral("Count Bpm");
}

void TapCounter::CountOrEnd() {
  if (!Playing()) {
    Tell(QStringLiteral("Please Start The Track First !!"));
    return;
  }
  if (armed_) return EndCount();
  armed_ = true;
  beats_.Clear();
  ShowText(QStringLiteral("Waiting !"));
}

void TapCounter::Tap() {
  if (armed_) beats_.Tap(Position());
  ShowText(QStringLiteral("Beat= ") + QString::number(beats_.Count()));
}

void TapCounter::EndCount() {
  armed_ = false;
  const std::optional<int> result = beats_.Result();
  if (!result) {
    Tell(QStringLiteral("More Beat Information Required\r\nPlease Tap the Space Bar More Times!"));
    Q_EMIT Changed();
    return;
  }
  flash_.Begin(beats_.First(), beats_.FlashPeriod());
  ShowText(QString::number(*result));
}

void TapCounter::HideInstructions(bool hide) {
  hideInstructions_ = hide;
  Q_EMIT Changed();
}

void TapCounter::ShowText(const QString& text) {
  text_ = text;
  Q_EMIT Changed();
}

void TapCounter::SetText(const QString& text) {
  if (text != text_) ShowText(text);
}

QString TapCounter::WhyNoScale() const {
  if (armed_) return tr("The taps are being counted");
  const std::optional<double> number = NumberIn(text_.trimmed().toStdString());
  return number && *number > 0 ? QString() : tr("There is no number in the box");
}

void TapCounter::Scale(double factor) {
  if (!WhyNoScale().isEmpty()) return;
  ShowText(NumberText(*NumberIn(text_.trimmed().toStdString()) * factor));
}

void TapCounter::Use(double bpm) {
  if (!armed_) ShowText(NumberText(std::round(bpm)));
}

// Saving.

bool TapCounter::IsSoundBite(const QString& path) const {
  return path.startsWith(services_.paths(Paths::Jingles) + QLatin1Char('/'));
}

void TapCounter::Tell(const QString& text) {
  Prompt message;
  message.text = text;
  message.icon = PromptIcon::Exclamation;
  services_.prompter.Tell(message);
}

QString TapCounter::WhyNoSave() const {
  const std::string typed = text_.trimmed().toStdString();
  return NumberIn(typed) && typed != "0" ? QString() : tr("There is no number in the box");
}

void TapCounter::SaveTo(const QString& path) {
  if (save_.Running() || !WhyNoSave().isEmpty()) return;
  if (IsSoundBite(path)) return Tell(QStringLiteral("Cant Apply A Bpm Value To A Sound Bite !"));
  if (path.isEmpty()) return Tell(QStringLiteral("Please Select A Track To Save to !"));
  save_ = RunSave(path, *NumberIn(text_.trimmed().toStdString()));
}

Job<> TapCounter::RunSave(QString path, double bpm) {
  const QString number = NumberText(bpm);
  const KeptTracks kept(services_.catalogue, {services_.catalogue.Find(path)});
  Prompt question;
  question.text = QStringLiteral("Save Bpm Value ") + number + QStringLiteral(" To Track ") + NameOf(path) +
                  QStringLiteral(" ?");
  question.buttons = Buttons::OkCancel;
  question.icon = PromptIcon::Question;
  const Answer answer = co_await services_.prompter.Ask(std::move(question));
  // Removed while it was asked.
  if (answer != Answer::Ok || kept[0] == Mref::None) co_return;
  const QString name = services_.catalogue.TrackNames[kept[0]];
  const auto write = [file = TrackInfoPath(services_.paths, name), number] {
    std::optional<TrackInfo> info = ReadTrackInfo(file);
    if (!info) return;
    info->SetText(InfoLine::Bpm, number);
    WriteTrackInfo(file, *info);
  };
  try {
    co_await services_.loop.Offload(EventLoop::Lane::Files, write);
    TrackEdit edit;
    edit.bpm = number;
    services_.catalogue.Change(kept[0], edit);
  } catch (...) {
    basHandleError(kTag, tr("The Bpm of %1 could not be saved.").arg(name));
  }
}

// Listening.

void TapCounter::Listen() {
  EndListening();
  if (path_.isEmpty()) return;
  listening_ = std::make_shared<Listening>();
  listening_->path = path_;
  const auto work = [mine = listening_] {
    try {
      mine->tempo = ReadTempo(mine->path, mine->opening, [&mine](int percent) { mine->percent = percent; });
    } catch (const std::exception& failure) {
      mine->error = WithoutPath(QString::fromUtf8(failure.what()), mine->path);
    }
  };
  // One that was cancelled belongs to nobody any more: the object may be gone.
  const auto done = [this, mine = listening_] {
    if (mine->opening->cancelled) return;
    listening_.reset();
    heard_ = mine->tempo;
    heardWords_ = mine->error.isEmpty() ? tr("No steady beat is heard") : mine->error;
    Q_EMIT Changed();
  };
  services_.loop.RunLook(path_, work, done);
}

void TapCounter::EndListening() {
  if (listening_) listening_->opening->cancelled = true;
  listening_.reset();
}

QString TapCounter::HeardWords() const {
  if (listening_) return tr("Listening to the file... %1 %").arg(listening_->percent);
  if (!heard_) return heardWords_;
  const QString figure = QString::number(heard_->bpm, 'f', 1);
  return heard_->sure ? figure : tr("%1, not sure").arg(figure);
}

}  // namespace kelvo
