#include "datamanager/LibraryChanges.h"

#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QSet>

#include <algorithm>

namespace kelvo {
namespace {

const QString kUndoTag = QStringLiteral(" undo");
/// So many steps are done off the thread in one go: each may be a flush of the disk, and the operator who
/// stops waits for all of them.
constexpr std::size_t kStepsAtOnce = 8;

}  // namespace

/// A change while it runs.
struct LibraryChanges::Run {
  explicit Run(QString failureTag) : tag(std::move(failureTag)) {}

  QString tag;
  bool alsoWithoutFile = false;
  /// Also the worker's, while this waits for it.
  std::shared_ptr<LibraryChange> change = std::make_shared<LibraryChange>();
  std::vector<Phase> phases;  ///< their steps are in `change`
  std::vector<std::size_t> counts;
  std::vector<bool> done;      ///< of each step: on disk
  std::vector<bool> followed;  ///< the catalogue knows of it
  std::shared_ptr<ChangeJournal> journal;
  QHash<QString, QList<std::size_t>> places;  ///< of the tracks of a name, in `tracks`
  std::unique_ptr<KeptTracks> tracks;
};

LibraryChanges::LibraryChanges(Services services) : services_(std::move(services)) {
  reading_ = ReadLast();
  // The load of the catalogue ends a change that a crash broke off.
  services_.catalogue.Listen(this, [this](const CatalogueReplaced&) { reading_ = ReadLast(); });
}

Job<> LibraryChanges::ReadLast() {
  const auto read = [paths = services_.paths] {
    const std::optional<LibraryChange> last = ChangeJournal::Last(paths);
    return last ? last->what : QString();
  };
  last_ = co_await services_.loop.Offload(EventLoop::Lane::Files, read);
  Q_EMIT Changed();
}

bool LibraryChanges::ShowLook(const QString& words, double share) {
  if (!std::exchange(looking_, true)) stop_ = false;
  Say(words, share);
  return !stop_;
}

void LibraryChanges::EndLook() {
  looking_ = false;
  Q_EMIT Changed();
}

void LibraryChanges::Say(const QString& words, double share) {
  share_ = share;
  const QString text = words + QLatin1Char('(') + Format0(share * 100) + QStringLiteral("%)");
  if (text == words_) return;
  words_ = text;
  Q_EMIT Changed();
}

void LibraryChanges::ShowPart(const QString& words, std::size_t part, std::size_t whole) {
  if (whole > 0) Say(words, static_cast<double>(part) / static_cast<double>(whole));
}

void LibraryChanges::Stop() {
  if (!Shows() || stop_) return;
  stop_ = true;
  Q_EMIT Changed();
}

Job<LibraryChanges::Outcome> LibraryChanges::Do(Order order) {
  Outcome outcome;
  if (running_) {
    outcome.failure = WhyNot();
    co_return outcome;
  }
  running_ = true;
  stop_ = false;
  words_ = order.what;
  share_ = 0;
  Q_EMIT Changed();
  Run run(order.tag);
  run.alsoWithoutFile = order.alsoWithoutFile;
  run.change->what = order.what;
  Turn turn(services_.loop);
  for (Phase& phase : order.phases) {
    run.counts.push_back(phase.steps.size());
    for (ChangeStep& step : phase.steps) {
      run.change->steps.push_back(std::move(step));
      co_await turn.Yield();
    }
    phase.steps.clear();
  }
  run.phases = std::move(order.phases);
  run.done.assign(run.change->steps.size(), false);
  run.followed = run.done;
  try {
    co_await Begin(run);
    co_await DoAll(run, outcome);
    co_await End(run);
  } catch (...) {
    outcome.whole = false;
    outcome.failure = ErrorLog::Describe(std::current_exception());
    basHandleError(run.tag, tr("The library could not be changed."));
  }
  running_ = false;
  Q_EMIT Changed();
  co_return outcome;
}

Job<> LibraryChanges::Begin(Run& run) {
  const auto begin = [paths = services_.paths, change = run.change] {
    auto journal = std::make_shared<ChangeJournal>(paths);
    journal->Write(*change);
    return journal;
  };
  run.journal = co_await services_.loop.Offload(EventLoop::Lane::Files, begin);
  co_await FindTracks(run);
}

Job<> LibraryChanges::FindTracks(Run& run) {
  QSet<QString> names;
  for (const ChangeStep& step : run.change->steps) {
    if (const auto* line = std::get_if<SetInfoLine>(&step)) names.insert(line->name);
  }
  bool changed = true;
  QObject listener;
  services_.catalogue.Listen(
      &listener, [&changed](const TrackRemoved&) { changed = true; },
      [&changed](const CatalogueReplaced&) { changed = true; });
  std::vector<Mref> tracks;
  while (std::exchange(changed, false)) {
    tracks.clear();
    run.places.clear();
    Turn turn(services_.loop);
    for (int row = 1; !names.isEmpty() && row <= services_.catalogue.LastTrack() && !changed; ++row) {
      const QString name = services_.catalogue.TrackNames[ToMref(row)];
      if (names.contains(name)) {
        run.places[name].append(tracks.size());
        tracks.push_back(ToMref(row));
      }
      co_await turn.Yield();
    }
  }
  run.tracks = std::make_unique<KeptTracks>(services_.catalogue, std::move(tracks));
}

std::vector<Mref> LibraryChanges::TracksOf(const Run& run, std::size_t place) {
  std::vector<Mref> tracks;
  const auto* const line = std::get_if<SetInfoLine>(&run.change->steps[place]);
  if (line == nullptr) return tracks;
  for (const std::size_t each : run.places.value(line->name)) tracks.push_back((*run.tracks)[each]);
  return tracks;
}

Job<LibraryChanges::Outcomes> LibraryChanges::DoSome(Run& run, std::size_t from, std::size_t to, bool back) {
  const auto work = [paths = services_.paths, change = run.change, done = run.done, trash = services_.trash,
                     from, to, back] {
    Outcomes outcomes(to - from);
    for (std::size_t count = 0; count < to - from; ++count) {
      const std::size_t place = back ? to - 1 - count : from + count;
      if (done[place] != back) continue;
      StepOutcome& outcome = outcomes[place - from];
      try {
        outcome.result = DoStep(paths, change->steps[place], back, *trash);
      } catch (...) {
        outcome.failure = std::current_exception();
      }
    }
    return outcomes;
  };
  co_return co_await services_.loop.Offload(EventLoop::Lane::Files, work);
}

Job<> LibraryChanges::DoAll(Run& run, Outcome& outcome) {
  std::size_t from = 0;
  for (std::size_t number = 0; number < run.phases.size(); ++number) {
    const Phase& phase = run.phases[number];
    const std::size_t begin = from;
    const std::size_t end = begin + run.counts[number];
    while (from < end) {
      if (stop_) {
        const int left = co_await TakeBack(run, from);
        outcome.stopped = true;
        outcome.done = left;
        co_return;
      }
      const std::size_t to = phase.needed ? from + 1 : std::min(from + kStepsAtOnce, end);
      const Outcomes some = co_await DoSome(run, from, to, false);
      Turn turn(services_.loop);
      for (std::size_t place = from; place < to; ++place) {
        const StepOutcome& each = some[place - from];
        const auto* line = std::get_if<SetInfoLine>(&run.change->steps[place]);
        run.done[place] = !each.failure && each.result == StepResult::Done;
        if (each.failure) {
          if (!phase.needed) basHandleError(run.tag, each.failure, run.change->what);
        } else if (each.result == StepResult::Missing && line != nullptr) {
          outcome.withoutFile.append(line->name);
        }
        const bool counts = run.done[place] || (line != nullptr && !each.failure &&
                                                (each.result == StepResult::Already || run.alsoWithoutFile));
        run.followed[place] = counts;
        if (counts) co_await Follow(run.change->steps[place], TracksOf(run, place), false);
        if (run.done[place]) ++outcome.done;
        co_await turn.Yield();
      }
      if (phase.needed && !run.done[from]) {
        if (some.front().failure) {
          outcome.failure = ErrorLog::Describe(some.front().failure);
          NoteInLog(ErrorLog::Compose(some.front().failure, run.tag));
        }
        co_return;
      }
      from = to;
      ShowPart(phase.words, from - begin, end - begin);
    }
  }
  outcome.whole = true;
}

Job<int> LibraryChanges::TakeBack(Run& run, std::size_t end) {
  if (run.change->way == LibraryChange::Way::On) run.change->way = LibraryChange::Way::Back;
  const auto mark = [journal = run.journal, change = run.change] { journal->Write(*change); };
  co_await services_.loop.Offload(EventLoop::Lane::Files, mark);
  int failed = 0;
  const bool undo = run.change->way == LibraryChange::Way::Undo;
  for (std::size_t to = end; to > 0 && !(undo && stop_);) {
    const std::size_t from = to > kStepsAtOnce ? to - kStepsAtOnce : 0;
    const Outcomes some = co_await DoSome(run, from, to, true);
    Turn turn(services_.loop);
    for (std::size_t place = to; place-- > from;) {
      const StepOutcome& each = some[place - from];
      const bool back = each.result == StepResult::Done || each.result == StepResult::Already;
      const bool follows = run.followed[place] && (back || !run.done[place]);
      if (run.done[place] && !back) ++failed;
      // What is not as it was left stays so; what failed may be tried again.
      run.done[place] = run.done[place] && each.failure;
      if (each.failure) basHandleError(run.tag, each.failure, run.change->what);
      if (follows) co_await Follow(run.change->steps[place], TracksOf(run, place), true);
      co_await turn.Yield();
    }
    to = from;
    ShowPart(tr("Taking Back "), end - to, end);
  }
  co_return failed;
}

/// What was done, or could not be taken back yet, can be undone from now on.
Job<> LibraryChanges::End(Run& run) {
  const auto end = [journal = run.journal, change = run.change, done = run.done] {
    std::vector<ChangeStep> steps;
    for (std::size_t place = 0; place < done.size(); ++place) {
      if (done[place]) steps.push_back(std::move(change->steps[place]));
    }
    change->steps = std::move(steps);
    const LibraryChange::Way way = std::exchange(change->way, LibraryChange::Way::On);
    const bool any = !change->steps.empty();
    if (any) {
      journal->EndWith(*change);
    } else if (way == LibraryChange::Way::Undo) {
      journal->EndUndone();
    } else {
      journal->End();
    }
    // To free the steps of many tracks takes its time.
    change->steps = {};
    return any;
  };
  const bool undo = run.change->way == LibraryChange::Way::Undo;
  const bool any = co_await services_.loop.Offload(EventLoop::Lane::Files, end);
  if (undo) last_.clear();
  if (any) last_ = run.change->what;
}

void LibraryChanges::Undo() {
  if (!running_ && !last_.isEmpty() && !undoing_.Running()) undoing_ = RunUndo();
}

Job<> LibraryChanges::RunUndo() {
  Prompt question;
  question.text = tr("Undo ?") + QStringLiteral("\r\n") + last_;
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Question;
  const Answer answer = co_await services_.prompter.Ask(question);
  if (answer != Answer::Yes || running_) co_return;
  running_ = true;
  stop_ = false;
  words_ = tr("Taking Back ");
  share_ = 0;
  Q_EMIT Changed();
  try {
    Run run(kUndoTag);
    const auto read = [paths = services_.paths] { return ChangeJournal::Last(paths); };
    std::optional<LibraryChange> last = co_await services_.loop.Offload(EventLoop::Lane::Files, read);
    if (!last) throw Failure(tr("What is known of it can't be read."));
    *run.change = std::move(*last);
    run.change->way = LibraryChange::Way::Undo;
    run.done.assign(run.change->steps.size(), true);
    run.followed = run.done;
    co_await Begin(run);
    const std::size_t steps = run.done.size();
    const int left = co_await TakeBack(run, steps);
    co_await End(run);
    if (stop_ || left > 0) {
      Prompt message;
      message.text =
          stop_ ? tr("Stopped: The Rest Can Be Undone Later")
                : tr("%n Part(s) Could Not Be Taken Back: They Are Not As They Were Left", nullptr, left);
      message.icon = PromptIcon::Exclamation;
      services_.prompter.Tell(message);
    }
  } catch (...) {
    basHandleError(kUndoTag, tr("The last change could not be undone."));
  }
  running_ = false;
  Q_EMIT Changed();
}

}  // namespace kelvo
