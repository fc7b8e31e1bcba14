#pragma once

#include "info/ProfileKind.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Trash.h"

#include <QObject>

namespace kelvo {

class Catalogue;
class Prompter;

/// Keeps the profiles with their names: a profile is renamed with the artist, album or genre that it is
/// about, and goes to the trash of the desktop with it; where there is no trash it stays. The operator is
/// told of whatever is not where they would look for it. Owned beside the windows, for as long as the desk is
/// open; logic thread.
class ProfileKeeper : public QObject {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    const Catalogue& catalogue;
    Paths paths;
    Trash trash = DesktopTrash();
  };
  explicit ProfileKeeper(Services services);

 private:
  void Follow(const ReferenceChanged& change);
  // `others`: the names that the set has now; their profiles are not this one's.
  [[nodiscard]] Job<> Rename(QString folder, QString before, QString name, QStringList others);
  [[nodiscard]] Job<> Discard(QString folder, QString name, QStringList others);
  void Tell(const QString& words);

  Services services_;
  JobList jobs_;
};

}  // namespace kelvo
