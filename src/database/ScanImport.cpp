#include "database/ScanImport.h"

#include "database/SafeFileName.h"
#include "database/StandingNames.h"
#include "database/TrackNames.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>

namespace kelvo {
namespace {

const QString kNewLine = QStringLiteral("\r\n");

/// "Artist Name - Track Title".
bool IsConventional(const QString& title) {
  const QString middle = QStringLiteral(" - ");
  const qsizetype place = title.indexOf(middle);
  return place > 0 && !title.left(place).trimmed().isEmpty() &&
         !title.mid(place + middle.size()).trimmed().isEmpty();
}

/// The name that a row is staged under, whatever was typed into it.
StagedName StagedNameOf(const ScanRow& row) {
  const QString fileName = QFileInfo(row.Text(ScanPathColumn)).fileName();
  StagedName name;
  name.artist = FittingName(SafeFileName(row.Text(ScanArtistColumn)), QString());
  if (name.artist.isEmpty()) name.artist = QStringLiteral("Unknown");
  name.date = SafeFileName(row.Text(ScanDateColumn));
  name.extension = fileName.mid(BaseName(fileName).size());
  const QString ending = QLatin1Char('#') + name.date + QStringLiteral("# #") + name.extension;
  name.title = FittingName(SafeFileName(row.Text(ScanTitleColumn)), ending).chopped(ending.size());
  if (name.title.isEmpty()) name.title = QStringLiteral("Unknown");
  return name;
}

/// Whether `path` lies in one of the database's own folders.
bool InDatabase(const Paths& paths, const QString& path) {
  const QString real = QFileInfo(path).canonicalFilePath();
  for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) {
    const QString folder = QFileInfo(paths(slot)).canonicalFilePath();
    if (!folder.isEmpty() && real.startsWith(folder + QLatin1Char('/'))) return true;
  }
  return false;
}

/// Deletes the source of a copy, if it is still what was copied and no part of the database.
bool RemoveSource(const Paths& paths, const QString& source, const QString& copy) {
  const QFileInfo from(source);
  const QFileInfo to(copy);
  const bool same =
      to.isFile() && from.size() == to.size() && from.canonicalFilePath() != to.canonicalFilePath();
  if (!same || InDatabase(paths, source)) return false;
  return QFile::remove(source);
}

}  // namespace

ScanImport::ScanImport(Services services)
    : services_(std::move(services)),
      rows_(services_.loop, services_.prompter),
      drives_(services_.loop, services_.prompter, services_.title),
      search_(services_.loop),
      run_(services_.loop) {
  run_.OnProgress = [this] { Q_EMIT Changed(); };
  connect(&search_, &MediaSearch::Found, this,
          [this](const std::vector<FoundFile>& files) { rows_.Append(files); });
  connect(&search_, &MediaSearch::Progress, this, &ScanImport::Changed);
  connect(&search_, &MediaSearch::Finished, this, [this] {
    run_.Show(Counted(rows_.Count(), tr("file in the list"), tr("files in the list")) + search_.Exceptions());
  });
}

ScanImport::~ScanImport() {
  // What is being copied off the thread ends by this, not by the job.
  Stop();
}

void ScanImport::Search(const QStringList& folders) {
  if (!Busy()) search_.Start(folders, MediaWalk::Tags::Read);
}

void ScanImport::ClearList() {
  if (Busy()) return;
  rows_.Clear();
  run_.Show({});
}

void ScanImport::Stop() {
  search_.Stop();
  run_.Stop();
  if (Busy()) Q_EMIT Changed();
}

QString ScanImport::Words() const {
  if (search_.Stopping() || (importing_ && run_.Stopping())) return QStringLiteral("Cancelling..Please wait");
  if (Searching())
    return QStringLiteral("Searching") + search_.Folder() + QStringLiteral(" for Mp3/Wav Files");
  return run_.Progress().words;
}

double ScanImport::Percent() const {
  if (Searching()) return search_.Percent();
  return importing_ ? run_.Progress().Percent() : 0;
}

void ScanImport::SetDeletesSources(bool on) {
  if (on == deletesSources_ || warning_.Running()) return;
  if (on) {
    warning_ = AskToDelete();
    return;
  }
  deletesSources_ = false;
  Q_EMIT Changed();
}

Job<> ScanImport::AskToDelete() {
  Prompt caution;
  caution.text = QStringLiteral(
                     "Caution ! Automatic file deletion may cause some programs which rely on the files to "
                     "mal function !") +
                 kNewLine +
                 QStringLiteral("Only Enable if you know that deletions will not effect such programs !");
  caution.buttons = Buttons::OkCancel;
  caution.icon = PromptIcon::Exclamation;
  caution.safe = Answer::Cancel;
  deletesSources_ = co_await services_.prompter.Ask(caution) == Answer::Ok;
  Q_EMIT Changed();
}

