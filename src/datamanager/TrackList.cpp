#include "datamanager/TrackList.h"

#include "platform/Words.h"

#include <QFileInfo>

#include <algorithm>
#include <array>
#include <numeric>

namespace kelvo {
namespace {

constexpr int kLowestLetter = '0';

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 128; });
}

char Upper(char letter) {
  return letter >= 'a' && letter <= 'z' ? static_cast<char>(letter - 'a' + 'A') : letter;
}

/// Appends `utf8` in upper case. Nearly all names are plain letters, which need no detour.
void AppendUpper(std::string_view utf8, std::string* to) {
  if (IsAscii(utf8)) {
    std::transform(utf8.begin(), utf8.end(), std::back_inserter(*to), Upper);
  } else {
    *to += QString::fromUtf8(utf8.data(), static_cast<qsizetype>(utf8.size())).toUpper().toStdString();
  }
}

}  // namespace

TrackList::TrackList(Services services)
    : services_(services),
      texts_(services_.catalogue, services_.paths),
      sizes_(services_.loop, services_.disks, texts_) {
  connect(&sizes_, &FileSizes::Read, this, [this] {
    const int last = std::min(lastSeen_, Count() - 1);
    if (firstSeen_ <= last) Q_EMIT RowsChanged(firstSeen_, last);
  });
  FollowCatalogue();
}

QString TrackList::Text(int row, ManagerColumn column) const {
  const Mref number = Number(row);
  return texts_.Text(mode_, number, column, sizes_.Of(mode_, number));
}

QString TrackList::SoundPath(int row) const {
  const Mref track = Track(row);
  return track == Mref::None ? FilePath(row) : services_.catalogue.TrackPaths(track);
}

// What is listed.

void TrackList::Refresh(DispMode mode) {
  wantedMode_ = mode;
  if (suspended_) {
    due_ = true;
    Q_EMIT StateChanged();
    return;
  }
  due_ = false;
  filterJob_.Cancel();
  mode_ = mode;
  sizes_.Forget(mode);
  const qsizetype count =
      mode == DispMode::Jingles ? services_.catalogue.SoundBitePaths.size() : services_.catalogue.LastTrack();
  std::vector<Mref> all(static_cast<std::size_t>(count));
  for (std::size_t place = 0; place < all.size(); ++place)
    all[place] = ToMref(static_cast<qint64>(place) + 1);
  Replace(std::move(all), false);
}

void TrackList::Stop() {
  filterJob_.Cancel();
  sortJob_.Cancel();
  EndJob();
}

void TrackList::Suspend(bool suspended) {
  if (suspended_ == suspended) return;
  suspended_ = suspended;
  if (!suspended && due_) {
    Refresh(wantedMode_);
  } else {
    Q_EMIT StateChanged();
  }
}

void TrackList::Replace(std::vector<Mref> listed, bool filtered) {
  ++version_;
  Q_EMIT RowsAboutToBeReplaced();
  listed_ = std::move(listed);
  filtered_ = filtered;
  shown_ = ShownPlaces();
  Q_EMIT RowsReplaced();
  EndJob();
  sortJob_.Cancel();
  if (sorting_) sortJob_ = RunSort(*sorting_);
}

// What happens to the catalogue.

