#pragma once

#include "burning/BurnWords.h"
#include "platform/ChildProcess.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <functional>
#include <memory>

namespace kelvo {

/// The burning service: `xorriso` for data discs and disc images, `cdrskin` for audio CDs, each as a child
/// process. Owned by the BurnList; logic thread. One call at a time.
class cSimpleCDBurner {
 public:
  struct Tools {
    QString xorriso = QStringLiteral("xorriso");
    QString cdrskin = QStringLiteral("cdrskin");
  };
  /// How a call ended. `why` is in the words of the tool.
  struct End {
    bool done = false;
    QString why = {};
  };
  cSimpleCDBurner(EventLoop& loop, Tools tools) : loop_(loop), tools_(std::move(tools)) {}

  /// The recorders of the system. Throws Failure when there is no burning service.
  [[nodiscard]] Job<std::vector<BurnDrive>> Drives();
  [[nodiscard]] Job<BurnMedium> LookAt(QString device);
  /// The sectors that the files of the folder will take; below 0 where the tool does not tell.
  [[nodiscard]] Job<std::int64_t> ImageSectors(QString device, QString folder);
  /// Writes the files of the folder.
  [[nodiscard]] Job<End> Burn(QString device, QString folder);
  /// Reads the disc back and compares it with the folder.
  [[nodiscard]] Job<End> Compare(QString device, QString folder);
  /// Writes an audio CD.
  [[nodiscard]] Job<End> BurnAudioDisc(QString device, QString cueSheet);
  /// Reads back where the tracks of the disc begin.
  [[nodiscard]] Job<std::vector<std::int64_t>> TrackStarts(QString device);

  /// Asks the tool to end, which leaves the drive in order; one that does not within a while is killed.
  void Stop();
  /// How much of a burn is done, 0 to 1.
  std::function<void(double share)> OnShare;
  /// The tool has told something.
  std::function<void()> OnNews;

 private:
  [[nodiscard]] Job<ChildResult> Run(QString tool, QStringList arguments, QString folder = {});
  [[nodiscard]] Job<End> RunToEnd(QString tool, QStringList arguments, QString folder = {});

  EventLoop& loop_;
  Tools tools_;
  std::shared_ptr<ChildControl> control_ = std::make_shared<ChildControl>();
  Timer kill_;
};

}  // namespace kelvo
