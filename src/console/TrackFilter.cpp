#include "console/TrackFilter.h"

#include "database/Catalogue.h"

#include <algorithm>
#include <cstring>

namespace kelvo {

QString FoldedText(const QString& text) {
  QString folded;
  const QString parts = text.normalized(QString::NormalizationForm_KD).toCaseFolded();
  folded.reserve(parts.size());
  for (const QChar letter : parts) {
    if (!letter.isMark()) folded.append(letter);
  }
  return folded;
}

Job<> TrackFilter::Build(EventLoop& loop) {
  std::string letters;
  std::vector<std::uint32_t> starts;
  const auto tracks = static_cast<std::size_t>(catalogue_.LastTrack());
  letters.reserve(catalogue_.TrackNames.Bytes() + tracks);
  starts.reserve(tracks);
  Turn turn(loop);
  for (int row = 1; row <= catalogue_.LastTrack(); ++row) {
    starts.push_back(static_cast<std::uint32_t>(letters.size()));
    const std::string_view name = catalogue_.TrackNames.Utf8(ToMref(row));
    const bool ascii =
        std::all_of(name.begin(), name.end(), [](char c) { return static_cast<unsigned char>(c) < 128; });
    if (ascii) {
      std::transform(name.begin(), name.end(), std::back_inserter(letters),
                     [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
    } else {
      letters += FoldedText(catalogue_.TrackNames[ToMref(row)]).toStdString();
    }
    letters.push_back('\n');
    co_await turn.Yield();
  }
  letters_ = std::move(letters);
  starts_ = std::move(starts);
}

std::vector<Mref> TrackFilter::Find(const QString& words) const {
  std::vector<Mref> found;
  const QStringList list = FoldedText(words).split(QLatin1Char(' '), Qt::SkipEmptyParts);
  std::vector<std::string> needles;
  for (const QString& word : list) needles.push_back(word.toStdString());
  if (needles.empty()) {
    for (std::size_t row = 1; row <= starts_.size(); ++row) found.push_back(ToMref(static_cast<qint64>(row)));
    return found;
  }
  // The longest word is the rarest: it leads, the others are looked for in its lines only.
  std::sort(needles.begin(), needles.end(),
            [](const auto& left, const auto& right) { return left.size() > right.size(); });
  const char* const begin = letters_.data();
  const char* const end = begin + letters_.size();
  const char* at = begin;
  while (at < end) {
    const void* const hit =
        memmem(at, static_cast<std::size_t>(end - at), needles[0].data(), needles[0].size());
    if (hit == nullptr) break;
    const auto offset = static_cast<std::uint32_t>(static_cast<const char*>(hit) - begin);
    const auto next = std::upper_bound(starts_.begin(), starts_.end(), offset);
    const auto row = static_cast<std::size_t>(next - starts_.begin());
    const std::size_t lineStart = starts_[row - 1];
    const std::size_t lineEnd = next == starts_.end() ? letters_.size() : *next;
    const std::string_view line(begin + lineStart, lineEnd - lineStart);
    const bool all = std::all_of(needles.begin() + 1, needles.end(), [line](const std::string& needle) {
      return line.find(needle) != std::string_view::npos;
    });
    if (all) found.push_back(ToMref(static_cast<qint64>(row)));
    at = begin + lineEnd;
  }
  return found;
}

}  // namespace kelvo