void ScanImport::Import(const std::vector<int>& rows) {
  if (Busy() || rows.empty()) return;
  // What was just ordered for the names counts.
  rows_.FinishOrders();
  importing_ = true;
  run_.Reset();
  import_ = RunImport(rows);
}

Job<bool> ScanImport::AskForNames(const std::vector<int>& rows) {
  const auto unconventional = std::count_if(rows.begin(), rows.end(), [this](int row) {
    return !IsConventional(rows_.Row(row).Text(ScanTitleColumn));
  });
  if (unconventional == 0) co_return true;
  Prompt question;
  question.text = QString::number(unconventional) +
                  QStringLiteral(" Track Name/s Are UnConventional !(Artist Name - Track Title)") + kNewLine +
                  QStringLiteral("Some ") + services_.title +
                  QStringLiteral(" Search Functions Require This Format To Work Properly !") + kNewLine +
                  QStringLiteral("Continue With Import ?");
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Question;
  co_return co_await services_.prompter.Ask(question) == Answer::Yes;
}

Job<bool> ScanImport::AskForDeletion(std::size_t files) {
  if (!deletesSources_) co_return false;
  Prompt question;
  question.text = QStringLiteral("Are You Sure You want To Delete Source Files After Import ?") + kNewLine +
                  QStringLiteral("(This function Dousn't use the Recycle Bin !)") + kNewLine + kNewLine +
                  Counted(static_cast<qint64>(files), tr("file is selected."), tr("files are selected."));
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Exclamation;
  question.safe = Answer::No;
  co_return co_await services_.prompter.Ask(question) == Answer::Yes;
}

Job<> ScanImport::RunImport(std::vector<int> rows) {
  bool asked = false;
  Batch batch;
  batch.rows = std::move(rows);
  FileSum sum;
  try {
    if (co_await AskForNames(batch.rows)) {
      asked = true;
      Q_EMIT Began();
      batch.deletes = co_await AskForDeletion(batch.rows.size());
      const auto read = [paths = services_.paths] {
        return std::make_shared<StandingNames>(StandingNames::Read(paths));
      };
      batch.standing = co_await services_.loop.Offload(EventLoop::Lane::Apart, read);
      FileRun::Work work;
      work.files = batch.rows.size();
      work.tag = QStringLiteral(" scan");
      work.name = [this, &batch](std::size_t file) {
        return rows_.Row(batch.rows[file]).Text(ScanTitleColumn);
      };
      work.step = [this, &batch](std::size_t file) { return CopyRow(batch.rows[file], batch); };
      work.after = [this, &batch](std::size_t file, FileOutcome outcome, const QString&) {
        const int row = batch.rows[file];
        MarkRow(row, outcome);
        if (outcome == FileOutcome::Done && !rows_.Row(row).trouble.isEmpty()) ++batch.unplayable;
      };
      sum = co_await run_.Run(std::move(work));
    }
  } catch (...) {
    asked = false;
    basHandleError(QStringLiteral(" scan"), tr("The files cannot be imported."));
  }
  rows_.Remove(batch.gone);
  if (sum.EndedBy(FileOutcome::NoRoom)) co_await TellNoRoom();
  importing_ = false;
  if (asked) {
    Prompt closing;
    closing.text = Summary(sum, batch);
    closing.title = QStringLiteral("File Import");
    closing.icon = PromptIcon::Information;
    services_.prompter.Tell(closing);
  }
  run_.Show(asked ? Counted(sum.Count(FileOutcome::Done), tr("track copied"), tr("tracks copied"))
                  : QString());
}

Job<FileOutcome> ScanImport::CopyRow(int row, Batch& batch) {
  const QString source = rows_.Row(row).Text(ScanPathColumn);
  StagedName name = StagedNameOf(rows_.Row(row));
  name.artist = batch.standing->ArtistFolder(name.artist);
  if (!co_await run_.IsMusic(source)) {
    run_.Note(QStringLiteral("scan: cannot be imported: ") + source);
    co_return FileOutcome::Unfit;
  }
  if (batch.standing->InUtility(name)) co_return FileOutcome::Existed;
  // A row that is yellow already was picked again: that is the wish to replace.
  if (batch.standing->InMusic(name) && rows_.Row(row).mark != ScanMark::InDatabase)
    co_return FileOutcome::InDatabase;
  co_return co_await CopyFileOf(row, name, batch);
}

