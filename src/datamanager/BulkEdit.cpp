#include "datamanager/BulkEdit.h"

#include "database/FileRun.h"
#include "database/InfoFields.h"
#include "database/ReferenceLine.h"
#include "database/SafeFileName.h"
#include "datamanager/ReferenceEdits.h"
#include "platform/ErrorLog.h"

#include <QDir>
#include <QPointer>

#include <algorithm>

namespace kelvo {
namespace {

const QString kTag = QStringLiteral(" dman bulk");
constexpr int kMostNameBytes = 200;

/// The line with the name added, or with it alone; none when it takes no more names.
std::optional<QString> LineWithName(const QString& line, const QString& base, const QString& name,
                                    bool replace) {
  ReferenceLine items = ReferenceLine::Parse(line);
  if (items.base.isEmpty()) items.base = base;
  if (replace) {
    items.names = {name};
  } else if (!items.names.contains(name, Qt::CaseInsensitive)) {
    if (IsLineFull(line)) return std::nullopt;
    items.names.append(name);
  }
  return items.Text();
}

QString DateWith(const QString& text, const BulkChange& change) {
  if (!change.year && !change.month) return text;
  ReleaseDate date = InfoFields::ReleaseDate.read(text);
  if (change.year) date.year = *change.year;
  if (change.month) date.month = *change.month;
  return InfoFields::ReleaseDate.text(date);
}

}  // namespace

QString BulkEdit::WhyNot(const BulkChange& change, std::size_t tracks) const {
  const QString busy = services_.changes->WhyNot();
  if (!busy.isEmpty()) return busy;
  if (Running()) return tr("Tracks are being changed");
  if (tracks == 0) return tr("No track is selected");
  if (change.IsEmpty()) return tr("Choose what is to be changed first");
  for (const QString& name : {change.artist, change.genre}) {
    if (name.isEmpty()) continue;
    const QString safe = SafeFileName(name);
    if (safe.isEmpty() || IsInternalName(safe)) return QStringLiteral("Reserved Name !");
    if (safe.toUtf8().size() > kMostNameBytes) return tr("The name is too long");
  }
  return {};
}

void BulkEdit::Apply(const std::vector<Mref>& tracks, BulkChange change) {
  if (!WhyNot(change, tracks.size()).isEmpty()) return;
  // A row that is listed twice is one track.
  std::vector<Mref> once = tracks;
  std::sort(once.begin(), once.end());
  once.erase(std::unique(once.begin(), once.end()), once.end());
  job_ = Run(std::move(once), std::move(change));
  Q_EMIT Changed();
}

Job<> BulkEdit::Run(std::vector<Mref> tracks, BulkChange change) {
  try {
    // First the folders: a file must not bear a name that has none.
    change.artist = co_await Ensure(ReferenceSet::Artists, change.artist);
    change.genre = co_await Ensure(ReferenceSet::Genres, change.genre);
    Plan plan = co_await PlanFor(std::move(tracks), std::move(change));
    LibraryChanges::Outcome outcome;
    if (!plan.steps.empty()) {
      LibraryChanges::Order order;
      order.what = tr("Change Of %n Track(s)", nullptr, plan.tracks);
      order.tag = kTag;
      order.phases.push_back(
          {.words = QStringLiteral("Changing Track Entries "), .steps = std::move(plan.steps)});
      outcome = co_await services_.changes->Do(std::move(order));
    }
    Tell(plan, outcome);
  } catch (...) {
    basHandleError(kTag, tr("The tracks could not be changed."));
  }
  // The job has ended when those who look hear of it.
  services_.loop.Post([self = QPointer<BulkEdit>(this)] {
    if (self) Q_EMIT self->Changed();
  });
}

Job<QString> BulkEdit::Ensure(ReferenceSet set, QString name) {
  name = SafeFileName(name);
  if (name.isEmpty()) co_return name;
  // One artist, however it is spelled: a second folder would be a second artist.
  const QStringList& known = services_.catalogue.References(set);
  const auto there = std::find_if(known.begin(), known.end(), [&name](const QString& each) {
    return each.compare(name, Qt::CaseInsensitive) == 0;
  });
  if (there != known.end()) co_return *there;
  const Paths::Slot slot = set == ReferenceSet::Artists ? Paths::Artists : Paths::Categories;
  const auto make = [folder = services_.paths(slot) + QLatin1Char('/') + name] {
    if (!QDir().mkpath(folder)) throw Failure(QStringLiteral("The folder can't be made."), 0, folder);
  };
  co_await services_.loop.Offload(EventLoop::Lane::Files, make);
  services_.catalogue.AddReference(set, name);
  co_return name;
}

Job<BulkEdit::Plan> BulkEdit::PlanFor(std::vector<Mref> tracks, BulkChange change) {
  Plan plan;
  const KeptTracks kept(services_.catalogue, std::move(tracks));
  Turn turn(services_.loop);
  for (std::size_t place = 0; place < kept.Count(); ++place) {
    if (services_.catalogue.IsTrack(kept[place])) AddTrack(plan, change, kept[place]);
    co_await turn.Yield();
  }
  co_return plan;
}

void BulkEdit::AddTrack(Plan& plan, const BulkChange& change, Mref track) const {
  const Catalogue& all = services_.catalogue;
  const QString name = all.TrackNames[track];
  QStringList lines{all.TrackGenres[track], all.TrackArtists[track], all.TrackAlbums[track]};
  const std::size_t before = plan.steps.size();
  const auto take = [&](InfoLine::Line line, const QString& base, const QString& wanted) {
    if (wanted.isEmpty()) return true;
    const QString old = lines[line];
    const std::optional<QString> fresh = LineWithName(old, base, wanted, change.replace);
    if (!fresh) return false;
    lines[line] = *fresh;
    if (*fresh != old) plan.steps.push_back(SetInfoLine{name, line, old, *fresh, lines});
    return true;
  };
  if (!take(InfoLine::Categories, kAllCategories, change.genre) ||
      !take(InfoLine::Artists, kAllArtists, change.artist)) {
    // All of it or nothing.
    plan.steps.resize(before);
    plan.full.append(name);
    return;
  }
  const QString date = all.TrackDates[track];
  const QString fresh = DateWith(date, change);
  if (fresh != date) plan.steps.push_back(SetInfoLine{name, InfoLine::ReleaseDate, date, fresh, {}});
  if (plan.steps.size() > before) ++plan.tracks;
}

void BulkEdit::Tell(const Plan& plan, const LibraryChanges::Outcome& outcome) {
  QStringList troubles;
  for (const QString& track : plan.full)
    troubles.append(track + QStringLiteral(" - Max 10 References per track Exceeded"));
  for (const QString& track : outcome.withoutFile) troubles.append(track + QStringLiteral(" Not found"));
  if (outcome.stopped) {
    troubles.append(outcome.done == 0
                        ? tr("Stopped: Everything Is As It Was")
                        : tr("Stopped: %n Step(s) Could Not Be Taken Back", nullptr, outcome.done));
  } else if (!outcome.failure.isEmpty()) {
    troubles.append(outcome.failure);
  }
  if (troubles.isEmpty()) return;
  services_.prompter.Tell(TroubleMessage(tr("These Tracks Could Not Be Changed :"), troubles));
}

}  // namespace kelvo
