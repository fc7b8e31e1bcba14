#include "database/ScanRows.h"

#include "database/TrackNames.h"
#include "platform/EventLoop.h"
#include "platform/Prompter.h"
#include "platform/Words.h"

#include <QFileInfo>

#include <algorithm>
#include <numeric>
#include <optional>

namespace kelvo {
namespace {

struct Halves {
  QString artist;
  QString title;
};

/// "Jean-Luc - Song" is split at the separator that has blanks around it, "Ann-Song" at the only one.
std::optional<Halves> SplitTitle(const QString& title, const QString& separator) {
  const QString bare = separator.trimmed();
  QStringList places{separator};
  if (!bare.isEmpty()) places.prepend(QLatin1Char(' ') + bare + QLatin1Char(' '));
  for (const QString& each : places) {
    const qsizetype place = title.indexOf(each);
    if (place < 0) continue;
    Halves halves{title.left(place).trimmed(), title.mid(place + each.size()).trimmed()};
    if (!halves.artist.isEmpty() && !halves.title.isEmpty()) return halves;
  }
  return std::nullopt;
}

bool IsNumber(const QString& text) {
  return std::all_of(text.begin(), text.end(), [](QChar each) { return each.isDigit(); });
}

/// The title of a file that nobody has named yet: "Artist - Title" by its tags. The name of the file stays
/// where it says as much: a tag may hold 30 letters of the title only.
QString FirstTitle(const QString& baseName, const TrackTags& tags) {
  if (tags.title.isEmpty()) return baseName;
  std::optional<Halves> named = SplitTitle(baseName, QStringLiteral(" - "));
  if (named && IsNumber(named->artist)) named.reset();
  if (named && named->title.contains(tags.title, Qt::CaseInsensitive)) return baseName;
  const QString artist = tags.artist.isEmpty() && named ? named->artist : tags.artist;
  return CleanFileName(artist.isEmpty() ? tags.title : artist + QStringLiteral(" - ") + tags.title);
}

}  // namespace

void ScanRows::Append(const std::vector<FoundFile>& files) {
  std::vector<ScanRow> fresh;
  const QString year = loop_.Now().toString(QStringLiteral("yyyy"));
  for (const FoundFile& file : files) {
    if (paths_.contains(file.path)) continue;
    paths_.insert(file.path);
    const QFileInfo place(file.path);
    ScanRow row;
    row.trouble = file.trouble;
    row.columns = {FirstTitle(BaseName(place.fileName()), file.tags),
                   CleanFileName(file.tags.artist),
                   (file.tags.year.isEmpty() ? year : file.tags.year) + QStringLiteral("-xxx"),
                   QString(),
                   QFileInfo(place.path()).fileName(),
                   file.path};
    fresh.push_back(std::move(row));
  }
  rows_.Append(std::move(fresh));
}

void ScanRows::Clear() {
  orders_.clear();
  if (Count() == 0) return;
  // To free 100,000 rows takes longer than a turn.
  auto gone = std::make_shared<std::pair<std::vector<ScanRow>, QSet<QString>>>();
  gone->first = rows_.TakeAll();
  gone->second.swap(paths_);
  loop_.RunOffThread(
      EventLoop::Lane::Apart, [gone = std::move(gone)]() mutable { gone.reset(); }, [] {});
}

void ScanRows::Remove(std::vector<int> rows) {
  // What was ordered counts by the places of now.
  FinishOrders();
  std::sort(rows.begin(), rows.end());
  while (!rows.empty()) {
    // Runs of neighbours, from the end.
    const int last = rows.back();
    int first = last;
    rows.pop_back();
    while (!rows.empty() && rows.back() == first - 1) {
      first = rows.back();
      rows.pop_back();
    }
    for (int row = first; row <= last; ++row) paths_.remove(Row(row).Text(ScanPathColumn));
    rows_.Remove(first, last);
  }
}

void ScanRows::SetMark(int row, ScanMark mark) {
  if (row >= Count() || Row(row).mark == mark) return;
  rows_.Alter(row, [mark](ScanRow& each) { each.mark = mark; });
}

void ScanRows::Put(ScanRow& row, ScanColumn column, const QString& text) {
  QString& cell = row.columns[static_cast<std::size_t>(column)];
  if (cell == text) return;
  cell = text;
  if (column != ScanCommentsColumn) row.mark = ScanMark::None;
}

bool ScanRows::Accepts(ScanColumn column, const QString& text) {
  if (!Editable(column)) return false;
  if (column == ScanDateColumn) return CheckDate(prompter_, text);
  return column != ScanTitleColumn || !text.trimmed().isEmpty();
}

bool ScanRows::SetText(int row, ScanColumn column, const QString& text) {
  if (row >= Count() || !Accepts(column, text)) return false;
  const bool isName = column == ScanTitleColumn || column == ScanArtistColumn;
  const QString clean = isName ? CleanFileName(text) : text;
  rows_.Alter(row, [column, &clean](ScanRow& each) { Put(each, column, clean); });
  return true;
}

void ScanRows::Give(std::vector<int> rows, Change change) {
  if (rows.empty()) return;
  orders_.push_back({std::move(rows), std::move(change)});
  if (!working_.Running()) working_ = Work();
}

Job<> ScanRows::Work() {
  while (!orders_.empty()) {
    const Nanoseconds turnStart = loop_.TurnClock();
    WorkOff([this, turnStart] { return loop_.TurnIsOver(turnStart); });
    co_await loop_.Yield();
  }
}

void ScanRows::WorkOff(const std::function<bool()>& pause) {
  int first = Count();
  int last = -1;
  bool paused = false;
  while (!orders_.empty() && !paused) {
    Order& order = orders_.front();
    const int row = order.rows[order.next];
    rows_.AlterUntold(row, order.change);
    first = std::min(first, row);
    last = std::max(last, row);
    if (++order.next == order.rows.size()) orders_.pop_front();
    paused = pause();
  }
  if (first <= last) rows_.TellChanged(first, last);
}

void ScanRows::Insert(const std::vector<int>& rows, ScanColumn column, const QString& text) {
  if (rows.empty() || !Accepts(column, text)) return;
  const bool isName = column == ScanTitleColumn || column == ScanArtistColumn;
  const QString clean = isName ? CleanFileName(text) : text;
  Give(rows, [column, clean](ScanRow& row) { Put(row, column, clean); });
}

void ScanRows::ReplaceArtist(const QString& existing, const QString& with) {
  const QString old = existing.trimmed();
  const QString fresh = CleanFileName(with);
  if (old.isEmpty() || fresh.isEmpty()) return;
  std::vector<int> all(rows_.All().size());
  std::iota(all.begin(), all.end(), 0);
  Give(std::move(all), [old, fresh](ScanRow& row) {
    if (row.Text(ScanArtistColumn).compare(old, Qt::CaseInsensitive) == 0) Put(row, ScanArtistColumn, fresh);
  });
}

void ScanRows::ExtractArtists(const std::vector<int>& rows) {
  Give(rows, [separator = separator_](ScanRow& row) {
    const std::optional<Halves> halves = SplitTitle(row.Text(ScanTitleColumn), separator);
    if (!halves) return;
    Put(row, ScanArtistColumn, CleanFileName(halves->artist));
    Put(row, ScanTitleColumn, halves->title);
  });
}

void ScanRows::TakeArtistsFromFolders(const std::vector<int>& rows) {
  Give(rows, [](ScanRow& row) {
    const QString artist = CleanFileName(row.Text(ScanFolderColumn));
    if (!artist.isEmpty()) Put(row, ScanArtistColumn, artist);
  });
}

void ScanRows::PutArtistsInFront(const std::vector<int>& rows) {
  // The blanks around it are the name's own; only a separator that is nothing else keeps them.
  const QString bare = separator_.trimmed().isEmpty() ? separator_ : separator_.trimmed();
  Give(rows, [separator = bare](ScanRow& row) {
    const QString artist = row.Text(ScanArtistColumn);
    const QString title = row.Text(ScanTitleColumn);
    if (artist.isEmpty() || title.startsWith(artist, Qt::CaseInsensitive)) return;
    Put(row, ScanTitleColumn, artist + QLatin1Char(' ') + separator + QLatin1Char(' ') + title);
  });
}

void ScanRows::ChangeSeparator() {
  if (!asking_.Running()) asking_ = AskSeparator();
}

Job<> ScanRows::AskSeparator() {
  const QString typed = co_await prompter_.AskText(QStringLiteral("Change The Extraction Separator"),
                                                   QStringLiteral("Please Enter New Separator"), separator_);
  if (typed.isEmpty()) co_return;
  separator_ = typed;
  Q_EMIT SeparatorChanged();
}

}  // namespace kelvo