void TrackList::FollowCatalogue() {
  services_.catalogue.Listen(
      this, [this](const TrackAdded& added) { TrackWasAdded(added.track); },
      [this](const TrackChanged& changed) { ShowTrack(changed.track); },
      [this](const TrackInfoSaved& saved) {
        sizes_.Forget(DispMode::References, saved.track);
        if (mode_ == DispMode::References) ShowTrack(saved.track);
      },
      [this](const TrackRenamed& renamed) {
        if (!holds_.empty()) {
          const auto place = static_cast<std::size_t>(renamed.track);
          if (place < holds_.size()) holds_[place] = HasWords(renamed.track);
        }
        ShowTrack(renamed.track);
      },
      [this](const TrackRemoved& removed) { TrackWasRemoved(removed); },
      [this](const JingleChanged&) {
        // Their numbers are those of a sorted list: rows of before would be other files.
        if (mode_ != DispMode::Jingles) return;
        const bool suspended = std::exchange(suspended_, false);
        const DispMode wanted = wantedMode_;
        Refresh(DispMode::Jingles);
        wantedMode_ = wanted;
        due_ = suspended && wanted != mode_;
        suspended_ = suspended;
      },
      [this](const CatalogueReplaced&) {
        ++changes_;
        for (const DispMode mode : {DispMode::MusicFiles, DispMode::Jingles, DispMode::References})
          sizes_.Forget(mode);
        holds_.clear();
        words_.clear();
        const bool suspended = std::exchange(suspended_, false);
        Refresh(wantedMode_);
        suspended_ = suspended;
      });
}

void TrackList::TrackWasAdded(Mref track) {
  if (mode_ == DispMode::Jingles || filtered_) return;
  if (suspended_) {
    due_ = true;
    return;
  }
  ++version_;
  listed_.push_back(track);
  if (!words_.isEmpty()) {
    holds_.resize(static_cast<std::size_t>(track) + 1);
    holds_[static_cast<std::size_t>(track)] = HasWords(track);
    if (!holds_[static_cast<std::size_t>(track)]) return;
  }
  Q_EMIT RowsAboutToBeAdded(Count(), Count());
  shown_.push_back(static_cast<int>(listed_.size()) - 1);
  Q_EMIT RowsAdded();
}

void TrackList::TrackWasRemoved(const TrackRemoved& removed) {
  ++changes_;
  sizes_.Remove(removed.track);
  const auto held = static_cast<std::size_t>(removed.track);
  if (held < holds_.size()) holds_.erase(holds_.begin() + static_cast<std::ptrdiff_t>(held));
  if (mode_ == DispMode::Jingles) return;
  ++version_;
  for (int row = Count() - 1; row >= 0; --row) {
    if (Number(row) != removed.track) continue;
    Q_EMIT RowsAboutToBeRemoved(row, row);
    shown_.erase(shown_.begin() + row);
    Q_EMIT RowsRemoved();
  }
  // The places behind one that goes move up.
  std::vector<int> placeNow(listed_.size());
  int kept = 0;
  for (std::size_t place = 0; place < listed_.size(); ++place) {
    placeNow[place] = kept;
    if (listed_[place] == removed.track) continue;
    listed_[static_cast<std::size_t>(kept++)] = removed.Renumbered(listed_[place]);
  }
  listed_.resize(static_cast<std::size_t>(kept));
  for (int& place : shown_) place = placeNow[static_cast<std::size_t>(place)];
}

void TrackList::ShowTrack(Mref track) {
  if (mode_ == DispMode::Jingles) return;
  const int last = std::min(lastSeen_, Count() - 1);
  for (int row = firstSeen_; row <= last; ++row) {
    if (Number(row) == track) Q_EMIT RowsChanged(row, row);
  }
}

// What is in sight.

void TrackList::Show(int first, int last) {
  firstSeen_ = std::max(first, 0);
  lastSeen_ = std::min(last, Count() - 1);
  std::vector<Mref> rows;
  for (int row = firstSeen_; row <= lastSeen_; ++row) rows.push_back(Number(row));
  sizes_.Want(mode_, std::move(rows));
}

std::vector<int> TrackList::ShownPlaces() const {
  std::vector<int> places(listed_.size());
  std::iota(places.begin(), places.end(), 0);
  if (words_.isEmpty()) return places;
  const auto hidden = [this](int place) {
    const Mref row = listed_[static_cast<std::size_t>(place)];
    if (mode_ == DispMode::Jingles) return !HasWords(row);
    const auto number = static_cast<std::size_t>(row);
    return number >= holds_.size() || !holds_[number];
  };
  std::erase_if(places, hidden);
  return places;
}

