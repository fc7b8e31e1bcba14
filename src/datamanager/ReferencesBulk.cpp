// The commands that work on the tracks which bear a name, and the merge of two names.

#include "database/FileRun.h"
#include "datamanager/ReferenceEdits.h"
#include "datamanager/References.h"
#include "platform/ErrorLog.h"

#include <QFileInfo>

#include <algorithm>

namespace kelvo {
namespace {

const QString kTag = QStringLiteral(" dbfed");
const QString kBulkTag = QStringLiteral(" Bulk1");
const QString kLineBreak = QStringLiteral("\r\n");
const QString kBulk = QStringLiteral("Track References ");

}  // namespace

Job<> References::RunMerge(ReferenceSet set, QString name) {
  QString notice;
  try {
    bool goOn =
        LinesOf(set) != nullptr && IsFree(name, QStringLiteral("Cannot Rename ") + name +
                                                    QStringLiteral(" It is Required By The System !"));
    QString typed;
    if (goOn) {
      const QString prompt = tr("Merge %1 Into Which Name ?").arg(name);
      typed = co_await AskName(tr("Merge Reference"), prompt, QString());
    }
    const QStringList& known = services_.catalogue.References(set);
    const auto found = std::find_if(known.begin(), known.end(), [&typed](const QString& each) {
      return each.toUpper() == typed.toUpper();
    });
    const QString into = typed.isEmpty() || found == known.end() ? QString() : *found;
    if (goOn && !typed.isEmpty() && into.isEmpty()) Tell(typed + QStringLiteral(" Not found"));
    goOn = !into.isEmpty() && into != name;
    const QString what = tr("Merge Reference %1 Into %2").arg(name, into);
    if (goOn) goOn = co_await Ask(what);
    if (goOn) {
      const LineEdit edit = [name, into](const QString& line) { return LineWithRenamed(line, name, into); };
      Plan plan = co_await PlanFor(set, edit);
      const QStringList profiles = co_await Profiles(set, name);
      const QStringList standing = co_await Profiles(set, into);
      LibraryChanges::Order order = OrderFor(what, kTag);
      order.alsoWithoutFile = true;
      order.phases.push_back({.words = tr("Merging Track Entries "), .steps = std::move(plan.steps)});
      LibraryChanges::Phase moves{.words = tr("Merging Track Entries ")};
      for (const QString& profile : profiles) {
        const QString place = Folder(set, into) + profile.mid(Folder(set, name).size());
        if (standing.contains(place)) {
          moves.steps.push_back(DiscardEntry{.path = profile});
        } else {
          moves.steps.push_back(MoveEntry{profile, place});
        }
      }
      order.phases.push_back(std::move(moves));
      order.phases.push_back({.words = tr("Merging Track Entries "),
                              .steps = {DiscardEntry{.path = Folder(set, name), .folder = true}},
                              .needed = true});
      const LibraryChanges::Outcome outcome = co_await services_.changes->Do(std::move(order));
      if (TellOutcome(outcome)) notice = tr("%1 Merged Into %2").arg(name, into);
    }
  } catch (...) {
    basHandleError(kTag, tr("%1 could not be merged.").arg(name));
  }
  Done(notice);
}

Job<> References::RunAdd(ReferenceSet set, QString name, std::vector<Mref> tracks) {
  QString notice;
  try {
    // Whether the line is full is asked first: also of one that has the name.
    const LineEdit edit = [name](const QString& line) {
      return IsLineFull(line) ? std::nullopt : LineWith(line, name);
    };
    Plan plan = co_await PlanFor(set, edit, std::move(tracks));
    const QString what = tr("Add Reference %1").arg(name);
    notice = co_await RunBulk(what, std::move(plan));
  } catch (...) {
    basHandleError(kBulkTag, kBulk);
  }
  Done(notice);
}

Job<> References::RunRemove(ReferenceSet set, QString name, std::vector<Mref> tracks) {
  QString notice;
  try {
    const LineEdit edit = [name](const QString& line) { return LineWithout(line, name); };
    Plan plan = co_await PlanFor(set, edit, std::move(tracks));
    const QString what = tr("Remove Reference %1").arg(name);
    plan.full.clear();
    notice = co_await RunBulk(what, std::move(plan));
  } catch (...) {
    basHandleError(kBulkTag, kBulk);
  }
  Done(notice);
}

Job<QString> References::RunBulk(QString what, Plan plan) {
  if (!plan.full.isEmpty()) {
    QStringList lines;
    for (const QString& track : std::as_const(plan.full))
      lines.append(track + QStringLiteral(" - Max 10 References per track Exceeded"));
    Tell((QStringList{QStringLiteral("Cannot Add More References !")} + FirstOf(lines)).join(kLineBreak));
  }
  const int tracks = plan.tracks;
  if (tracks == 0) co_return tr("%1: no track had to be changed").arg(what);
  LibraryChanges::Order order = OrderFor(what + tr(" (%n Track(s))", nullptr, tracks), kBulkTag);
  order.phases.push_back({.words = kBulk, .steps = std::move(plan.steps)});
  const LibraryChanges::Outcome outcome = co_await services_.changes->Do(std::move(order));
  static_cast<void>(TellOutcome(outcome));
  co_return tr("%1: %n track(s) changed", nullptr, outcome.done).arg(what);
}

Job<> References::RunRemoveFromAll(ReferenceSet set, QString name) {
  QString notice;
  try {
    const LineEdit edit = [name](const QString& line) { return LineWithout(line, name); };
    Plan plan = co_await PlanFor(set, edit);
    const int tracks = plan.tracks;
    const QString question = QStringLiteral("The Reference ") + name + QStringLiteral(" Has ") +
                             QString::number(tracks) + QStringLiteral(" Track Entries Defined") + kLineBreak +
                             QStringLiteral("Continue with Delete ?");
    bool goOn = tracks > 0;
    if (goOn) goOn = co_await Ask(question);
    if (goOn) {
      plan = co_await PlanFor(set, edit);
      LibraryChanges::Order order = OrderFor(tr("Remove Reference %1 From All Tracks").arg(name), kTag);
      order.alsoWithoutFile = true;
      order.phases.push_back(
          {.words = QStringLiteral("Deleting Track Entries "), .steps = std::move(plan.steps)});
      const LibraryChanges::Outcome outcome = co_await services_.changes->Do(std::move(order));
      notice = tr("%1: %n track(s) changed", nullptr, outcome.done).arg(name);
      static_cast<void>(TellOutcome(outcome));
    } else if (tracks == 0) {
      notice = tr("No track bears %1").arg(name);
    }
  } catch (...) {
    basHandleError(kTag, tr("%1 could not be taken from the tracks.").arg(name));
  }
  Done(notice);
}

}  // namespace kelvo
