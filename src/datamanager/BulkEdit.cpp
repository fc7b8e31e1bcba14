#include "datamanager/BulkEdit.h"

#include "database/FileRun.h"
#include "database/SafeFileName.h"
#include "database/TrackInfo.h"
#include "platform/AppendLine.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/Setting.h"
#include "platform/Words.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QPointer>

#include <algorithm>
#include <cerrno>

namespace kelvo {
namespace {

const QString kTag = QStringLiteral(" dman bulk");
constexpr std::array kLines{InfoLine::Categories, InfoLine::Artists, InfoLine::ReleaseDate};
constexpr int kMostNameBytes = 200;

/// Adds a name to a line, or puts it in the place of all names. False when the line has no room for it.
bool TakeName(const InfoField<ReferenceLine>& field, const QString& base, const QString& name, bool replace,
              TrackInfo& info) {
  ReferenceLine line = info.Get(field);
  if (line.base.isEmpty()) line.base = base;
  if (replace) {
    line.names = {name};
  } else if (!line.names.contains(name, Qt::CaseInsensitive)) {
    if (line.names.size() >= BulkEdit::kMostNames) return false;
    line.names.append(name);
  }
  info.Set(field, line);
  return true;
}

QString Apply(const BulkChange& change, TrackInfo& info) {
  const bool room = (change.genre.isEmpty() ||
                     TakeName(InfoFields::Categories, kAllCategories, change.genre, change.replace, info)) &&
                    (change.artist.isEmpty() ||
                     TakeName(InfoFields::Artists, kAllArtists, change.artist, change.replace, info));
  if (!room) return QStringLiteral("Max 10 References per track Exceeded");
  if (change.year || change.month) {
    ReleaseDate date = info.Get(InfoFields::ReleaseDate);
    if (change.year) date.year = *change.year;
    if (change.month) date.month = *change.month;
    info.Set(InfoFields::ReleaseDate, date);
  }
  return {};
}

}  // namespace

/// What the last run did, to be undone. Its tracks are followed.
struct BulkEdit::LastRun {
  LastRun(const Catalogue& catalogue, std::vector<Mref> picked) : tracks(catalogue, std::move(picked)) {}
  KeptTracks tracks;
  std::vector<Done> done;
};

BulkEdit::BulkEdit(Services services) : services_(std::move(services)) {
  if (!services_.undoFile.isEmpty()) finding_ = FindLastRun();
}
BulkEdit::~BulkEdit() = default;

BulkEdit::Lines BulkEdit::LinesOf(const TrackInfo& info) {
  Lines lines;
  for (std::size_t place = 0; place < kLines.size(); ++place) lines[place] = info.Text(kLines[place]);
  return lines;
}

QString BulkEdit::WhyNot(const BulkChange& change, std::size_t tracks) const {
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
  finding_.Cancel();
  job_ = Run(std::move(once), std::move(change));
}

Job<> BulkEdit::Run(std::vector<Mref> tracks, BulkChange change) {
  stop_ = false;
  troubles_.clear();
  last_ = std::make_unique<LastRun>(services_.catalogue, std::move(tracks));
  LastRun& run = *last_;
  try {
    // First the folders: a file must not bear a name that has none.
    change.artist = co_await Ensure(ReferenceSet::Artists, change.artist);
    change.genre = co_await Ensure(ReferenceSet::Genres, change.genre);
    co_await ForgetLastRun();
    const Change one = [change](TrackInfo& info) { return kelvo::Apply(change, info); };
    for (std::size_t place = 0; place < run.tracks.Count() && !stop_; ++place) {
      Say(QStringLiteral("Changing Track Entries "), place, run.tracks.Count());
      std::optional<Done> done = co_await ChangeOne(run.tracks, place, one, services_.undoFile);
      if (done && done->before != done->after) run.done.push_back(std::move(*done));
    }
  } catch (...) {
    basHandleError(kTag, tr("The tracks could not be changed."));
  }
  Finish(tr("These Tracks Could Not Be Changed :"));
}

QString BulkEdit::WhyNoUndo() const {
  if (Running()) return tr("Tracks are being changed");
  return last_ && !last_->done.empty() ? QString() : tr("Nothing was changed");
}

void BulkEdit::Undo() {
  if (WhyNoUndo().isEmpty()) job_ = RunUndo();
}

Job<> BulkEdit::RunUndo() {
  stop_ = false;
  troubles_.clear();
  LastRun& run = *last_;
  const std::size_t all = run.done.size();
  try {
    while (!run.done.empty() && !stop_) {
      Say(QStringLiteral("Restoring Track Entries "), all - run.done.size(), all);
      const Done done = run.done.back();
      run.done.pop_back();
      const Change back = [done](TrackInfo& info) {
        for (std::size_t line = 0; line < kLines.size(); ++line) {
          if (info.Text(kLines[line]) == done.after[line]) info.SetText(kLines[line], done.before[line]);
        }
        return QString();
      };
      const std::optional<Done> undone = co_await ChangeOne(run.tracks, done.place, back);
      Q_UNUSED(undone)
    }
    if (run.done.empty()) co_await ForgetLastRun();
  } catch (...) {
    basHandleError(kTag, tr("The tracks could not be restored."));
  }
  Finish(tr("These Tracks Could Not Be Restored :"));
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

Job<std::optional<BulkEdit::Done>> BulkEdit::ChangeOne(const KeptTracks& tracks, std::size_t place,
                                                       Change change, QString noteIn) {
  struct Written {
    TrackInfo info;
    Done done;
    QString why;
  };
  if (tracks[place] == Mref::None) co_return std::nullopt;
  const QString name = services_.catalogue.TrackNames[tracks[place]];
  QString why;
  try {
    const auto write = [path = TrackInfoPath(services_.paths, name), change, place, name, noteIn] {
      std::optional<TrackInfo> info = ReadTrackInfo(path);
      if (!info) throw Failure(QStringLiteral("Its info file is gone."), ENOENT, path);
      Written written;
      written.done = {.place = place, .before = LinesOf(*info), .after = {}};
      written.why = change(*info);
      written.done.after = LinesOf(*info);
      const bool other = written.why.isEmpty() && written.done.after != written.done.before;
      if (other && !noteIn.isEmpty())
        AppendWholeLine(noteIn, LineOf({name, written.done.before, written.done.after}));
      if (other) WriteTrackInfo(path, *info);
      written.info = std::move(*info);
      return written;
    };
    const Written written = co_await services_.loop.Offload(EventLoop::Lane::Files, write);
    why = written.why;
    if (why.isEmpty()) {
      // Its number may be another by now; a track that is gone is left.
      if (tracks[place] != Mref::None) services_.catalogue.TakeInfo(tracks[place], written.info);
      co_return written.done;
    }
  } catch (...) {
    why = ErrorLog::Describe(std::current_exception());
    NoteInLog(ErrorLog::Compose(std::current_exception(), kTag));
  }
  troubles_.append(name + QStringLiteral(" - ") + why);
  co_return std::nullopt;
}

// The undo file: a line for each track, its name, what it held and what it was given, joined by commas.

QByteArray BulkEdit::LineOf(const Noted& noted) {
  QStringList fields{noted.name};
  for (const Lines& lines : {noted.before, noted.after}) {
    for (const QString& line : lines) fields.append(line);
  }
  return JoinFields(fields).toUtf8() + '\n';
}

std::vector<BulkEdit::Noted> BulkEdit::ReadNoted(const QString& path) {
  std::vector<Noted> all;
  if (!QFileInfo::exists(path)) return all;
  for (const QByteArray& line : ReadWholeFile(path).split('\n')) {
    const QStringList fields = SplitFields(QString::fromUtf8(line));
    constexpr qsizetype kFields = 7;
    if (fields.size() != kFields) continue;
    all.push_back({fields[0], {fields[1], fields[2], fields[3]}, {fields[4], fields[5], fields[6]}});
  }
  return all;
}

Job<> BulkEdit::FindLastRun() {
  try {
    const auto read = [path = services_.undoFile] { return ReadNoted(path); };
    const std::vector<Noted> noted = co_await services_.loop.Offload(EventLoop::Lane::Files, read);
    if (noted.empty()) co_return;
    QHash<QString, std::size_t> wanted;
    for (std::size_t place = 0; place < noted.size(); ++place) wanted.insert(noted[place].name, place);
    std::vector<Mref> tracks;
    std::vector<Done> done;
    Turn turn(services_.loop);
    QObject listener;
    bool renumbered = false;
    services_.catalogue.Listen(
        &listener, [&renumbered](const TrackRemoved&) { renumbered = true; },
        [&renumbered](const CatalogueReplaced&) { renumbered = true; });
    for (int row = 1; row <= services_.catalogue.LastTrack(); ++row) {
      co_await turn.Yield();
      if (std::exchange(renumbered, false)) {
        // The numbers are others: begin anew.
        row = 0;
        tracks.clear();
        done.clear();
        continue;
      }
      const auto found = wanted.constFind(services_.catalogue.TrackNames[ToMref(row)]);
      if (found == wanted.constEnd()) continue;
      done.push_back({tracks.size(), noted[*found].before, noted[*found].after});
      tracks.push_back(ToMref(row));
    }
    last_ = std::make_unique<LastRun>(services_.catalogue, std::move(tracks));
    last_->done = std::move(done);
    Q_EMIT Changed();
  } catch (...) {
    basHandleError(kTag, tr("What was changed last can't be undone."));
  }
}

Job<> BulkEdit::ForgetLastRun() {
  if (services_.undoFile.isEmpty()) co_return;
  const auto forget = [path = services_.undoFile] { QFile::remove(path); };
  co_await services_.loop.Offload(EventLoop::Lane::Files, forget);
}

void BulkEdit::Say(const QString& words, std::size_t done, std::size_t all) {
  share_ = static_cast<double>(done) / static_cast<double>(std::max<std::size_t>(all, 1));
  words_ = words + QLatin1Char('(') + Format0(share_ * 100) + QStringLiteral("%)");
  Q_EMIT Changed();
}

void BulkEdit::Finish(const QString& head) {
  words_.clear();
  share_ = 0;
  if (!troubles_.isEmpty()) services_.prompter.Tell(TroubleMessage(head, troubles_));
  // The job has ended when those who look hear of it.
  services_.loop.Post([self = QPointer<BulkEdit>(this)] {
    if (self) Q_EMIT self->Changed();
  });
}

}  // namespace kelvo
