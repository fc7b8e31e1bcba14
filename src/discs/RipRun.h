#pragma once

#include "database/Catalogue.h"
#include "discs/CdripIni.h"
#include "discs/DiscTrackWriter.h"
#include "discs/DriveShelf.h"
#include "discs/RipRows.h"

#include <QDateTime>
#include <QObject>

namespace kelvo {

/// What is to be ripped. A value.
struct RipOrder {
  QString place;
  DiscToc toc;  ///< of the disc that was listed
  struct Track {
    int row = 0;  ///< of the grid
    cTrack named;
  };
  std::vector<Track> tracks;
  QString album;
  int fFormat = 0;
  CdripIni how;
  EncodingPresets presets;
  WriterKind writer;
  QString utility;  ///< the folder
};

/// The rip of the chosen tracks, one after another, into the utility folder: what the progress dialog shows.
/// A file gets its name when it is whole. Beside the files a log keeps how each was read, with its checksum;
/// it is written anew with each track. Owned by the Ripper; logic thread. One rip at a time.
class RipRun : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    Catalogue& catalogue;
    std::shared_ptr<DriveShelf> shelf;
  };
  explicit RipRun(Services services) : services_(std::move(services)) {}
  ~RipRun() override;

  void Start(RipOrder order);
  /// Ends it at once; of the track that is being ripped nothing is left.
  void Stop();
  [[nodiscard]] bool Running() const { return running_; }

  /// `lblInfo`: which track, as what, and what is known of it.
  [[nodiscard]] const QString& Info() const { return info_; }
  /// "CD Rip Progress " and the name.
  [[nodiscard]] QString Title() const;
  /// Of the track, 0 to 1; and "(42%)".
  [[nodiscard]] double Share() const { return share_; }
  [[nodiscard]] QString PercentWords() const;
  /// What is done, a line each.
  struct Line {
    QString words;
  };
  [[nodiscard]] const RowStore<Line>& Lines() const { return lines_; }
  /// Sectors of this rip that could not be read for sure.
  [[nodiscard]] int Unsure() const { return unsure_; }

 Q_SIGNALS:
  void Changed();
  /// A row of the grid is through.
  void Through(int row, kelvo::RipMark mark, const QString& words);
  /// `completed`: it came to the end of the selection.
  void Ended(bool completed);

 private:
  struct Work;
  [[nodiscard]] Job<> Run();
  [[nodiscard]] Job<std::shared_ptr<DiscDrive>> OpenDisc();
  [[nodiscard]] Job<> RipTrack(std::shared_ptr<DiscDrive> drive, std::size_t index);
  [[nodiscard]] Job<ReadFacts> ReadAndWrite(std::shared_ptr<Work> work);
  [[nodiscard]] Job<> MakeRoom(QString target, std::int64_t bytes);
  [[nodiscard]] Job<> Log(QStringList lines);
  void Say(const QString& line);
  void ShowTrack(std::size_t index, const QString& target);
  void End(bool completed);

  Services services_;
  RipOrder order_;
  DriveBeatPtr beat_;
  bool running_ = false;
  QString info_;
  QString name_;
  double share_ = 0;
  int unsure_ = 0;
  RowStore<Line> lines_;
  QString logPath_;
  QStringList log_;
  Job<> job_;
};

}  // namespace kelvo
