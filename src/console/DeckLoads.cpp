// How a track comes into a deck.

#include "console/DeckEngine.h"
#include "database/TrackNames.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <limits>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kOpenPoll = 250ms;

const QString kLoadTag = QStringLiteral(" loaddk");

/// The second to the fifth entry of a reference line, or "None".
QString ListForDisplay(const QString& line) {
  const QStringList fields = line.split(QLatin1Char(','));
  if (fields.size() <= 1) return QStringLiteral("None");
  return fields.mid(1, 4).join(QStringLiteral(": "));
}

/// As it stands: a number that is neither soft nor strong has its meaning too.
int Style(const QString& text) {
  return WholeNumber(text, std::numeric_limits<qint16>::min(), std::numeric_limits<qint16>::max());
}

QString LastField(const QString& list) {
  return list.section(QLatin1Char(','), -1);
}

}  // namespace

/// What the track info file said.
struct DeckEngine::TrackInfoFile {
  std::optional<TextFile> lines;
  std::exception_ptr failure;  ///< it is there and cannot be read
};

bool DeckEngine::FadeFailsLoad(Deck deck) const {
  const int side = services_.state.CrossPan;
  const int fromRest = deck == Deck::One ? side + 200 : 200 - side;
  return services_.state.TransitionActive && fromRest < 100;
}

bool DeckEngine::LoadCommandActs(Deck deck) const {
  return services_.state.TransitionActive ? FadeFailsLoad(deck) : !decks_[deck].Loading;
}

bool DeckEngine::Holds(Deck deck, const QueueEntry& row) const {
  const auto same = [&row](const QString& title, const QString& path) {
    return title.compare(row.Text(TrackColumn), Qt::CaseInsensitive) == 0 ||
           (!path.isEmpty() && path == row.Text(PathColumn));
  };
  return same(decks_[deck].Title, decks_[deck].FilePath) ||
         same(BaseNameOf(coming_[deck].request.path), coming_[deck].request.path);
}

void DeckEngine::LoadCommand(Deck deck, Disks::Patience patience) {
  DeckRecord& record = decks_[deck];
  const ConsoleState& state = services_.state;
  if (state.TransitionActive) {
    record.LoadFailed = FadeFailsLoad(deck);
    Q_EMIT Changed(deck);
    return;
  }
  if (std::exchange(record.LoadFailed, false)) Q_EMIT Changed(deck);
  if (record.Loading) return;
  const std::optional<LoadRequest> request = FindRequest();
  if (!state.PreviewOn) {
    if (!request) return;
    const QueueEntry& row = services_.queue.Row(services_.queue.Selected());
    if (row.Text(TrackColumn).compare(record.Title, Qt::CaseInsensitive) == 0) return;
    if (!state.AutoPlayOn) {
      if (record.Live()) {
        services_.panel.Open(
            PlayingLive(deck, QStringLiteral("LOAD NEW TRACK"), PanelAction::LoadTrack, *request));
        return;
      }
      if (Holds(Other(deck), row)) {
        services_.panel.Open(
            {QStringLiteral("TRACK ALREADY LOADED IN ") + DeckWord(Other(deck)) + QStringLiteral(" !\r\n"),
             QStringLiteral("LOAD SAME TRACK"), PanelAction::LoadTrack, deck, *request});
        return;
      }
    }
  }
  if (request) {
    LoadTrack(deck, *request, patience);
  } else {
    EndLoad(deck, DeckLoad::Dropped);
  }
}

std::optional<LoadRequest> DeckEngine::FindRequest() {
  LoadRequest request;
  if (services_.state.PreviewOn) {
    const std::optional<Mref> picked = PickPreview ? PickPreview() : std::nullopt;
    if (!picked) return std::nullopt;
    request.track = *picked;
    request.path = services_.catalogue.TrackPaths(*picked);
    return request;
  }
  const int selected = services_.queue.Selected();
  if (selected == 0) return std::nullopt;
  const QueueEntry& row = services_.queue.Row(selected);
  request.row = row.Id;
  request.track = row.Track();
  request.path = row.Text(PathColumn);
  request.requestText = row.Text(ReqdataColumn);
  return request;
}

void DeckEngine::LoadDeck(Deck deck, Disks::Patience patience) {
  if (decks_[deck].Loading) return;
  if (const std::optional<LoadRequest> request = FindRequest()) {
    LoadTrack(deck, *request, patience);
  } else {
    EndLoad(deck, DeckLoad::Dropped);
  }
}

