#pragma once

#include "datamanager/Mp3Info.h"

#include <QByteArray>
#include <QString>

#include <optional>

namespace kelvo {

// What the gain tool writes, read by its fields: its exit code says nothing. The order of the columns is that
// of mp3gain 1.6. Every text is taken, and what has not the form of an answer is none.

/// What is known of a file from one answer: gain, peak, greatest and smallest global gain.
[[nodiscard]] std::optional<Mp3Info> StoredTagsIn(const QByteArray& output);

/// How an analysis ended.
struct AnalysisAnswer {
  std::optional<Mp3Info> record;  ///< none: it failed
  QString told = {};              ///< what the tool said of it, where that names the track; else empty
};
/// `trackName` is the name of the file as the operator knows it.
[[nodiscard]] AnalysisAnswer AnalysisIn(const QByteArray& output, const QString& trackName);

/// How a call that applies a gain ended, as far as the tool's words tell it.
enum class ApplyWords { Nothing, NoDiscSpace, CannotOpen };
[[nodiscard]] ApplyWords ApplyWordsIn(const QByteArray& output);

/// Follows the progress of an analysis in the tool's error output, whose lines end with CR and come in
/// pieces. A value.
class ProgressReader {
 public:
  /// The per cent told last in this piece, 0 to 100; none when it tells nothing new.
  [[nodiscard]] std::optional<int> Take(const QByteArray& piece);

 private:
  QByteArray rest_;
};

}  // namespace kelvo
