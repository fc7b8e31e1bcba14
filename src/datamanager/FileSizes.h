#pragma once

#include "datamanager/ManagerColumns.h"
#include "platform/Disks.h"
#include "platform/Job.h"

#include <QObject>
#include <QString>

#include <array>
#include <span>
#include <vector>

namespace kelvo {

/// The sizes of the listed files, read off the thread as they are wanted and kept. A disk that does not
/// answer leaves its files without a size, and is asked again with the next refresh. Owned by the TrackList;
/// logic thread.
class FileSizes : public QObject {
  Q_OBJECT
 public:
  FileSizes(EventLoop& loop, Disks& disks, const ManagerTexts& texts);

  /// Bytes; kSizeUnknown, kSizeMissing.
  [[nodiscard]] std::int64_t Of(DispMode mode, Mref row) const;
  /// Reads those that are not known yet. In place of what was wanted before, unless that is being read.
  void Want(DispMode mode, std::vector<Mref> rows);
  /// Reads all of these; `onShare` hears how many are done, 0 to 1.
  [[nodiscard]] Job<> ReadAll(DispMode mode, std::vector<Mref> rows,
                              const std::function<void(double)>& onShare);

  /// The sizes of this kind of file are read anew.
  void Forget(DispMode mode);
  /// The file of this row is another one.
  void Forget(DispMode mode, Mref row);
  /// The numbers behind it went down by one.
  void Remove(Mref track);

 Q_SIGNALS:
  /// Some sizes are known now.
  void Read();

 private:
  using Sizes = std::vector<std::int64_t>;
  [[nodiscard]] Sizes& Kept(DispMode mode) { return sizes_[static_cast<std::size_t>(mode)]; }
  void Keep(DispMode mode, Mref row, std::int64_t size);
  [[nodiscard]] Job<> ReadWanted();
  /// False when the numbers changed meanwhile: what was read is dropped.
  [[nodiscard]] Job<bool> ReadSome(DispMode mode, std::span<const Mref> rows);

  EventLoop& loop_;
  Disks& disks_;
  const ManagerTexts& texts_;
  std::array<Sizes, 3> sizes_;  ///< by mode, then by number
  unsigned renumbered_ = 0;     ///< counts what made row numbers mean other files
  DispMode wantedMode_ = DispMode::MusicFiles;
  std::vector<Mref> wanted_;
  Job<> reading_;
};

}  // namespace kelvo