void DeckEngine::LoadTrack(Deck deck, const LoadRequest& request, Disks::Patience patience) {
  DeckRecord& record = decks_[deck];
  if (record.Loading) return;
  record.Loading = true;
  coming_[deck] = {request, patience};
  record.Info.clear();
  Q_EMIT Changed(deck);
  loads_[deck] = RunLoad(deck);
}

Job<> DeckEngine::RunLoad(Deck deck) {
  DeckLoad outcome = DeckLoad::Dropped;
  try {
    outcome = co_await Load(deck);
  } catch (...) {
    basHandleError(kLoadTag);
  }
  EndLoad(deck, outcome);
}

Job<DeckLoad> DeckEngine::Load(Deck deck) {
  const QString path = coming_[deck].request.path;
  Job<TrackInfoFile> info = ReadInfo(TrackInfoPath(services_.paths, BaseNameOf(path)));
  const auto look = [path] { return CheckMediaFile(path); };
  const std::optional<bool> good = co_await services_.disks.Look(path, look, coming_[deck].patience);
  if (!good) co_return DeckLoad::NoAnswer;
  if (!*good) co_return DeckLoad::BadFile;
  const TrackInfoFile file = co_await std::move(info);
  openWatches_[deck] = {0, services_.loop.Elapsed(), false,
                        services_.loop.Every(kOpenPoll, [this, deck] { WatchOpen(deck); })};
  const OpenResult opened = co_await players_[deck]->Open(path);
  if (opened.kind == OpenResult::Kind::Superseded) co_return DeckLoad::Dropped;
  if (opened.kind == OpenResult::Kind::Failed) {
    NoteInLog(opened.error);
    co_return DeckLoad::BadFile;
  }
  TakeTrack(deck, coming_[deck].request, file);
  co_return DeckLoad::Loaded;
}

Job<DeckEngine::TrackInfoFile> DeckEngine::ReadInfo(QString path) {
  TrackInfoFile file;
  try {
    const auto read = [path]() -> std::optional<TextFile> {
      const QString found = FindFile(path);
      if (found.isEmpty()) return std::nullopt;
      return TextFile::Read(found);
    };
    // Whatever its disk does, a track can be played with the defaults.
    auto lines = co_await services_.disks.Look(path, read, Disks::Patience::Air);
    if (lines) file.lines = std::move(*lines);
    if (!lines) NoteInLog(QStringLiteral("The disk of %1 does not answer: the defaults are taken").arg(path));
  } catch (...) {
    file.failure = std::current_exception();
  }
  co_return file;
}

void DeckEngine::WatchOpen(Deck deck) {
  OpenWatch& watch = openWatches_[deck];
  const Nanoseconds now = services_.loop.Elapsed();
  const std::uint64_t steps = players_[deck]->OpenSteps();
  if (std::exchange(watch.steps, steps) != steps) watch.movedAt = now;
  const Nanoseconds waited = now - watch.movedAt;
  if (waited >= kOpenPoll * 2 && !std::exchange(watch.suspected, true))
    services_.disks.Suspect(coming_[deck].request.path);
  if (waited >= Disks::kLookLimit) GiveUpLoad(deck);
}

void DeckEngine::GiveUpLoad(Deck deck) {
  if (!decks_[deck].Loading) return;
  loads_[deck].Cancel();
  EndLoad(deck, DeckLoad::NoAnswer);
}

void DeckEngine::EndLoad(Deck deck, DeckLoad outcome) {
  DeckRecord& record = decks_[deck];
  openWatches_[deck].timer.Stop();
  const QString path = std::exchange(coming_[deck], Coming()).request.path;
  record.Loading = false;
  record.LastLoad = outcome;
  if (outcome == DeckLoad::BadFile) record.Info = QStringLiteral("Bad File ") + path;
  if (outcome == DeckLoad::NoAnswer) {
    record.Info = tr("Disk Does Not Answer : ") + path;
    NoteInLog(QStringLiteral("The load of %1 was given up: its disk does not answer").arg(path));
  }
  Q_EMIT Changed(deck);
  if (OnLoaded) OnLoaded(deck, outcome);
}

