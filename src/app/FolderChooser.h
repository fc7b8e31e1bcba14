#pragma once

#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <QObject>
#include <QStringList>

#include <cstdint>

namespace kelvo {

/// Free bytes as a chooser tells them: gigabytes (1024 x 1024 x 1024) in the format "###.00", "12.50 GB";
/// below one, megabytes. Empty when they are unknown (below 0).
[[nodiscard]] QString FreeSpaceText(std::int64_t bytes);

/// Walks through drives and folders until one is chosen. Every look at a disk is off the thread: a drive that
/// does not answer blocks nothing else. Owned by who shows it; logic thread.
class FolderChooser : public QObject {
  Q_OBJECT
 public:
  /// Begins at `start`, or at the nearest folder above it that is there.
  FolderChooser(EventLoop& loop, const QString& start);

  [[nodiscard]] const QStringList& Drives() const { return seen_.drives; }
  /// The drive that holds the folder, as a row of Drives; -1 when none is known.
  [[nodiscard]] int Drive() const;
  /// Free space of that drive.
  [[nodiscard]] QString FreeSpace() const { return FreeSpaceText(seen_.freeBytes); }
  [[nodiscard]] const QString& Folder() const { return seen_.folder; }
  [[nodiscard]] const QStringList& Subfolders() const { return seen_.subfolders; }
  /// Why the last step did not come about; empty when it did.
  [[nodiscard]] const QString& Trouble() const { return trouble_; }
  /// A look is under way.
  [[nodiscard]] bool Looking() const { return looking_; }

  /// Goes to a folder by its path.
  void Open(const QString& path);
  void Enter(const QString& subfolder);
  void Up();
  /// Makes a folder in the present one and goes there.
  void MakeFolder(const QString& name);

 Q_SIGNALS:
  void Changed();

 private:
  struct Seen {
    QStringList drives;
    QString folder;
    QStringList subfolders;
    std::int64_t freeBytes = -1;
  };
  enum class Step { Open, OpenNearest, Make };
  [[nodiscard]] static Seen LookAt(const QString& path, Step step);
  [[nodiscard]] Job<> Look(QString path, Step step);

  EventLoop& loop_;
  Seen seen_;
  QString trouble_;
  bool looking_ = false;
  Job<> look_;
};

}  // namespace kelvo
