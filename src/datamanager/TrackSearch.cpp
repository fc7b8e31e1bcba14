#include "datamanager/TrackSearch.h"

#include "database/KeptTracks.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <algorithm>
#include <chrono>
#include <functional>
#include <string>
#include <string_view>

namespace kelvo {
namespace {

constexpr int kRowsALook = 32;

bool IsAscii(std::string_view text) {
  return std::all_of(text.begin(), text.end(), [](char c) { return static_cast<unsigned char>(c) < 128; });
}

/// Appends `utf8` folded. Nearly all names are plain letters, which need no detour.
void AppendFolded(std::string_view utf8, std::string* to) {
  if (!IsAscii(utf8)) {
    const auto size = static_cast<qsizetype>(utf8.size());
    to->append(FoldedText(QString::fromUtf8(utf8.data(), size)).toStdString());
    return;
  }
  std::transform(utf8.begin(), utf8.end(), std::back_inserter(*to),
                 [](char c) { return c >= 'A' && c <= 'Z' ? static_cast<char>(c - 'A' + 'a') : c; });
}

/// The two halves of "Artist - Title", blanks kept; without "-" all is the title.
struct NameHalves {
  std::string_view artist;
  std::string_view title;

  explicit NameHalves(std::string_view name) {
    const std::size_t dash = name.find('-');
    title = dash == std::string_view::npos ? name : name.substr(dash + 1);
    if (dash != std::string_view::npos) artist = name.substr(0, dash);
  }
};

/// A yes-no question about a pooled column, asked once for each text in it and not for each track.
class LineTest {
 public:
  using Question = std::function<bool(const QString&)>;
  LineTest(const PooledTextColumn& column, Question question)
      : column_(column), question_(std::move(question)) {}

  bool operator()(Mref track) {
    const std::size_t id = column_.Id(track);
    if (id >= known_.size()) known_.resize(column_.Distinct(), Known::Nothing);
    if (known_[id] == Known::Nothing) known_[id] = question_(column_[track]) ? Known::Yes : Known::No;
    return known_[id] == Known::Yes;
  }

 private:
  enum class Known : char { Nothing, Yes, No };
  const PooledTextColumn& column_;
  Question question_;
  std::vector<Known> known_;
};

/// One search's test of a track.
class Matcher {
 public:
  Matcher(const Catalogue& catalogue, const SearchQuestion& question)
      : names_(catalogue.TrackNames),
        field_(question.field),
        text_(TextOf(question)),
        line_(LineOf(catalogue, question.field),
              [this](const QString& line) { return LineMatches(FoldedText(line).toStdString()); }) {
    Ask(catalogue.TrackDates, question.date);
    Ask(catalogue.TrackBpm, question.bpm);
    Ask(catalogue.TrackHi, question.hiPos);
  }
  Matcher(const Matcher&) = delete;
  Matcher& operator=(const Matcher&) = delete;

  bool operator()(Mref track) {
    return (text_.empty() || FieldMatches(track)) &&
           std::all_of(wholes_.begin(), wholes_.end(), [track](LineTest& test) { return test(track); });
  }

 private:
  using Field = SearchQuestion::Field;

  static std::string TextOf(const SearchQuestion& question) {
    const QString text = FoldedText(question.text.trimmed());
    if (text.isEmpty() || !question.wholeString) return text.toStdString();
    return ' ' + text.toStdString() + ' ';
  }
  static const PooledTextColumn& LineOf(const Catalogue& catalogue, Field field) {
    if (field == Field::Album) return catalogue.TrackAlbums;
    return field == Field::Genre ? catalogue.TrackGenres : catalogue.TrackArtists;
  }

  void Ask(const PooledTextColumn& column, const QString& wanted) {
    const QString whole = wanted.trimmed().toUpper();
    if (whole.isEmpty()) return;
    wholes_.emplace_back(column, [whole](const QString& text) { return text.toUpper() == whole; });
  }

  bool FieldMatches(Mref track) {
    if (field_ == Field::Album || field_ == Field::Genre) return line_(track);
    const NameHalves halves(names_.Utf8(track));
    if (field_ == Field::Title) return NameMatches(halves.title);
    return NameMatches(halves.artist) || line_(track);
  }
  bool NameMatches(std::string_view half) {
    folded_.assign(1, ' ');
    AppendFolded(half, &folded_);
    folded_.push_back(' ');
    return folded_.find(text_) != std::string::npos;
  }
  /// Only names of artists are looked at with a blank on each side; albums and genres unchanged.
  [[nodiscard]] bool LineMatches(const std::string& folded) const {
    const std::string line = field_ == Field::Artist && !folded.empty() ? ' ' + folded + ' ' : folded;
    return line.find(text_) != std::string::npos;
  }

