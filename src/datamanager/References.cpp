#include "datamanager/References.h"

#include "database/FileRun.h"
#include "database/FolderListing.h"
#include "database/KeptTracks.h"
#include "database/ReferenceLine.h"
#include "database/TrackNames.h"
#include "datamanager/ReferenceEdits.h"
#include "platform/ErrorLog.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>
#include <QSet>

#include <array>

namespace kelvo {
namespace {

const QString kTag = QStringLiteral(" dbfed");
const QString kLineBreak = QStringLiteral("\r\n");
const QString kRenaming = QStringLiteral("Renaming Track Entries ");
const QString kDeleting = QStringLiteral("Deleting Track Entries ");
constexpr qsizetype kMostNameBytes = 255;

/// What may lie beside a name's folder: its text and its picture.
const QStringList kProfileEndings{QStringLiteral(".txt"), QStringLiteral(".bmp"), QStringLiteral(".jpg"),
                                  QStringLiteral(".gif"), QStringLiteral(".png"), QStringLiteral(".webp"),
                                  QStringLiteral(".jpeg")};

/// Only these very words: a name that differs in case is refused by its folder.
bool IsReserved(const QString& name) {
  return name == kAllCategories || name == kAllArtists || name == kAllAlbums;
}

/// The folder of that name, in any case; empty when there is none.
QString FindFolder(const QString& root, const QString& name) {
  const QString upper = name.toUpper();
  for (const QString& each : ListFolder(root, EntryKind::Folders).names) {
    if (each.toUpper() == upper) return root + QLatin1Char('/') + each;
  }
  return {};
}

LibraryChanges::Phase Lines(const QString& words, std::vector<ChangeStep> steps) {
  return {.words = words, .steps = std::move(steps)};
}

}  // namespace

QString References::SetWord(ReferenceSet set) {
  switch (set) {
    case ReferenceSet::Genres:
      return QStringLiteral("CATEGORIES");
    case ReferenceSet::Artists:
      return QStringLiteral("ARTISTS");
    case ReferenceSet::Albums:
      return QStringLiteral("ALBUMS");
    case ReferenceSet::Playlists:
      break;
  }
  return QStringLiteral("PLAYLISTS");
}

QString References::Folder(ReferenceSet set, const QString& name) const {
  constexpr std::array kSlots{Paths::Categories, Paths::Artists, Paths::Albums, Paths::Playlists};
  const QString root = services_.paths(kSlots[static_cast<std::size_t>(set)]);
  return name.isEmpty() ? root : root + QLatin1Char('/') + name;
}

const PooledTextColumn* References::LinesOf(ReferenceSet set) const {
  const Catalogue& tracks = services_.catalogue;
  const std::array<const PooledTextColumn*, 4> lines{&tracks.TrackGenres, &tracks.TrackArtists,
                                                     &tracks.TrackAlbums, nullptr};
  return lines[static_cast<std::size_t>(set)];
}

QString References::WhyNot(const QString& name) const {
  const QString why = WhyNot();
  return why.isEmpty() && name.isEmpty() ? tr("No name is chosen") : why;
}

QString References::WhyNoTracks(ReferenceSet set, const QString& name,
                                const std::vector<Mref>& tracks) const {
  const QString why = WhyNot(name);
  if (!why.isEmpty()) return why;
  if (LinesOf(set) == nullptr) return tr("Playlists are kept by the Playlist Manager");
  return tracks.empty() ? tr("No track is selected") : QString();
}

void References::Begin(Job<> work) {
  work_ = std::move(work);
  Q_EMIT Changed();
}

/// At the end of a job: later, when it counts as ended.
void References::Done(const QString& notice) {
  notice_ = notice;
  services_.loop.Post([self = QPointer(this)] {
    if (self) Q_EMIT self->Changed();
  });
}

void References::New(ReferenceSet set) {
  if (WhyNot().isEmpty()) Begin(RunNew(set));
}
void References::Rename(ReferenceSet set, const QString& name) {
  if (WhyNot(name).isEmpty()) Begin(RunRename(set, name));
}
void References::Delete(ReferenceSet set, const QString& name) {
  if (WhyNot(name).isEmpty()) Begin(RunDelete(set, name));
}
void References::Merge(ReferenceSet set, const QString& name) {
  if (WhyNot(name).isEmpty()) Begin(RunMerge(set, name));
}
void References::AddTo(ReferenceSet set, const QString& name, const std::vector<Mref>& tracks) {
  if (WhyNoTracks(set, name, tracks).isEmpty()) Begin(RunAdd(set, name, tracks));
}
void References::RemoveFrom(ReferenceSet set, const QString& name, const std::vector<Mref>& tracks) {
  if (WhyNoTracks(set, name, tracks).isEmpty()) Begin(RunRemove(set, name, tracks));
}
void References::RemoveFromAll(ReferenceSet set, const QString& name) {
  if (WhyNot(name).isEmpty() && LinesOf(set) != nullptr) Begin(RunRemoveFromAll(set, name));
}

// Asking and telling.

void References::Tell(const QString& text) {
  Prompt message;
  message.text = text;
  message.icon = PromptIcon::Exclamation;
  services_.prompter.Tell(message);
}

Job<bool> References::Ask(QString text, QString title) {
  Prompt question;
  question.text = text;
  question.title = title;
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Question;
  const Answer answer = co_await services_.prompter.Ask(question);
  co_return answer == Answer::Yes;
}

Job<QString> References::AskName(QString title, QString prompt, QString initial) {
  QString name = initial;
  for (;;) {
    const QString typed = co_await services_.prompter.AskText(title, prompt, name);
    name = typed.trimmed();
    if (name.isEmpty()) co_return QString();
    if (!IsReserved(name)) break;
    Tell(QStringLiteral("Reserved Name !"));
    name.clear();
  }
  if (!CheckName(services_.prompter, name)) co_return QString();
  // Such a folder is hidden, or is none of its own.
  if (name.startsWith(QLatin1Char('.'))) {
    Tell(QStringLiteral("Character ( . ) Not Allowed in Names !"));
    co_return QString();
  }
  if (name.toUtf8().size() > kMostNameBytes) {
    Tell(tr("The Name Is Too Long !"));
    co_return QString();
  }
  co_return name;
}

Job<bool> References::IsTaken(ReferenceSet set, QString name) {
  const auto look = [root = Folder(set), name] { return FindFolder(root, name); };
  const QString found = co_await services_.loop.Offload(EventLoop::Lane::Apart, look);
  if (found.isEmpty()) co_return false;
  Tell(QStringLiteral("Folder ") + found + QStringLiteral(" Already Exists !") + kLineBreak +
       QStringLiteral("Please Choose Another Name !"));
  co_return true;
}

bool References::IsFree(const QString& name, const QString& refusal) {
  if (!IsReserved(name)) return true;
  Tell(refusal);
  return false;
}

bool References::TellOutcome(const LibraryChanges::Outcome& outcome) {
  if (!outcome.withoutFile.isEmpty()) {
    QStringList lines;
    for (const QString& track : outcome.withoutFile) lines.append(track + QStringLiteral(" Not found"));
    Tell(FirstOf(lines).join(kLineBreak));
  }
  if (outcome.stopped) {
    Tell(outcome.done == 0 ? tr("Stopped: Everything Is As It Was")
                           : tr("Stopped: %n Step(s) Could Not Be Taken Back", nullptr, outcome.done));
  } else if (!outcome.whole && !outcome.failure.isEmpty()) {
    Tell(tr("It Could Not Be Done:") + kLineBreak + outcome.failure);
  }
  return outcome.whole;
}

// What is to be done.

void References::AddStep(Plan& plan, ReferenceSet set, const LineEdit& edit, Mref track) {
  const Catalogue& tracks = services_.catalogue;
  const QString& line = (*LinesOf(set))[track];
  const std::optional<QString> fresh = edit(line);
  if (!fresh && IsLineFull(line)) plan.full.append(tracks.TrackNames[track]);
  if (!fresh) return;
  ++plan.tracks;
  SetInfoLine step{tracks.TrackNames[track], InfoLine::Line(static_cast<int>(set)), line, *fresh};
  step.references =
      QStringList{tracks.TrackGenres[track], tracks.TrackArtists[track], tracks.TrackAlbums[track]};
  step.references[static_cast<qsizetype>(set)] = *fresh;
  plan.steps.push_back(std::move(step));
}

Job<References::Plan> References::PlanFor(ReferenceSet set, LineEdit edit,
                                          std::optional<std::vector<Mref>> tracks) {
  Plan plan;
  if (LinesOf(set) == nullptr) co_return plan;
  Turn turn(services_.loop);
  if (!tracks) {
    TrackWalk walk(services_.catalogue);
    while (walk.Next()) {
      AddStep(plan, set, edit, walk.Track());
      co_await turn.Yield();
    }
    co_return plan;
  }
  const KeptTracks kept(services_.catalogue, std::move(*tracks));
  QSet<int> seen;
  for (std::size_t place = 0; place < kept.Count(); ++place) {
    const Mref track = kept[place];
    if (services_.catalogue.IsTrack(track) && !seen.contains(ToInt(track))) AddStep(plan, set, edit, track);
    seen.insert(ToInt(track));
    co_await turn.Yield();
  }
  co_return plan;
}

Job<QStringList> References::Profiles(ReferenceSet set, QString name) {
  const auto look = [base = Folder(set, name)] {
    QStringList found;
    for (const QString& ending : kProfileEndings) {
      if (QFileInfo(base + ending).isFile()) found.append(base + ending);
    }
    return found;
  };
  QStringList found;
  if (LinesOf(set) != nullptr) found = co_await services_.loop.Offload(EventLoop::Lane::Apart, look);
  co_return found;
}

LibraryChanges::Order References::OrderFor(const QString& what, const QString& tag) {
  LibraryChanges::Order order;
  order.what = what;
  order.tag = tag;
  return order;
}

// The commands.

Job<> References::RunNew(ReferenceSet set) {
  QString notice;
  try {
    const QString title = QStringLiteral("Create New") + SetWord(set) + QStringLiteral(" Reference");
    const QString name = co_await AskName(title, QStringLiteral("New Reference Name !"), QString());
    bool goOn = !name.isEmpty();
    if (goOn) goOn = co_await Ask(QStringLiteral("Create Reference ") + name);
    if (goOn) goOn = !co_await IsTaken(set, name);
    if (goOn) {
      const auto make = [folder = Folder(set, name)] {
        if (!QDir().mkdir(folder)) throw Failure(tr("The folder can't be made."), 0, folder);
      };
      co_await services_.loop.Offload(EventLoop::Lane::Files, make);
      services_.catalogue.AddReference(set, name);
      notice = name + QStringLiteral(" Created");
    }
  } catch (...) {
    basHandleError(kTag, tr("The name could not be made."));
  }
  Done(notice);
}

Job<> References::RunRename(ReferenceSet set, QString name) {
  QString notice;
  try {
    bool goOn = IsFree(
        name, QStringLiteral("Cannot Rename ") + name + QStringLiteral(" It is Required By The System !"));
    QString newName;
    if (goOn)
      newName =
          co_await AskName(QStringLiteral("Rename Reference"), QStringLiteral("Rename Reference As !"), name);
    goOn = !newName.isEmpty();
    const QString question = QStringLiteral("Rename Reference ") + name + QStringLiteral(" To ") + newName;
    if (goOn) goOn = co_await Ask(question);
    if (goOn) goOn = !co_await IsTaken(set, newName);
    if (goOn) {
      const LineEdit edit = [name, newName](const QString& line) {
        return LineWithRenamed(line, name, newName);
      };
      Plan plan = co_await PlanFor(set, edit);
      const QStringList profiles = co_await Profiles(set, name);
      LibraryChanges::Order order = OrderFor(question, kTag);
      order.alsoWithoutFile = true;
      const QString folder = Folder(set, newName);
      order.phases.push_back(
          {.words = kRenaming, .steps = {MoveEntry{Folder(set, name), folder}}, .needed = true});
      std::vector<ChangeStep> moves;
      for (const QString& profile : profiles)
        moves.push_back(MoveEntry{profile, folder + profile.mid(Folder(set, name).size())});
      order.phases.push_back(Lines(kRenaming, std::move(moves)));
      order.phases.push_back(Lines(kRenaming, std::move(plan.steps)));
      const LibraryChanges::Outcome outcome = co_await services_.changes->Do(std::move(order));
      if (TellOutcome(outcome)) notice = QStringLiteral("Renamed to ") + newName;
      if (!outcome.whole && !outcome.stopped && outcome.failure.isEmpty())
        Tell(name + QStringLiteral(" Not found"));
    }
  } catch (...) {
    basHandleError(kTag, tr("%1 could not be renamed.").arg(name));
  }
  Done(notice);
}

Job<> References::RunDelete(ReferenceSet set, QString name) {
  QString notice;
  try {
    bool goOn = IsFree(name, QStringLiteral("Cannot Delete ") + name +
                                 QStringLiteral(" It is Required By  ") + services_.title);
    if (goOn) {
      const LineEdit edit = [name](const QString& line) { return LineWithout(line, name); };
      Plan plan = co_await PlanFor(set, edit);
      const QString question =
          plan.tracks > 0 ? QStringLiteral("The Reference ") + name + QStringLiteral(" Has ") +
                                QString::number(plan.tracks) + QStringLiteral(" Track Entries Defined") +
                                kLineBreak + QStringLiteral("Continue with Delete ?")
                          : QStringLiteral("Delete Reference ") + name + QStringLiteral(" !");
      goOn = co_await Ask(question, QStringLiteral("Delete Reference"));
      if (goOn) {
        // Tracks may have come or changed while the operator thought.
        plan = co_await PlanFor(set, edit);
        const QStringList profiles = co_await Profiles(set, name);
        LibraryChanges::Order order = OrderFor(QStringLiteral("Delete Reference ") + name, kTag);
        order.alsoWithoutFile = true;
        order.phases.push_back(Lines(kDeleting, std::move(plan.steps)));
        // Before the folder: whoever hears that the name is gone would trash them apart from the undo.
        std::vector<ChangeStep> discards;
        for (const QString& profile : profiles) discards.push_back(DiscardEntry{.path = profile});
        order.phases.push_back(Lines(kDeleting, std::move(discards)));
        order.phases.push_back({.words = kDeleting,
                                .steps = {DiscardEntry{.path = Folder(set, name), .folder = true}},
                                .needed = true});
        LibraryChanges::Outcome outcome = co_await services_.changes->Do(std::move(order));
        if (!outcome.whole && !outcome.stopped && outcome.failure.isEmpty()) {
          // Its folder was gone before.
          services_.catalogue.RemoveReference(set, name);
          outcome.whole = true;
        }
        if (!outcome.whole && !outcome.stopped) {
          Tell(QStringLiteral("Could not delete.. Reference is Required by 1 or more Tracks!"));
          outcome.failure.clear();
        }
        if (TellOutcome(outcome)) notice = name + QStringLiteral(" Deleted !");
      }
    }
  } catch (...) {
    basHandleError(kTag, tr("%1 could not be deleted.").arg(name));
  }
  Done(notice);
}

}  // namespace kelvo
