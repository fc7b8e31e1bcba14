#pragma once

#include "platform/Job.h"
#include "platform/MountedVolumes.h"

#include <QObject>

#include <optional>

namespace kelvo {

class EventLoop;
class Prompter;

/// The places that a form can search: the drives of the system, and what the operator added. Owned by the
/// form's logic; logic thread.
class DriveList : public QObject {
  Q_OBJECT
 public:
  DriveList(EventLoop& loop, Prompter& prompter, QString title);

  struct Place {
    std::optional<MountedVolume::Kind> kind;  ///< none: a folder that was picked
    QString path;
  };
  [[nodiscard]] const std::vector<Place>& Places() const { return places_; }

  /// Asks the system again; what was added stays.
  void Refresh();
  /// "Map Network Drive".
  void MapNetworkDrive();
  /// Any folder, picked by the operator.
  void Browse();
  /// A folder that the operator named; a place already listed is reported again.
  void AddFolder(const QString& path);

 Q_SIGNALS:
  void Changed();
  /// The operator added this place.
  void Added(const QString& path);

 private:
  [[nodiscard]] Job<> RunRefresh();
  [[nodiscard]] Job<> RunMap();
  [[nodiscard]] Job<> RunBrowse();
  void Add(const Place& place);
  [[nodiscard]] bool Lists(const QString& path) const;

  EventLoop& loop_;
  Prompter& prompter_;
  QString title_;
  std::vector<Place> places_;
  std::vector<Place> added_;
  Job<> refreshing_;
  Job<> asking_;
};

}  // namespace kelvo
