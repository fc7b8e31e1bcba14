#pragma once

#include <QString>

namespace kelvo {

/// What the tags of a music file say. Empty texts where they say nothing.
struct TrackTags {
  bool found = false;  ///< the file bears a tag at all
  QString artist;
  QString title;
  QString album;
  QString year;       ///< four digits
  int bpm = 0;        ///< beats per minute; 0 for none
  int genre = -1;     ///< ID3 genre number; -1 for none
  QString genreText;  ///< the genre in the tag's own words, when it has no number
};

/// Reads ID3v1, ID3v2 and RIFF INFO tags. The content decides what reads it, not the name; a file that is no
/// music, empty, damaged or unreadable bears no tag. Control characters become blanks, the ends are trimmed.
/// Never throws. Blocks; any thread.
[[nodiscard]] TrackTags ReadTrackTags(const QString& path);

}  // namespace kelvo
