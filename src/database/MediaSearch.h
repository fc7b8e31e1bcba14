#pragma once

#include "database/TrackTags.h"
#include "platform/Job.h"

#include <QObject>
#include <QSet>
#include <QString>
#include <QStringList>

#include <atomic>
#include <cstdint>
#include <memory>
#include <set>
#include <utility>
#include <vector>

namespace kelvo {

class EventLoop;

/// A file with the extension MP3 or WAV that a search came upon.
struct FoundFile {
  QString path;
  std::int64_t size = 0;  ///< bytes
  TrackTags tags;         ///< if the search was to read them
  QString trouble;        ///< why it cannot be played; see WhyNotPlayable
};

/// Whether the name is that of an MP3 or WAV file, by its extension.
[[nodiscard]] bool IsMediaName(const QString& name);

/// The course of a search through folders and all below them, a piece at a time. Made by the logic, used by
/// one other thread at a time. Names come in the order of their upper-cased forms, the files of a folder
/// before its folders; hidden ones (leading dot) are left out. A folder is entered once, whatever links lead
/// to it.
class MediaWalk {
 public:
  enum class Tags { Leave, Read };
  MediaWalk(const QStringList& roots, Tags tags);

  struct Piece {
    std::vector<FoundFile> files;
    QString folder;     ///< the folder that was reached
    double share = 0;   ///< of the whole way, 0 to 1; a folder's folders count alike
    QStringList notes;  ///< folders that can't be read, names that are no text
    int hidden = 0;     ///< files of music that are hidden
    bool atEnd = false;
  };
  /// Walks on by so many files and folders, less when `stop` is set. Blocks for the disk.
  [[nodiscard]] Piece Next(int steps, const std::atomic<bool>& stop);

 private:
  /// A folder to come, and its share of the way.
  struct Folder {
    QString path;
    double share;
  };
  void Begin();
  void Enter(Piece& piece);
  static void TakeFile(const QString& path, Tags tags, Piece& piece);
  [[nodiscard]] bool IsNew(const QString& folder);

  Tags tags_;
  std::vector<Folder> folders_;  ///< the next last
  QString folder_;
  QStringList alone_;  ///< roots that are files themselves
  QStringList files_;  ///< what is left of `folder_`, the next last
  double filesShare_ = 0;
  double share_ = 0;
  QStringList roots_;      ///< until the search begins
  QSet<QString> leftOut_;  ///< see FoldersOfOtherMounts
  std::set<std::pair<std::uint64_t, std::uint64_t>> entered_;
};

/// A search in Lane::Apart, reported in pieces small enough to be shown between two turns. Owned by the
/// form's logic, which it must not outlive; logic thread.
class MediaSearch : public QObject {
  Q_OBJECT
 public:
  explicit MediaSearch(EventLoop& loop) : loop_(loop) {}
  ~MediaSearch() override { Stop(); }

  /// Looks through the folders `roots`. Does nothing while a search is at work.
  void Start(const QStringList& roots, MediaWalk::Tags tags);
  /// Ends it after the file at hand. Finished tells when it has ended.
  void Stop();
  [[nodiscard]] bool Running() const { return running_; }
  [[nodiscard]] bool Stopping() const { return running_ && *stop_; }

  /// The folder that it is in, and its share of the way in per cent.
  [[nodiscard]] const QString& Folder() const { return folder_; }
  [[nodiscard]] double Percent() const { return percent_; }
  /// What it found that is no track, in words behind the sum; empty when there was nothing of the kind.
  [[nodiscard]] QString Exceptions() const;

 Q_SIGNALS:
  void Found(const std::vector<FoundFile>& files);
  void Progress();
  void Finished();

 private:
  [[nodiscard]] Job<> Run(QStringList roots, MediaWalk::Tags tags);

  EventLoop& loop_;
  std::shared_ptr<std::atomic<bool>> stop_;
  bool running_ = false;
  QString folder_;
  double percent_ = 0;
  int unplayable_ = 0;
  int passedOver_ = 0;  ///< folders and names; the log names them
  int hidden_ = 0;
  Job<> work_;
};

}  // namespace kelvo
