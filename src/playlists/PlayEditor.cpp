#include "playlists/PlayEditor.h"

#include "database/DatabaseSettings.h"
#include "database/SafeFileName.h"
#include "database/TrackNames.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QDir>
#include <QFileInfo>
#include <QPointer>

#include <cerrno>

namespace kelvo {

namespace {

const QString kTag = QStringLiteral(" playedit");
constexpr int kFirstYear = 1950;
constexpr double kMegabyte = 0x100000;
/// So many names of a set a track may bear.
constexpr qsizetype kMostNames = 10;
/// So long a name may be: it becomes a folder's.
constexpr qsizetype kMostNameBytes = 255;
constexpr std::array kSets{ReferenceSet::Genres, ReferenceSet::Artists, ReferenceSet::Albums};

/// Those that are there are left alone.
void MakeFolders(const QStringList& folders) {
  for (const QString& folder : folders) {
    if (!QDir().mkpath(folder)) throw Failure(QStringLiteral("The folder can't be made."), 0, folder);
  }
}

}  // namespace

/// What was found of a track.
struct PlayEditor::FileState {
  std::optional<TrackInfo> info;
  qint64 bytes = 0;  ///< of the music file
};

PlayEditor::PlayEditor(Services services)
    : services_(std::move(services)), wave_(services_.loop, services_.cacheFolder) {
  services_.desk->OnTrialChanged = [this] { Q_EMIT Changed(); };
  FollowCatalogue();
}

PlayEditor::~PlayEditor() {
  services_.desk->OnTrialChanged = nullptr;
  services_.desk->StopTrial();
}

void PlayEditor::FollowCatalogue() {
  services_.catalogue.Listen(
      this,
      [this](const TrackRenamed& renamed) {
        if (renamed.track != track_) return;
        path_ = renamed.path;
        Q_EMIT Changed();
      },
      [this](const TrackRemoved& removed) {
        if (track_ == Mref::None) return;
        track_ = removed.Renumbered(track_);
        if (track_ == Mref::None) Lose(tr("The track is no longer in the library"));
      },
      [this](const CatalogueReplaced&) {
        if (track_ == Mref::None) return;
        track_ = services_.catalogue.Find(path_);
        if (track_ == Mref::None) Lose(tr("The track is no longer in the library"));
      });
}

void PlayEditor::Lose(const QString& why) {
  ready_ = false;
  durationOpen_ = false;
  notice_ = why;
  Q_EMIT Changed();
}

TrackDefaults PlayEditor::Defaults() const {
  return ReadTrackDefaults(services_.settings);
}

void PlayEditor::Tell(const QString& text, PromptIcon icon) {
  Prompt message;
  message.text = text;
  message.icon = icon;
  services_.prompter.Tell(message);
}

QString PlayEditor::BaseName() const {
  return kelvo::BaseName(QFileInfo(path_).fileName());
}

QString PlayEditor::InfoPath() const {
  return TrackInfoPath(services_.paths, BaseName());
}

QStringList PlayEditor::Years() const {
  QStringList years;
  for (int year = services_.loop.Now().date().year(); year >= kFirstYear; --year)
    years.append(QString::number(year));
  return years;
}

const QStringList& PlayEditor::KnownNames(std::size_t set) const {
  return services_.catalogue.References(kSets[set]);
}

QString PlayEditor::WhyNoEdit() const {
  if (!ready_) return notice_.isEmpty() ? tr("No track is open") : notice_;
  if (saving_) return tr("It is being saved");
  return durationOpen_ ? tr("The duration is being edited") : QString();
}

// The track.

void PlayEditor::Open(const QString& path) {
  // What is being saved is not dropped; changes to this very track stay as they are.
  if (path == path_ && (saving_ || Dirty())) {
    wave_.Make(path_);
    Q_EMIT Changed();
  } else if (!saving_) {
    opening_ = RunOpen(path);
  }
}

Job<> PlayEditor::RunOpen(QString path) {
  try {
    const bool may = co_await MayClose();
    if (!may) co_return;
    trial_.Cancel();
    work_.Cancel();
    services_.desk->StopTrial();
    path_ = path;
    track_ = services_.catalogue.Find(path);
    if (track_ == Mref::None) {
      Lose(tr("It is no track of the library"));
      co_return;
    }
    Lose(tr("The file is being read"));
    wave_.Make(path);
    const auto look = [path, infoPath = InfoPath()] {
      return FileState{ReadTrackInfo(infoPath), QFileInfo(path).size()};
    };
    const std::optional<FileState> found = co_await services_.disks.Look(InfoPath(), look);
    if (found) {
      TakeFile(*found);
    } else {
      Lose(tr("Its disk does not answer: it can't be edited now"));
    }
  } catch (...) {
    Lose(tr("Its info file can't be read"));
    basHandleError(kTag, tr("What is known of %1 could not be read.").arg(BaseName()));
  }
}

void PlayEditor::TakeFile(const FileState& file) {
  const TrackDefaults defaults = Defaults();
  fileMissing_ = !file.info.has_value();
  before_ = fileMissing_ ? DefaultPlayEdit(defaults) : ReadPlayEdit(*file.info, defaults);
  edit_ = before_;
  rereadDuration_ = edit_.duration;
  sizeWords_ = Format000(static_cast<double>(file.bytes) / kMegabyte) + QStringLiteral(" Mb");
  notice_ = fileMissing_ ? tr("It has no info file: what you save counts until the program ends") : QString();
  ready_ = true;
  Q_EMIT Changed();
  Q_EMIT Opened();
}

void PlayEditor::Leave() {
  trial_.Cancel();
  services_.desk->StopTrial();
  wave_.Stop();
  services_.desk->Left();
  // Another form took its place: the changes wait for it to come back, or for the question at the end.
  durationOpen_ = false;
  if (saving_ || Dirty()) return;
  opening_.Cancel();
  work_.Cancel();
  path_.clear();
  track_ = Mref::None;
  Lose({});
}

Job<bool> PlayEditor::MayClose() {
  if (saving_) co_return false;
  if (!Dirty()) co_return true;
  Prompt question;
  question.text = tr("Save Changes ?");
  question.buttons = Buttons::YesNoCancel;
  question.icon = PromptIcon::Question;
  const Answer answer = co_await services_.prompter.Ask(question);
  if (answer == Answer::Yes) {
    const bool saved = co_await RunSave();
    co_return saved;
  }
  if (answer != Answer::No) co_return false;
  edit_ = before_;
  Q_EMIT Opened();
  Q_EMIT Changed();
  co_return true;
}

void PlayEditor::Change(const std::function<void(PlayEdit&)>& change) {
  if (!WhyNoEdit().isEmpty()) return;
  change(edit_);
  Q_EMIT Changed();
}

// The names.

std::optional<QString> PlayEditor::AddName(std::size_t set, const QString& text) {
  if (!WhyNoEdit().isEmpty()) return std::nullopt;
  const QString name = SafeFileName(text);
  QStringList& names = edit_.names[set];
  if (name.isEmpty() || names.contains(name, Qt::CaseInsensitive)) return std::nullopt;
  QString refusal;
  if (IsInternalName(name)) refusal = QStringLiteral("Reserved Name !");
  if (name.toUtf8().size() > kMostNameBytes) refusal = tr("The Name Is Too Long !");
  if (names.size() >= kMostNames)
    refusal = QStringLiteral("Cannot Add More References !\r\n") + BaseName() +
              QStringLiteral(" - Max 10 References per track Exceeded");
  if (!refusal.isEmpty()) {
    Tell(refusal);
    return std::nullopt;
  }
  names.append(name);
  Q_EMIT Changed();
  return name;
}

QString PlayEditor::WhyNoRemove(std::size_t set, int row) const {
  const QString why = WhyNoEdit();
  if (!why.isEmpty()) return why;
  if (row < 0 || row >= edit_.names[set].size()) return tr("No name is selected");
  return set == 0 && edit_.names[set].size() < 2 ? tr("A track keeps its last genre") : QString();
}

void PlayEditor::RemoveName(std::size_t set, int row) {
  if (!WhyNoRemove(set, row).isEmpty()) return;
  edit_.names[set].removeAt(row);
  Q_EMIT Changed();
}

int PlayEditor::MoveName(std::size_t set, int row, int step) {
  QStringList& names = edit_.names[set];
  const int to = row + step;
  const bool moves = WhyNoEdit().isEmpty() && row >= 0 && row < names.size() && to >= 0 && to < names.size();
  if (!moves) return row;
  names.swapItemsAt(row, to);
  Q_EMIT Changed();
  return to;
}

QStringList PlayEditor::NewNames(std::size_t set) const {
  QStringList names = edit_.names[set];
  if (names == before_.names[set]) return {};
  const QStringList& known = KnownNames(set);
  names.removeIf([&known](const QString& name) { return known.contains(name, Qt::CaseInsensitive); });
  return names;
}

// Saving.

bool PlayEditor::CheckFields() {
  const bool newDate = edit_.year != before_.year || edit_.month != before_.month;
  if (newDate && !CheckDate(services_.prompter, InfoFields::ReleaseDate.text({edit_.year, edit_.month})))
    return false;
  const auto bad = [](const QString& text, const QString& before) {
    return text != before && !IsFigure(text);
  };
  if (!bad(edit_.bpm, before_.bpm) && !bad(edit_.hi, before_.hi)) return true;
  Tell(tr("Bpm And Hi Pos Must Be Numbers !"));
  return false;
}

void PlayEditor::Save() {
  if (WhyNoEdit().isEmpty() && !work_.Running()) work_ = RunSaveAndClose();
}

Job<> PlayEditor::RunSaveAndClose() {
  const bool saved = co_await RunSave();
  // Later: the window that closes then drops this job.
  if (saved)
    services_.loop.Post([self = QPointer(this)] {
      if (self) Q_EMIT self->Saved();
    });
}

Job<bool> PlayEditor::RunSave() {
  if (!CheckFields()) co_return false;
  trial_.Cancel();
  services_.desk->StopTrial();
  saving_ = true;
  Q_EMIT Changed();
  bool saved = false;
  try {
    saved = co_await WriteAndTell();
  } catch (const Failure& failure) {
    NoteInLog(QStringLiteral("%1: %2").arg(failure.Source(), QString::fromUtf8(failure.what())));
    if (failure.Number() == ENOENT) {
      Tell(QStringLiteral("Could Not Save info File !"));
    } else {
      basHandleError(kTag, tr("The changes to %1 could not be saved.").arg(BaseName()));
    }
  } catch (...) {
    basHandleError(kTag, tr("The changes to %1 could not be saved.").arg(BaseName()));
  }
  saving_ = false;
  Q_EMIT Changed();
  co_return saved;
}

Job<bool> PlayEditor::WriteAndTell() {
  const TrackDefaults defaults = Defaults();
  std::array<QStringList, kNameSets> added;
  QStringList folders;
  constexpr std::array kFolders{Paths::Categories, Paths::Artists, Paths::Albums};
  for (std::size_t set = 0; set < kNameSets; ++set) {
    added[set] = NewNames(set);
    for (const QString& name : std::as_const(added[set]))
      folders.append(services_.paths(kFolders[set]) + QLatin1Char('/') + name);
  }
  const auto write = [path = InfoPath(), folders, before = before_, edit = edit_, defaults,
                      missing = fileMissing_] {
    const std::optional<TrackInfo> found = ReadTrackInfo(path);
    if (!found && !missing) throw Failure(QStringLiteral("The file is gone."), ENOENT, path);
    // First: a file must not bear a name that has no folder.
    MakeFolders(folders);
    TrackInfo info = found ? *found : TrackInfo();
    const PlayEdit now = found ? ReadPlayEdit(info, defaults) : before;
    WritePlayEdit(MergedEdit(before, edit, now), defaults, info);
    if (found) {
      WriteTrackInfo(path, info);
    } else {
      info.Set(InfoFields::GainRecord, std::nullopt);
    }
    return info;
  };
  const TrackInfo info = co_await services_.loop.Offload(EventLoop::Lane::Files, write);
  before_ = edit_ = ReadPlayEdit(info, defaults);
  for (std::size_t set = 0; set < kNameSets; ++set) {
    for (const QString& name : std::as_const(added[set])) services_.catalogue.AddReference(kSets[set], name);
  }
  services_.catalogue.TakeInfo(track_, info);
  co_return true;
}

}  // namespace kelvo
