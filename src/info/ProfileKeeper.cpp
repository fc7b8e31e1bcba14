#include "info/ProfileKeeper.h"

#include "database/Catalogue.h"
#include "info/InfoFiles.h"
#include "platform/ErrorLog.h"
#include "platform/Prompter.h"

#include <algorithm>

namespace kelvo {
namespace {

/// Gives what lies under this name another that is free, and returns that.
QString SetAside(const InfoPlace& place) {
  for (int number = 2;; ++number) {
    const QString name = QStringLiteral("%1 (%2)").arg(place.name).arg(number);
    if (RenameInfo(place, name)) return name;
  }
}

/// The profile on disk that is that of this name; the name itself where there is none.
QString ProfileOf(const QString& folder, const QString& name, const QStringList& others) {
  for (const QString& found : NamesOnDisk(folder, name)) {
    if (found == name || !others.contains(found)) return found;
  }
  return name;
}

}  // namespace

ProfileKeeper::ProfileKeeper(Services services) : services_(std::move(services)) {
  services_.catalogue.Listen(this, [this](const ReferenceChanged& change) { Follow(change); });
}

void ProfileKeeper::Follow(const ReferenceChanged& change) {
  if (change.before.isEmpty()) return;
  for (const ProfileKind kind : kProfileKinds) {
    const ProfileWords words = WordsOf(kind);
    if (words.set != change.set) continue;
    const QString& folder = services_.paths(words.slot);
    const QStringList& others = services_.catalogue.References(words.set);
    jobs_.Add(change.name.isEmpty() ? Discard(folder, change.before, others)
                                    : Rename(folder, change.before, change.name, others));
  }
}

// The files follow in the order in which all is written, and no look comes before: a save under the new name
// must find them there. The disk has just renamed a folder beside them, so it answers.

Job<> ProfileKeeper::Rename(QString folder, QString before, QString name, QStringList others) {
  try {
    const auto rename = [folder, before, name, others] {
      QString aside;
      const InfoPlace place{folder, ProfileOf(folder, before, others)};
      if (!HasInfo(place) || RenameInfo(place, name)) return aside;
      aside = SetAside({folder, name});
      static_cast<void>(RenameInfo(place, name));
      return aside;
    };
    const QString aside = co_await services_.loop.Offload(EventLoop::Lane::Files, rename);
    if (!aside.isEmpty())
      Tell(tr("%1 Had A Profile Already, From Before. It Is Kept As %2 In %3").arg(name, aside, folder));
  } catch (...) {
    basHandleError(
        QStringLiteral(" profile"),
        tr("The profile of %1 cannot be renamed to %2. It is still in %3.").arg(before, name, folder));
  }
}

Job<> ProfileKeeper::Discard(QString folder, QString name, QStringList others) {
  try {
    enum class Outcome { None, Trashed, Kept };
    const auto discard = [folder, name, others, trash = services_.trash] {
      const InfoPlace place{folder, ProfileOf(folder, name, others)};
      if (!HasInfo(place)) return Outcome::None;
      TrashInfo(place, trash);
      return HasInfo(place) ? Outcome::Kept : Outcome::Trashed;
    };
    const Outcome outcome = co_await services_.loop.Offload(EventLoop::Lane::Files, discard);
    if (outcome == Outcome::Trashed) Tell(tr("The Profile Of %1 Is In The Trash Of The Desktop").arg(name));
    if (outcome == Outcome::Kept) Tell(tr("The Profile Of %1 Is Kept In %2").arg(name, folder));
  } catch (...) {
    basHandleError(
        QStringLiteral(" profile"),
        tr("The profile of %1 cannot be put into the trash. It is still in %2.").arg(name, folder));
  }
}

void ProfileKeeper::Tell(const QString& words) {
  NoteInLog(words);
  Prompt message;
  message.text = words;
  message.icon = PromptIcon::Information;
  services_.prompter.Tell(message);
}

}  // namespace kelvo
