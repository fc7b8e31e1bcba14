#include "FileInMemory.h"
#include "database/TrackTags.h"

#include <algorithm>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const FileInMemory file(data, size);
  const kelvo::TrackTags tags = kelvo::ReadTrackTags(file.Path());
  for (const QString& text : {tags.artist, tags.title, tags.album, tags.genreText}) {
    const bool clean = std::none_of(text.begin(), text.end(), [](QChar each) { return each < QChar(u' '); });
    if (!clean || text != text.trimmed()) std::abort();
  }
  if (tags.genre < -1 || tags.genre > 255) std::abort();
  return 0;
}