bool TrackList::HasWords(Mref row) const {
  const QString name = FoldedText(texts_.FileName(mode_, row));
  const QStringList words = FoldedText(words_).split(QLatin1Char(' '), Qt::SkipEmptyParts);
  return std::all_of(words.begin(), words.end(),
                     [&name](const QString& word) { return name.contains(word); });
}

void TrackList::SetWords(const QString& words) {
  if (words_ == words) return;
  words_ = words;
  wordsJob_ = RunWords();
}

Job<> TrackList::RunWords() {
  const QString words = words_;
  std::vector<bool> holds;
  if (!words.trimmed().isEmpty()) {
    const std::vector<Mref> found = co_await services_.words.Find(services_.loop, words);
    holds.resize(static_cast<std::size_t>(services_.catalogue.LastTrack()) + 1);
    for (const Mref track : found) holds[static_cast<std::size_t>(track)] = true;
  } else {
    words_.clear();
  }
  holds_ = std::move(holds);
  ShowAgain();
}

void TrackList::ShowAgain() {
  ++version_;
  Q_EMIT RowsAboutToBeReplaced();
  shown_ = ShownPlaces();
  Q_EMIT RowsReplaced();
  Q_EMIT StateChanged();
}

// Looking for rows.

std::string_view TrackList::UpperName(Mref row, std::string* buffer) const {
  buffer->clear();
  if (mode_ == DispMode::Jingles) {
    *buffer = texts_.FileName(mode_, row).toUpper().toStdString();
  } else {
    AppendUpper(services_.catalogue.TrackNames.Utf8(row), buffer);
    const QString extension =
        mode_ == DispMode::References ? QStringLiteral(".KIF") : services_.catalogue.TrackExtensions[row];
    for (const QChar letter : extension) buffer->push_back(Upper(letter.toLatin1()));
  }
  return *buffer;
}

int TrackList::LetterRow(QChar letter) const {
  std::array<int, 128> firsts;
  firsts.fill(-1);
  std::string buffer;
  for (int row = Count() - 1; row >= 0; --row) {
    const Mref number = Number(row);
    const std::string_view name =
        mode_ == DispMode::Jingles ? UpperName(number, &buffer) : services_.catalogue.TrackNames.Utf8(number);
    if (name.empty()) continue;
    const auto first = static_cast<unsigned char>(Upper(name.front()));
    if (first < firsts.size()) firsts[first] = row;
  }
  int code = std::min<int>(letter.toUpper().unicode(), static_cast<int>(firsts.size()) - 1);
  while (code > kLowestLetter && firsts[static_cast<std::size_t>(code)] < 0) --code;
  return firsts[static_cast<std::size_t>(code)];
}

int TrackList::RowBeginning(const QString& letters, int from) const {
  const std::string wanted = letters.toUpper().toStdString();
  std::string buffer;
  for (int step = 0; step < Count(); ++step) {
    const int row = (std::max(from, 0) + step) % Count();
    if (UpperName(Number(row), &buffer).starts_with(wanted)) return row;
  }
  return -1;
}

Job<std::vector<int>> TrackList::RowsHolding(QString text) const {
  const std::string wanted = text.toUpper().toStdString();
  std::vector<int> rows;
  std::string buffer;
  Turn turn(services_.loop);
  unsigned version = version_;
  for (int row = 0; row < Count(); ++row) {
    if (UpperName(Number(row), &buffer).find(wanted) != std::string_view::npos) rows.push_back(row);
    constexpr int kRowsALook = 64;
    if (row % kRowsALook != 0) continue;
    co_await turn.Yield();
    if (version == version_) continue;
    // The rows are others: begin anew.
    version = version_;
    rows.clear();
    row = -1;
  }
  co_return rows;
}

}  // namespace kelvo