void DeckEngine::TakeTrack(Deck deck, const LoadRequest& request, const TrackInfoFile& file) {
  DeckRecord& record = decks_[deck];
  const DeckRecord old = record;
  const ConsoleState& state = services_.state;

  // A button still held was meant for the track before.
  fastMoves_[deck].Cancel();
  moved_[deck] = false;
  record.Title = ProperCase(BaseNameOf(request.path));
  record.CatalogueIndex = request.track;
  record.Row = request.row;
  record.PlayedOut = false;
  const double known = services_.catalogue.TrackDurations(request.track);
  record.Duration = known > 0 ? known : players_[deck]->Duration();
  record.Position = 0;
  record.RemainSeconds = RemainOf(record);
  record.State = DeckState::Loaded;
  record.FilePath = request.path;

  if (file.failure) basHandleError(kLoadTag, file.failure);
  if (file.lines) {
    TakeTrackInfo(record, *file.lines);
  } else {
    const TrackDefaults& defaults = services_.defaults;
    record.TrackInfoText = QStringLiteral("Undefined Media File");
    record.Info = QStringLiteral("Default - Track Start:");
    record.PlayMode = QString::number(defaults.DefaultFade) + QStringLiteral(",1,1");
    record.FadePosition = QString::number(defaults.DefaultDelta);
    record.FadeSpeed = QString::number(defaults.DefaultFadeSpeed);
    record.StartStyle = defaults.DefaultStartType;
    record.EndStyle = defaults.DefaultEndType;
  }
  if (!state.PreviewOn && !request.requestText.isEmpty()) {
    const QString stars(std::max(infoTextWidth_ - 8, 1), QLatin1Char('*'));
    record.TrackInfoText.prepend(stars + QStringLiteral("REQUESTS") + stars + QStringLiteral("\r\n") +
                                 request.requestText + QStringLiteral("\r\n"));
  }

  if (old.State != DeckState::Empty && old.Position > 0 && old.Position < old.Duration) {
    services_.queue.MarkQueueRow(old.CatalogueIndex, QueueStatus::Faded, old.Row);
  }
  // Automatic play looks at the track first.
  if (!state.AutoPlayOn) TakeFadeIn(deck);
  if (!state.PlaysByItself()) RecordSession(SessionCode::Loaded, deck);
}

void DeckEngine::TakeTrackInfo(DeckRecord& record, const TextFile& lines) {
  const auto line = [&lines](InfoLine::Line number) { return lines.Line(number); };
  const auto word = [](int style) { return style > 0 ? QStringLiteral("Strong") : QStringLiteral("Soft"); };
  record.PlayMode = CompletePlayMode(line(InfoLine::PlayMode));
  record.FadePosition = line(InfoLine::FadePosition);
  record.FadeSpeed = line(InfoLine::FadeSpeed);
  record.StartStyle = Style(line(InfoLine::StartStyle));
  record.EndStyle = line(InfoLine::EndStyle).trimmed().isEmpty() ? services_.defaults.DefaultEndType
                                                                 : Style(line(InfoLine::EndStyle));

  const QString gap = QStringLiteral("   ");
  const QString lineBreak = QStringLiteral("\r\n");
  QString text = QStringLiteral("Date : ") + line(InfoLine::ReleaseDate) + gap + QStringLiteral("Hi Pos : ") +
                 line(InfoLine::HiPos) + gap + QStringLiteral("BPM : ") + line(InfoLine::Bpm) + gap +
                 QStringLiteral("Dur : ") + MinutesSeconds(record.Duration) + lineBreak;
  text += QStringLiteral("Genres  ") + ListForDisplay(line(InfoLine::Categories)) + lineBreak;
  text += QStringLiteral("Artists   ") + ListForDisplay(line(InfoLine::Artists)) + lineBreak;
  text += QStringLiteral("Albums  ") + ListForDisplay(line(InfoLine::Albums)) + lineBreak;
  for (qsizetype number = InfoLine::Comments; number < lines.Count(); ++number) {
    const QString comment = lines.Line(number);
    if (!comment.isEmpty()) text += comment + lineBreak;
  }
  record.TrackInfoText = text;

  record.Info = QStringLiteral("Starts: ") + word(record.StartStyle) + QStringLiteral(" : ") +
                QStringLiteral("Ends: ") + word(record.EndStyle);
}

void DeckEngine::TakeFadeIn(Deck deck) {
  const DeckRecord& record = decks_[deck];
  const ConsoleState& state = services_.state;
  const bool fadesIn = Val(LastField(record.PlayMode)) > 1 && Val(LastField(record.FadePosition)) > 3;
  if (services_.settings.AfadeSet && fadesIn && record.FadeSpeed.contains(QLatin1Char(',')) && OnFadeSpeed) {
    OnFadeSpeed(50 - WholeNumber(record.FadeSpeed.section(QLatin1Char(','), 1, 1), 0, 50));
  }
  if (state.AutoPlayOn && !state.PreviewOn && CheckFadeOverride) CheckFadeOverride(deck);
}

}  // namespace kelvo
