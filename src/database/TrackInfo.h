#pragma once

#include "database/InfoFields.h"
#include "database/Paths.h"
#include "platform/TextFile.h"

#include <QString>
#include <QStringList>

#include <optional>
#include <type_traits>

namespace kelvo {

/// What a track without settings of its own is played with. The first three come from the settings, the last
/// two are fixed.
struct TrackDefaults {
  int DefaultFade = 0;
  int DefaultFadeSpeed = 25;
  int DefaultDelta = 3;
  int DefaultStartType = 1;
  int DefaultEndType = 0;
};

/// A track info file: 13 lines of one field each, then comments. It holds the text of the file and reads a
/// field when it is asked for, so that whatever is not set goes back to the file byte for byte, also when it
/// is garbage. Lines that the file lacks read as empty. A value; any thread.
class TrackInfo {
 public:
  TrackInfo() = default;
  explicit TrackInfo(TextFile lines) : lines_(std::move(lines)) {}

  /// The text of a line as it is in the file.
  [[nodiscard]] QString Text(InfoLine::Line line) const { return lines_.Line(line); }
  /// A line break in `text` becomes a blank: it would move all lines behind it.
  void SetText(InfoLine::Line line, const QString& text);
  template <typename Value>
  [[nodiscard]] Value Get(const InfoField<Value>& field) const {
    return field.read(Text(field.line));
  }
  template <typename Value>
  void Set(const InfoField<Value>& field, const std::type_identity_t<Value>& value) {
    SetText(field.line, field.text(value));
  }

  /// Lines 7 to 11; the default end style where it is empty.
  [[nodiscard]] TrackPlaySettings Play(const TrackDefaults& defaults) const;
  /// Writes lines 7 to 9 in their full form.
  void CompletePlayLines();

  [[nodiscard]] QStringList Comments() const;
  /// The text of a comment box, which may have several lines; "No Comments" for an empty one.
  void SetComments(const QString& text);
  void AddComment(const QString& line);

  /// The fixed lines that the file lacks become those of `other`.
  void AddMissing(const TrackInfo& other);
  [[nodiscard]] QByteArray ToBytes() const { return lines_.ToBytes(); }

 private:
  TextFile lines_;
};

/// `PathInfo`, the base name, ".kif".
[[nodiscard]] QString TrackInfoPath(const Paths& paths, const QString& baseName);

/// `path` itself when it is there, else the file in its folder whose name differs in case only; empty when
/// there is none.
[[nodiscard]] QString FindFile(const QString& path);

/// The track info file of this path, under whatever case it is on disk; none when there is none. Throws
/// Failure. Blocks; any thread.
[[nodiscard]] std::optional<TrackInfo> ReadTrackInfo(const QString& path);
/// Saves changes to the file where it is. Throws Failure, "Could Not Save info File !" when the file has
/// vanished: nothing is made in its place. Blocks: off the logic's thread.
void WriteTrackInfo(const QString& path, const TrackInfo& info);
/// Makes the file of a track that has none. Throws Failure. Blocks: off the logic's thread.
void CreateTrackInfo(const QString& path, const TrackInfo& info);

/// A new track info file: the defaults, the artist of the name, `comments` behind.
[[nodiscard]] TrackInfo DefaultTrackInfo(const QString& baseName, double durationSeconds,
                                         const TrackDefaults& defaults, const QStringList& comments);
/// The two comment lines of a file that the system made by itself.
[[nodiscard]] QStringList ReplacedFileComments(const QString& title, const QString& date);

/// The artists of a track of this name: the text before the first "-" when that is the third character or
/// later, otherwise none.
[[nodiscard]] ReferenceLine ArtistsFromName(const QString& baseName);

}  // namespace kelvo
