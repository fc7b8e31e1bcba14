#include "database/MediaSearch.h"

#include "audio/SoundLook.h"
#include "database/FolderListing.h"
#include "platform/ErrorLog.h"
#include "platform/EventLoop.h"
#include "platform/MountedVolumes.h"
#include "platform/Words.h"

#include <QFile>
#include <QFileInfo>

#include <sys/stat.h>

#include <algorithm>

namespace kelvo {
namespace {

using namespace std::chrono_literals;

/// Files and folders in one piece. A fast drive gives more at a time, so that showing them does not hold the
/// search up; a slow one less, so that what it gives is seen.
constexpr int kFewestSteps = 16;
constexpr int kMostSteps = 512;
constexpr Nanoseconds kShortPiece = 20ms;
constexpr Nanoseconds kLongPiece = 200ms;

/// A drive that gives nothing but errors must not fill the log.
constexpr int kMostNotes = 200;

QString Below(const QString& folder, const QString& name) {
  return folder.endsWith(QLatin1Char('/')) ? folder + name : folder + QLatin1Char('/') + name;
}

}  // namespace

bool IsMediaName(const QString& name) {
  const QString extension = UpperExtension(name);
  return extension == QLatin1StringView("MP3") || extension == QLatin1StringView("WAV");
}

MediaWalk::MediaWalk(const QStringList& roots, Tags tags) : tags_(tags), roots_(roots) {}

void MediaWalk::Begin() {
  const double each = 1.0 / static_cast<double>(roots_.size());
  for (auto root = roots_.rbegin(); root != roots_.rend(); ++root) {
    if (IsMediaName(*root) && QFileInfo(*root).isFile()) {
      alone_.push_back(*root);
      continue;
    }
    folders_.push_back({*root, each});
    for (const QString& other : FoldersOfOtherMounts(*root)) leftOut_.insert(other);
  }
  for (const QString& root : std::exchange(roots_, {})) leftOut_.remove(root);
}

bool MediaWalk::IsNew(const QString& folder) {
  struct stat facts {};
  if (::stat(QFile::encodeName(folder).constData(), &facts) != 0) return true;  // Entering it tells why.
  return entered_.emplace(facts.st_dev, facts.st_ino).second;
}

void MediaWalk::Enter(Piece& piece) {
  const Folder next = folders_.back();
  folders_.pop_back();
  filesShare_ = next.share;
  if (leftOut_.contains(next.path) || !IsNew(next.path)) return;
  folder_ = next.path;
  const FolderListing files = ListFolder(folder_, EntryKind::Files);
  const FolderListing below = ListFolder(folder_, EntryKind::Folders);
  for (const QString& name : files.unusable + below.unusable) {
    piece.notes.append(QStringLiteral("A name in %1 is no text: %2").arg(folder_, name));
  }
  piece.hidden += static_cast<int>(std::count_if(files.hidden.begin(), files.hidden.end(), IsMediaName));
  std::copy_if(files.names.rbegin(), files.names.rend(), std::back_inserter(files_), IsMediaName);
  const double each = next.share / static_cast<double>(below.names.size() + 1);
  filesShare_ = each;
  for (auto name = below.names.rbegin(); name != below.names.rend(); ++name) {
    folders_.push_back({Below(folder_, *name), each});
  }
}

void MediaWalk::TakeFile(const QString& path, Tags tags, Piece& piece) {
  FoundFile file;
  file.path = path;
  file.size = QFileInfo(file.path).size();
  if (tags == Tags::Read) file.tags = ReadTrackTags(file.path);
  file.trouble = WhyNotPlayable(file.path);
  piece.files.push_back(std::move(file));
}

MediaWalk::Piece MediaWalk::Next(int steps, const std::atomic<bool>& stop) {
  Piece piece;
  if (!roots_.isEmpty()) Begin();
  for (int step = 0; step < steps && !stop; ++step) {
    if (!alone_.isEmpty()) {
      TakeFile(alone_.takeLast(), tags_, piece);
      continue;
    }
    if (!files_.isEmpty()) {
      TakeFile(Below(folder_, files_.takeLast()), tags_, piece);
      continue;
    }
    share_ += std::exchange(filesShare_, 0);
    if (folders_.empty()) {
      piece.atEnd = true;
      break;
    }
    try {
      Enter(piece);
    } catch (const Failure& failure) {
      piece.notes.append(QString::fromUtf8(failure.what()));
    }
  }
  piece.folder = folder_;
  piece.share = std::min(share_, 1.0);
  return piece;
}

void MediaSearch::Start(const QStringList& roots, MediaWalk::Tags tags) {
  if (running_ || roots.isEmpty()) return;
  running_ = true;
  stop_ = std::make_shared<std::atomic<bool>>(false);
  folder_ = roots.front();
  percent_ = 0;
  unplayable_ = passedOver_ = hidden_ = 0;
  Q_EMIT Progress();
  work_ = Run(roots, tags);
}

void MediaSearch::Stop() {
  if (stop_) *stop_ = true;
}

QString MediaSearch::Exceptions() const {
  QString words;
  if (unplayable_ > 0) words += tr(", %1 that cannot be played").arg(unplayable_);
  if (passedOver_ > 0) {
    words += QStringLiteral(", ") + Counted(passedOver_, tr("folder or name"), tr("folders or names")) +
             tr(" could not be read (see the log)");
  }
  if (hidden_ > 0)
    words +=
        QStringLiteral(", ") + Counted(hidden_, tr("hidden file"), tr("hidden files")) + tr(" passed over");
  return words;
}

Job<> MediaSearch::Run(QStringList roots, MediaWalk::Tags tags) {
  const auto stop = stop_;
  const auto walk = std::make_shared<MediaWalk>(roots, tags);
  int steps = kFewestSteps;
  try {
    while (!*stop) {
      const auto next = [walk, steps, stop] { return walk->Next(steps, *stop); };
      const Nanoseconds begun = loop_.Elapsed();
      const MediaWalk::Piece piece = co_await loop_.Offload(EventLoop::Lane::Apart, next);
      const Nanoseconds taken = loop_.Elapsed() - begun;
      if (taken < kShortPiece) steps = std::min(steps * 2, kMostSteps);
      if (taken > kLongPiece) steps = std::max(steps / 2, kFewestSteps);
      for (const QString& note : piece.notes) {
        if (++passedOver_ <= kMostNotes) NoteInLog(note);
      }
      hidden_ += piece.hidden;
      unplayable_ +=
          static_cast<int>(std::count_if(piece.files.begin(), piece.files.end(),
                                         [](const FoundFile& file) { return !file.trouble.isEmpty(); }));
      if (!piece.folder.isEmpty()) folder_ = piece.folder;
      percent_ = piece.share * 100;
      if (!piece.files.empty()) Q_EMIT Found(piece.files);
      Q_EMIT Progress();
      if (piece.atEnd) break;
    }
  } catch (...) {
    basHandleError(QStringLiteral(" search"), tr("The search could not go on."));
  }
  running_ = false;
  Q_EMIT Finished();
}

}  // namespace kelvo
