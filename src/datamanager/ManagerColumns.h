#pragma once

#include "database/Catalogue.h"
#include "database/Paths.h"

#include <QString>

#include <cstdint>

namespace kelvo {

/// What the Data Manager's track list shows.
enum class DispMode { MusicFiles, Jingles, References };
/// "Music Files", "Jingles", "References".
[[nodiscard]] QString DispModeText(DispMode mode);

/// The columns of the track list, in their order.
enum class ManagerColumn {
  FileName,
  Size,
  Volume,
  Change,
  Path,
  Bpm,
  Date,
  Hi,
  Genres,
  Artists,
  Albums,
  Mref,
};
inline constexpr int kManagerColumns = 12;

/// What is not known of a file's size: it was not looked at, or it can't be.
inline constexpr std::int64_t kSizeUnknown = -1;
inline constexpr std::int64_t kSizeMissing = -2;

/// The texts of the list's rows, made when they are asked for. A row is the number of a track, or of a jingle
/// in its list, from 1. In the mode References a row is the track info file of its track. Logic thread.
class ManagerTexts {
 public:
  ManagerTexts(const Catalogue& catalogue, const Paths& paths) : catalogue_(catalogue), paths_(paths) {}

  [[nodiscard]] QString Text(DispMode mode, Mref row, ManagerColumn column, std::int64_t size) const;
  /// The file of a row: music, jingle or track info.
  [[nodiscard]] QString Path(DispMode mode, Mref row) const;
  [[nodiscard]] QString FileName(DispMode mode, Mref row) const;
  /// "5.43"; "?" for a file that can't be looked at, empty while it was not.
  [[nodiscard]] static QString SizeText(std::int64_t bytes);

 private:
  [[nodiscard]] QString TrackText(Mref track, ManagerColumn column) const;

  const Catalogue& catalogue_;
  const Paths& paths_;
};

}  // namespace kelvo
