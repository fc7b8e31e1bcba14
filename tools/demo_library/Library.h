#pragma once

#include <QString>
#include <QStringList>

#include <cstdint>
#include <functional>

namespace kelvo::demo {

/// What is asked of the tool.
struct LibraryOptions {
  QString folder;        ///< absolute
  QString settingsFile;  ///< empty: no settings are written
  std::uint32_t seed = 1;
  int pieces = -1;         ///< only the first ones; below 0 all
  double longest = 0.0;    ///< seconds to which each track is cut; 0: none is
  bool ifMissing = false;  ///< leave what is there alone
  bool replace = false;    ///< the settings may be pointed at this library though they name another
};

/// Called with the part done, 0 .. 1, and what was made.
using Progress = std::function<void(double done, const QString& what)>;

enum class Outcome { Made, NothingToDo };

/// The eight folders of a database under `folder`, in the order of the settings.
[[nodiscard]] QStringList FoldersOf(const QString& folder);

/// Makes the library beside its place and moves it there whole, then names it in the settings. The same seed
/// gives the same bytes in every music and info file. Throws Failure; then nothing stands at `folder` that
/// wasn't there before.
Outcome MakeLibrary(const LibraryOptions& options, const Progress& progress);

}  // namespace kelvo::demo