  const PackedTextColumn& names_;
  Field field_;
  std::string text_;
  LineTest line_;
  std::vector<LineTest> wholes_;
  std::string folded_;
};

}  // namespace

TrackSearch::TrackSearch(Services services) : services_(services) {
  FollowCatalogue();
}

void TrackSearch::FollowCatalogue() {
  services_.catalogue.Listen(
      this, [this](const TrackChanged& change) { ShowTrack(change.track); },
      [this](const TrackRenamed& renamed) { ShowTrack(renamed.track); },
      [this](const TrackRemoved& removed) { TrackWasRemoved(removed); },
      [this](const CatalogueReplaced&) {
        run_.Cancel();
        running_ = false;
        Clear();
      });
}

void TrackSearch::ShowTrack(Mref track) {
  for (int row = 0; row < results_.Count(); ++row) {
    if (results_[row] == track) results_.TellChanged(row, row);
  }
}

void TrackSearch::TrackWasRemoved(const TrackRemoved& removed) {
  for (int row = results_.Count() - 1; row >= 0; --row) {
    if (results_[row] == removed.track) {
      results_.Remove(row);
    } else {
      results_.AlterUntold(row, [&removed](Mref& track) { track = removed.Renumbered(track); });
    }
  }
}

QString TrackSearch::Caption() const {
  return running_ ? QStringLiteral("CANCEL") : QStringLiteral("SEARCH");
}

void TrackSearch::Search(const SearchQuestion& question) {
  if (running_) {
    stop_ = true;
    return;
  }
  if ((question.text + question.date + question.hiPos + question.bpm).isEmpty()) return;
  run_ = Run(question);
}

void TrackSearch::Clear() {
  if (running_) return;
  results_.Replace({});
  resultWords_.clear();
  stateWords_.clear();
  Q_EMIT Changed();
}

Job<> TrackSearch::Run(SearchQuestion question) {
  results_.Replace({});
  titleFirst_ = question.titleFirst;
  resultWords_.clear();
  stateWords_.clear();
  stop_ = false;
  running_ = true;
  Q_EMIT Changed();
  const Nanoseconds start = services_.loop.Elapsed();
  try {
    const bool whole = co_await Look(question);
    if (whole) {
      const double seconds = std::chrono::duration<double>(services_.loop.Elapsed() - start).count();
      stateWords_ = QStringLiteral("Done");
      resultWords_ = QStringLiteral("Search Results = ") + QString::number(results_.Count()) +
                     QStringLiteral(" in ") + Format0Point0(seconds) + QStringLiteral(" Seconds");
    } else {
      Prompt message;
      message.text = QStringLiteral("Search Interupted By User !");
      message.icon = PromptIcon::Information;
      services_.prompter.Tell(message);
    }
  } catch (...) {
    basHandleError(QStringLiteral(" srch"), tr("The search could not go on."));
  }
  running_ = false;
  Q_EMIT Changed();
}

/// False when the operator stopped it.
Job<bool> TrackSearch::Look(const SearchQuestion& question) {
  Matcher matches(services_.catalogue, question);
  std::vector<Mref> found;
  Nanoseconds turnStart = services_.loop.TurnClock();
  TrackWalk walk(services_.catalogue);
  while (walk.Next()) {
    if (matches(walk.Track())) found.push_back(walk.Track());
    // A look at the clock costs as much as a track.
    if (ToInt(walk.Track()) % kRowsALook != 0 || !services_.loop.TurnIsOver(turnStart)) continue;
    results_.Append(std::exchange(found, {}));
    co_await services_.loop.Yield();
    if (stop_) co_return false;
    turnStart = services_.loop.TurnClock();
  }
  results_.Append(std::move(found));
  co_return true;
}

QString TrackSearch::ShownName(Mref track) const {
  if (!titleFirst_) return services_.catalogue.TrackNames[track];
  const NameHalves halves(services_.catalogue.TrackNames.Utf8(track));
  const auto text = [](std::string_view half) {
    return QString::fromUtf8(half.data(), static_cast<qsizetype>(half.size())).trimmed();
  };
  return text(halves.title) + QStringLiteral(" - ") + text(halves.artist);
}

}  // namespace kelvo
