// What takes the track list time: the filter by references, and sorting.

#include "database/ReferenceLine.h"
#include "database/SortKeys.h"
#include "datamanager/TrackList.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <algorithm>
#include <memory>

namespace kelvo {
namespace {

constexpr int kRowsALook = 64;

const PooledTextColumn& LinesOf(const Catalogue& catalogue, ReferenceSet set) {
  if (set == ReferenceSet::Genres) return catalogue.TrackGenres;
  return set == ReferenceSet::Artists ? catalogue.TrackArtists : catalogue.TrackAlbums;
}

/// Whether the lines of a column bear a name, in any case; each distinct line is looked at once.
class Bearers {
 public:
  Bearers(const PooledTextColumn& lines, const QString& name) : lines_(lines), name_(name) {}
  bool operator()(Mref track) {
    const std::size_t line = lines_.Id(track);
    if (line >= known_.size()) known_.resize(lines_.Distinct(), Known::Nothing);
    if (known_[line] == Known::Nothing) known_[line] = Bears(lines_[track]) ? Known::Yes : Known::No;
    return known_[line] == Known::Yes;
  }

 private:
  enum class Known : char { Nothing, Yes, No };
  [[nodiscard]] bool Bears(const QString& line) const {
    const QList<QStringView> items = QStringView(line).split(QLatin1Char(','));
    return std::any_of(items.begin(), items.end(),
                       [this](QStringView item) { return item.compare(name_, Qt::CaseInsensitive) == 0; });
  }
  const PooledTextColumn& lines_;
  QString name_;
  std::vector<Known> known_;
};

bool IsNumber(ManagerColumn column) {
  return column == ManagerColumn::Size || column == ManagerColumn::Volume ||
         column == ManagerColumn::Change || column == ManagerColumn::Bpm || column == ManagerColumn::Hi ||
         column == ManagerColumn::Mref;
}

/// "Filtering Track List (40%)".
QString WithShare(const QString& words, double share) {
  return words + QLatin1Char('(') + Format0(share * 100) + QStringLiteral("%)");
}

}  // namespace

void TrackList::Say(const QString& words, double share) {
  const QString now = WithShare(words, share);
  if (now == jobWords_) return;
  jobWords_ = now;
  jobShare_ = share;
  Q_EMIT StateChanged();
}

void TrackList::EndJob() {
  jobWords_.clear();
  jobShare_ = 0;
  Q_EMIT StateChanged();
}

void TrackList::Filter(std::vector<Reference> references) {
  if (mode_ != DispMode::MusicFiles || references.empty()) return;
  filterJob_ = RunFilter(std::move(references));
}

Job<> TrackList::RunFilter(std::vector<Reference> references) {
  const Catalogue& catalogue = services_.catalogue;
  std::vector<Mref> found;
  Turn turn(services_.loop);
  unsigned changes = changes_;
  for (std::size_t place = 0; place < references.size(); ++place) {
    const Reference& reference = references[place];
    Bearers bears(LinesOf(catalogue, reference.set), reference.name);
    for (int row = 1; row <= catalogue.LastTrack(); ++row) {
      if (bears(ToMref(row))) found.push_back(ToMref(row));
      if (row % kRowsALook != 0) continue;
      Say(QStringLiteral("Filtering Track List "),
          (static_cast<double>(place) + static_cast<double>(row) / catalogue.LastTrack()) /
              static_cast<double>(references.size()));
      co_await turn.Yield();
      if (changes != changes_) break;
    }
    if (changes == changes_) continue;
    // The numbers are others: begin anew.
    changes = changes_;
    found.clear();
    place = static_cast<std::size_t>(-1);
  }
  Replace(std::move(found), true);
}

void TrackList::SortBy(ManagerColumn column) {
  const bool again = sorting_ && sorting_->column == column && !sorting_->descending;
  sortJob_ = RunSort({.column = column, .descending = again});
}

Job<> TrackList::RunSort(Sorting sorting) {
  try {
    for (;;) {
      const unsigned version = version_;
      if (sorting.column == ManagerColumn::Size) {
        const auto say = [this](double share) { Say(QStringLiteral("Refreshing Track List "), share); };
        const std::function<void(double)> onShare = say;
        co_await sizes_.ReadAll(mode_, listed_, onShare);
        if (version != version_) continue;
      }
      const auto all = std::make_shared<SortKeys>();
      all->keys.reserve(listed_.size());
      Turn turn(services_.loop);
      for (std::size_t place = 0; place < listed_.size() && version == version_; ++place) {
        const Mref number = listed_[place];
        const auto item = static_cast<std::int32_t>(place);
        if (sorting.column == ManagerColumn::Size) {
          all->Add(static_cast<double>(sizes_.Of(mode_, number)), {}, item);
        } else if (sorting.column == ManagerColumn::Mref) {
          all->Add(static_cast<double>(ToInt(number)), {}, item);
        } else {
          const QString text = texts_.Text(mode_, number, sorting.column, kSizeUnknown);
          const bool isNumber = IsNumber(sorting.column);
          all->Add(isNumber ? Val(text) : 0, isNumber ? QString() : text.toUpper(), item);
        }
        co_await turn.Yield();
      }
      if (version != version_) continue;
      const auto sort = [all, descending = sorting.descending] {
        std::stable_sort(all->keys.begin(), all->keys.end(),
                         [descending](const SortKey& one, const SortKey& other) {
                           return descending ? other < one : one < other;
                         });
        std::vector<int> order;
        order.reserve(all->keys.size());
        for (const SortKey& key : all->keys) order.push_back(key.item);
        // Freed here: for a million rows that takes longer than the loop may be held.
        *all = {};
        return order;
      };
      const std::vector<int> order = co_await services_.loop.Offload(EventLoop::Lane::Apart, sort);
      if (version != version_) continue;
      sorting_ = sorting;
      Reorder(order);
      break;
    }
  } catch (...) {
    basHandleError(QStringLiteral(" dman sort"), tr("The list could not be sorted."));
  }
  EndJob();
}

void TrackList::Reorder(const std::vector<int>& order) {
  ++version_;
  Q_EMIT RowsAboutToBeSorted();
  std::vector<int> rowOf(listed_.size(), -1);
  for (std::size_t row = 0; row < shown_.size(); ++row)
    rowOf[static_cast<std::size_t>(shown_[row])] = static_cast<int>(row);
  std::vector<Mref> listed;
  listed.reserve(order.size());
  std::vector<int> rowNow(shown_.size());
  shown_.clear();
  for (const int before : order) {
    if (const int row = rowOf[static_cast<std::size_t>(before)]; row >= 0) {
      rowNow[static_cast<std::size_t>(row)] = static_cast<int>(shown_.size());
      shown_.push_back(static_cast<int>(listed.size()));
    }
    listed.push_back(listed_[static_cast<std::size_t>(before)]);
  }
  listed_ = std::move(listed);
  Q_EMIT RowsSorted(rowNow);
}

}  // namespace kelvo