Job<FileOutcome> ScanImport::CopyFileOf(int row, StagedName name, Batch& batch) {
  run_.At(QStringLiteral("copy"));
  run_.Show(QStringLiteral("Copying ") + name.title + QStringLiteral(" To Utilities Folder"));
  const QString utility = services_.paths(Paths::Utility);
  CopyOrder order;
  order.from = rows_.Row(row).Text(ScanPathColumn);
  order.to = StagedPath(utility, name);
  if (!co_await run_.HasRoom(HasRoom, utility, order.from)) co_return FileOutcome::NoRoom;
  const auto makeFolder = [folder = QFileInfo(order.to).path()] {
    if (!QDir().mkpath(folder)) throw Failure(QStringLiteral("Cannot make the folder ") + folder, 0, folder);
  };
  if (run_.Stopping()) co_return FileOutcome::Stopped;
  co_await services_.loop.Offload(EventLoop::Lane::Apart, makeFolder);
  const FileOutcome outcome = OutcomeOf(co_await run_.Copy(order));
  if (outcome == FileOutcome::Stopped) co_return outcome;
  batch.standing->AddStaged(name);
  if (outcome != FileOutcome::Done) co_return outcome;
  services_.catalogue.AddStagedFile(order.to);
  if (batch.deletes) co_await DeleteSource(row, order.to, batch);
  co_return outcome;
}

void ScanImport::MarkRow(int row, FileOutcome outcome) {
  switch (outcome) {
    case FileOutcome::Done:
      rows_.SetMark(row, ScanMark::Copied);
      break;
    case FileOutcome::Existed:
      rows_.SetMark(row, ScanMark::InUtility);
      break;
    case FileOutcome::InDatabase:
      rows_.SetMark(row, ScanMark::InDatabase);
      break;
    default:
      break;
  }
}

Job<> ScanImport::DeleteSource(int row, QString copy, Batch& batch) {
  const QString source = rows_.Row(row).Text(ScanPathColumn);
  const auto remove = [paths = services_.paths, source, copy] { return RemoveSource(paths, source, copy); };
  const bool removed = co_await services_.loop.Offload(EventLoop::Lane::Apart, remove);
  if (removed) {
    batch.gone.push_back(row);
  } else {
    ++batch.sourcesKept;
    run_.Note(QStringLiteral("scan: the source was not deleted: ") + source);
  }
}

Job<> ScanImport::TellNoRoom() {
  const QString utility = services_.paths(Paths::Utility);
  const QString room = co_await RoomWords(services_.loop, utility);
  Prompt trouble;
  trouble.text =
      QStringLiteral("Cannot Continue...Not Enough Free Disc Space on Drive ") + utility + kNewLine + room;
  trouble.icon = PromptIcon::Critical;
  services_.prompter.Tell(trouble);
}

QString ScanImport::Summary(const FileSum& sum, const Batch& batch) const {
  QStringList lines{QString::number(sum.Count(FileOutcome::Done)) +
                    QStringLiteral(" Tracks Copied Successfully")};
  AddCount(lines, batch.unplayable, QStringLiteral(" Of Them Cannot Be Played (See Their Rows)"));
  AddCount(lines, sum.Count(FileOutcome::InDatabase),
           QStringLiteral(" Track/s Were Not Copied, Which Already Existed In The Main Data Base "
                          "(Highlighted In Yellow)") +
               kNewLine +
               QStringLiteral(
                   "If You wish to replace The data base file/s, Please Reselect and Click Import Again !"));
  AddCount(lines, sum.Count(FileOutcome::Existed),
           QStringLiteral(
               " Track/s Not Copied Which Already Existed In The Utilities Folder (Highlighted In Red)") +
               kNewLine + QStringLiteral("These Tracks Cannot Be imported without First Re-Naming"));
  AddCount(lines, sum.Count(FileOutcome::Unfit),
           QStringLiteral(" Track/s Not Copied Which Are Gone, Unreadable Or Too Small"));
  AddCount(lines, sum.Count(FileOutcome::Failed), QStringLiteral(" Track/s Could Not Be Copied:"));
  lines += FirstOf(sum.troubles);
  AddCount(lines, batch.sourcesKept, QStringLiteral(" Source File/s Were Not Deleted"));
  if (sum.EndedBy(FileOutcome::NoRoom)) {
    lines.append(
        QStringLiteral("The Copy Operation Did Not Fully Complete Due To Insufficiant Disc Space !"));
  }
  if (run_.Stopping()) lines.append(QStringLiteral("Interupted By User!"));
  return lines.join(kNewLine);
}

}  // namespace kelvo
