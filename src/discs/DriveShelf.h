#pragma once

#include "discs/DriveCalls.h"
#include "platform/Prompter.h"

#include <QObject>
#include <QSet>

#include <functional>
#include <vector>

namespace kelvo {

/// What the disc check of the console says of a drive: "CDA" for a disc of sound, "Audio" for one with data
/// beside the sound, "Not Ready Or In Use" when it does not answer to the question.
[[nodiscard]] QString DiscWords(DiscState state);

/// The drives and images that the windows of discs offer, and who is at work with which. One for all of them,
/// owned by their join; logic thread.
class DriveShelf : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    std::shared_ptr<DiscDrives> drives;
  };
  explicit DriveShelf(Services services);

  struct Place {
    QString path;
    bool image = false;
    QString disc = {};  ///< what the check found in it (DiscWords); empty: not looked at yet
    /// "/dev/sr0: CDA" of a drive, "Disc (Image): CDA" of an image.
    [[nodiscard]] QString Words() const;
    bool operator==(const Place&) const = default;
  };
  [[nodiscard]] const std::vector<Place>& Places() const { return places_; }
  [[nodiscard]] bool Holds(const QString& path) const;

  [[nodiscard]] DriveCalls& Calls() { return calls_; }
  [[nodiscard]] const std::shared_ptr<DiscDrives>& Drives() const { return services_.drives; }

  /// Asks the system again, and looks what is in each drive; images stay.
  void Refresh();
  /// Puts an image on the shelf: its sheet, or the file of its data. False when it is none.
  bool AddImage(const QString& path);
  /// The image that was put there last; empty: none, or it is gone.
  [[nodiscard]] QString LastAdded() const { return Holds(lastAdded_) ? lastAdded_ : QString(); }
  /// Asks the operator for one, and calls `chosen` with its place on the shelf.
  void BrowseImage(std::function<void(const QString& place)> chosen);
  /// Opens the tray of a drive; takes an image off the shelf. Throws DriveFailure.
  [[nodiscard]] Job<> Eject(QString path);
  [[nodiscard]] Job<> CloseTray(QString path);
  /// What is in the drive; NotReady when it hangs or is being looked at already.
  [[nodiscard]] Job<DiscState> Look(QString path);

  // Two at once would make a drive jump between two places of the disc. An image can serve both.
  void SetRipping(const QString& path, bool on);
  void SetPlaying(const QString& path, bool on);
  /// Whether a disc is heard on the programme; set by the CD player.
  std::function<bool()> OnAir;
  [[nodiscard]] bool Ripping(const QString& path) const { return ripping_.contains(path); }
  [[nodiscard]] bool Playing(const QString& path) const { return playing_.contains(path); }

 Q_SIGNALS:
  /// Places changed.
  void Changed();
  /// Ripping or Playing changed.
  void UseChanged();

 private:
  [[nodiscard]] Job<> RunRefresh();
  [[nodiscard]] Job<> RunBrowse(std::function<void(const QString& place)> chosen);
  void SetDevices(const QStringList& devices);
  /// Looks what is in the drive, for its words.
  [[nodiscard]] Job<> Check(QString path);

  Services services_;
  DriveCalls calls_;
  std::vector<Place> places_;
  QString lastAdded_;
  QSet<QString> ripping_;
  QSet<QString> playing_;
  QSet<QString> looking_;
  Job<> refreshing_;
  JobList checking_;
  Job<> browsing_;
};

}  // namespace kelvo
