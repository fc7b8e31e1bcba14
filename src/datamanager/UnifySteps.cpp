#include "audio/FileLoudness.h"
#include "datamanager/UnifyItem.h"
#include "datamanager/VolumeUnify.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QScopeGuard>

#include <atomic>
#include <cerrno>
#include <cmath>

// What the volume unify does with one file.

namespace kelvo {

using namespace std::chrono_literals;

namespace {

const QString kTag = QStringLiteral(" rGain");
const QString kAnalysisTag = QStringLiteral(" RadSf");
/// The loudness that 89 dB stand for, in LUFS.
constexpr double kUnityLoudness = -18;
/// Nothing is quieter than that, and a silent file has no loudness.
constexpr double kSilentLoudness = -70;
constexpr double kFullScale = 32767;
constexpr Nanoseconds kPercentBeat = 200ms;

/// Does `work` off the thread, and goes on when it is done or the operator stops it, which calls `onStop`.
/// Returns whether it was done. `work` owns all that it touches, and does not throw.
Job<bool> RunApart(EventLoop& loop, QString path, GainStop& stop, std::function<void()> work,
                   std::function<void()> onStop) {
  if (stop.Stopped()) co_return false;
  const auto ends = std::make_shared<OneShot<bool>>();
  stop.Arm([ends, onStop = std::move(onStop)] {
    onStop();
    ends->Set(false);
  });
  const auto disarm = qScopeGuard([&stop] { stop.Disarm(); });
  loop.RunLook(path, std::move(work), [ends] { ends->Set(true); });
  co_return co_await ends->Wait();
}

bool IsFullDisk(const Failure& failure) {
  return failure.Number() == ENOSPC || failure.Number() == EDQUOT;
}

}  // namespace

bool VolumeUnify::InUse(const QString& path) const {
  return services_.inUse && services_.inUse(path);
}

void VolumeUnify::GiveUp(const QString& why) {
  if (cancel_) return;
  Cancel();
  endWords_ = QString(why).replace(QStringLiteral("\r\n"), QStringLiteral(" "));
  Prompt message;
  message.text = why;
  message.icon = PromptIcon::Exclamation;
  services_.prompter.Tell(message);
}

void VolumeUnify::ToolMissing() {
  GiveUp(tr("The program mp3gain, which measures the volume, is not there.\r\nPlease install it !"));
}

void VolumeUnify::CannotOpen(Item& item) {
  Say(QStringLiteral("Cannot Open File ") + item.path);
  SetState(item, UnifyState::Failed, tr("Cannot be opened"));
}

void VolumeUnify::Remember(const Item& item) {
  const QByteArray line = measured_->Add(item.path, item.mark, records_.value(item.path));
  if (services_.measuredFile.isEmpty()) return;
  services_.loop.RunOffThread(
      EventLoop::Lane::Files, [file = services_.measuredFile, line] { MeasuredGains::Append(file, line); },
      [] {});
}

Job<> VolumeUnify::KeepShown(ItemPtr item) {
  if (item->gone) co_return;
  std::optional<Gain> shown = records_.value(item->path).Shown();
  if (!shown) co_return;
  // What can't be changed needs no change, and is not asked about again.
  if (!item->mp3) shown->change = 0;
  co_await services_.files->Keep(item->path, *shown);
}

Job<> VolumeUnify::ReadItem(ItemPtr item) {
  SetState(*item, UnifyState::Reading, tr("Reading"));
  const auto look = [path = item->path] {
    ClearReadOnly(path);
    return MarkOf(path);
  };
  const std::optional<FileMark> mark = co_await services_.disks.Look(item->path, look);
  item->mark = mark.value_or(FileMark());
  if (item->gone || cancel_) co_return;
  std::optional<Mp3Info> record = measured_->Find(item->path, item->mark);
  if (!record && item->mp3) {
    const GainTool::Tags tags = co_await services_.tool.ReadTags(item->path, item->stop);
    if (tags.end == GainTool::End::NotStarted) ToolMissing();
    if (item->gone || cancel_) co_return;
    record = tags.record;
  }
  Mp3Info& kept = records_[item->path];
  // A new answer takes the place of an old one; none leaves what is known.
  if (record) kept = *record;
  kept.ModifydBGain = item->mp3 ? GainAdjust() : 0;
  ShowRecord(item->path);
  SetState(*item, UnifyState::Listed);
}

Job<> VolumeUnify::SaveItem(ItemPtr item) {
  if (item->mark.size < 0) {
    CannotOpen(*item);
    co_return;
  }
  if (!records_.value(item->path).RadiodBGain) {
    const bool measured = co_await MeasureItem(item);
    if (!measured) co_return;
  }
  const int steps = records_.value(item->path).RadioMp3Gain();
  if (!item->mp3 || measureOnly_ || steps == 0 || cancel_) {
    co_await KeepShown(item);
    SetState(*item, item->mp3 ? UnifyState::Measured : UnifyState::CantChange,
             !item->mp3   ? tr("Measured; can't be changed")
             : steps == 0 ? tr("Right already")
                          : tr("Measured"));
    co_return;
  }
  co_await ApplyTo(item, steps);
}

Job<bool> VolumeUnify::MeasureItem(ItemPtr item) {
  Say(QStringLiteral("Please Wait ....Processing ") + item->Name());
  SetState(*item, UnifyState::Analysing, tr("Analysing"));
  bool measured = false;
  try {
    if (item->mp3) {
      measured = co_await AnalyseMp3(item);
    } else {
      measured = co_await AnalyseWave(item);
    }
  } catch (...) {
    AnalysisFailed(*item, {});
    basHandleError(kAnalysisTag, tr("%1 could not be analysed.").arg(item->Name()));
  }
  if (!measured || item->gone) co_return false;
  records_[item->path].ModifydBGain = item->mp3 ? GainAdjust() : 0;
  ShowRecord(item->path);
  Remember(*item);
  co_return true;
}

void VolumeUnify::AnalysisFailed(Item& item, const QString& told) {
  Say(QStringLiteral("Error While Analyzing: ") + (told.isEmpty() ? item.Name() : told));
  SetState(item, UnifyState::Failed, tr("Error while analysing"));
}

Job<bool> VolumeUnify::AnalyseMp3(ItemPtr item) {
  const auto onPercent = [this, item](int percent) {
    item->percent = percent;
    SetState(*item, UnifyState::Analysing, tr("Analysing %1 %").arg(percent));
    Q_EMIT Changed();
  };
  const GainTool::Analysis analysis =
      co_await services_.tool.Analyse(item->path, item->Name(), item->stop, onPercent);
  if (analysis.end == GainTool::End::NotStarted) ToolMissing();
  if (cancel_ || analysis.end == GainTool::End::Stopped || item->gone) {
    // A figure that came with the stop counts.
    if (!analysis.answer.record || item->gone) co_return false;
  }
  if (!analysis.answer.record) {
    AnalysisFailed(*item, analysis.answer.told);
    co_return false;
  }
  records_[item->path] = *analysis.answer.record;
  co_return true;
}

Job<bool> VolumeUnify::AnalyseWave(ItemPtr item) {
  struct Shared {
    OpeningPtr opening = std::make_shared<Opening>();
    std::atomic<int> percent{0};
    FileLoudness loudness = {};
    std::exception_ptr failure = {};
  };
  const auto shared = std::make_shared<Shared>();
  const auto work = [shared, path = item->path] {
    try {
      shared->loudness =
          ReadLoudness(path, shared->opening, [&shared](int percent) { shared->percent = percent; });
    } catch (...) {
      shared->failure = std::current_exception();
    }
  };
  const auto onStop = [shared] { shared->opening->cancelled = true; };
  const Timer beat = services_.loop.Every(kPercentBeat, [this, item, shared] {
    item->percent = shared->percent;
    SetState(*item, UnifyState::Analysing, tr("Analysing %1 %").arg(shared->percent));
    Q_EMIT Changed();
  });
  const bool done = co_await RunApart(services_.loop, item->path, item->stop, work, onStop);
  if (!done || item->gone) co_return false;
  if (shared->failure) std::rethrow_exception(shared->failure);
  Mp3Info record;
  record.RadiodBGain = kUnityLoudness - std::max(shared->loudness.integrated, kSilentLoudness);
  record.RawRadiodBGain = record.RadiodBGain;
  record.CurrMaxAmp = shared->loudness.peak * kFullScale;
  records_[item->path] = record;
  co_return true;
}

Job<> VolumeUnify::ApplyTo(ItemPtr item, int steps) {
  SetState(*item, UnifyState::Saving, tr("Saving"));
  const auto wait = [this, &item] {
    SetState(*item, UnifyState::Waiting, tr("Waits: it is in a deck or in the monitor"));
    waiting_.push_back(item);
  };
  if (InUse(item->path)) {
    co_await KeepShown(item);
    wait();
    co_return;
  }
  const QString copy = co_await MakeCopy(item);
  if (copy.isEmpty()) {
    co_await KeepShown(item);
    co_return;
  }
  const GainTool::Applied applied = co_await services_.tool.Apply(copy, steps, item->stop);
  const bool stopped = applied.end == GainTool::End::Stopped || item->gone;
  if (stopped || applied.words == ApplyWords::CannotOpen) {
    co_await KeepShown(item);
    if (!stopped) CannotOpen(*item);
    co_return;
  }
  if (applied.words == ApplyWords::NoDiscSpace) {
    GiveUp(QStringLiteral("Cannot Continue..No Disc Space Left"));
    co_return;
  }
  if (applied.end == GainTool::End::NotStarted) {
    ToolMissing();
    co_return;
  }
  if (applied.end != GainTool::End::Done || applied.failed) {
    NoteInLog(QStringLiteral("The gain tool failed with %1: %2").arg(item->path, applied.said));
    SetState(*item, UnifyState::Failed, tr("The tool failed"));
    GiveUp(tr("Cannot Continue..The Volume Tool Failed With\r\n%1").arg(item->Name()));
    co_return;
  }
  // It may have been loaded while the tool was at work.
  if (InUse(item->path)) {
    co_await KeepShown(item);
    wait();
    co_return;
  }
  const bool taken = co_await TakeCopy(item, copy);
  if (!taken) co_return;
  records_[item->path].AlterDb(-steps * Mp3Info::kStep);
  ShowRecord(item->path);
  Remember(*item);
  co_await KeepShown(item);
  const QString change = Format0Point0(steps * Mp3Info::kShownStep);
  SetState(*item, UnifyState::Saved, tr("Changed by %1 dB").arg(change));
}

Job<QString> VolumeUnify::MakeCopy(ItemPtr item) {
  struct Shared {
    CopyControl control;
    QString copy;
    std::exception_ptr failure;
    bool full = false;
    bool copied = false;
  };
  const auto shared = std::make_shared<Shared>();
  const auto work = [shared, path = item->path, size = item->mark.size] {
    try {
      shared->copy = PrepareTreatedCopy(path);
      shared->full = !HasRoomFor(path.section(QLatin1Char('/'), 0, -2), size);
      if (shared->full) return;
      const CopyOrder order{path, shared->copy, true};
      shared->copied = CopyFile(order, shared->control) == CopyResult::Copied;
    } catch (...) {
      shared->failure = std::current_exception();
    }
  };
  const auto onStop = [shared] { shared->control.stop = true; };
  const bool done = co_await RunApart(services_.loop, item->path, item->stop, work, onStop);
  if (!done || item->gone) co_return QString();
  try {
    if (shared->failure) std::rethrow_exception(shared->failure);
  } catch (const Failure& failure) {
    shared->full = IsFullDisk(failure);
    if (!shared->full) {
      NoteInLog(QString::fromUtf8(failure.what()));
      CannotOpen(*item);
    }
  }
  if (shared->full) GiveUp(QStringLiteral("Cannot Continue..No Disc Space Left"));
  co_return shared->copied ? shared->copy : QString();
}

Job<bool> VolumeUnify::TakeCopy(ItemPtr item, QString copy) {
  const auto take = [path = item->path, copy] {
    TakeTreatedCopy(copy, path);
    return MarkOf(path);
  };
  try {
    item->mark = co_await services_.loop.Offload(EventLoop::Lane::Apart, take);
    co_return true;
  } catch (const Failure& failure) {
    NoteInLog(QStringLiteral("%1: %2").arg(item->path, QString::fromUtf8(failure.what())));
    if (failure.Number() != 0) {
      CannotOpen(*item);
      co_return false;
    }
  }
  SetState(*item, UnifyState::Failed, tr("The tool failed"));
  GiveUp(tr("Cannot Continue..The Volume Tool Failed With\r\n%1").arg(item->Name()));
  co_return false;
}

}  // namespace kelvo
