#include "database/ScanImport.h"

#include "database/SafeFileName.h"
#include "database/StandingNames.h"
#include "database/TrackNames.h"
#include "platform/ErrorLog.h"
#include "platform/SystemFacts.h"
#include "platform/Words.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <cerrno>

namespace kelvo {
namespace {

using namespace std::chrono_literals;

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

bool IsLackOfRoom(const Failure& failure) {
  return failure.Number() == ENOSPC || failure.Number() == EDQUOT;
}

}  // namespace

ScanImport::ScanImport(Services services)
    : services_(std::move(services)),
      rows_(services_.loop, services_.prompter),
      drives_(services_.loop, services_.prompter, services_.title),
      search_(services_.loop) {
  connect(&search_, &MediaSearch::Found, this,
          [this](const std::vector<FoundFile>& files) { rows_.Append(files); });
  connect(&search_, &MediaSearch::Progress, this, &ScanImport::Changed);
  connect(&search_, &MediaSearch::Finished, this, [this] {
    words_ = tr("%1 files in the list").arg(rows_.Count());
    if (search_.PassedOver() > 0) {
      words_ += tr(", %1 folders or names could not be read (see the log)").arg(search_.PassedOver());
    }
    Q_EMIT Changed();
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
  words_.clear();
  Q_EMIT Changed();
}

void ScanImport::Stop() {
  search_.Stop();
  stop_ = true;
  if (copy_) copy_->stop = true;
  if (Busy()) Q_EMIT Changed();
}

QString ScanImport::Words() const {
  if (search_.Stopping() || (importing_ && stop_)) return QStringLiteral("Cancelling..Please wait");
  if (Searching())
    return QStringLiteral("Searching") + search_.Folder() + QStringLiteral(" for Mp3/Wav Files");
  return words_;
}

double ScanImport::Percent() const {
  if (Searching()) return search_.Percent();
  if (!importing_ || importRows_ == 0) return 0;
  const auto total = copy_ ? static_cast<double>(copy_->total) : 0;
  const double part = total > 0 ? static_cast<double>(copy_->done) / total : 0;
  return 100.0 * (importRow_ + std::min(part, 1.0)) / importRows_;
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
  deletesSources_ = co_await services_.prompter.Ask(caution) == Answer::Ok;
  Q_EMIT Changed();
}

void ScanImport::Import(const std::vector<int>& rows) {
  if (Busy() || rows.empty()) return;
  // What was just ordered for the names counts.
  rows_.FinishOrders();
  importing_ = true;
  stop_ = false;
  words_.clear();
  importRow_ = 0;
  importRows_ = static_cast<int>(rows.size());
  Q_EMIT Changed();
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

Job<bool> ScanImport::AskForDeletion() {
  if (!deletesSources_) co_return false;
  Prompt question;
  question.text = QStringLiteral("Are You Sure You want To Delete Source Files After Import ?") + kNewLine +
                  QStringLiteral("(This function Dousn't use the Recycle Bin !)");
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Exclamation;
  co_return co_await services_.prompter.Ask(question) == Answer::Yes;
}

Job<> ScanImport::RunImport(std::vector<int> rows) {
  bool asked = false;
  Tally tally;
  try {
    if (co_await AskForNames(rows)) {
      asked = true;
      Q_EMIT Began();
      tally.deletes = co_await AskForDeletion();
      const auto read = [paths = services_.paths] {
        return std::make_shared<StandingNames>(StandingNames::Read(paths));
      };
      const auto standing = co_await services_.loop.Offload(EventLoop::Lane::Apart, read);
      for (importRow_ = 0; importRow_ < importRows_ && !stop_ && !tally.noRoom; ++importRow_) {
        co_await CopyRow(rows[static_cast<std::size_t>(importRow_)], standing, tally);
      }
      tally.stopped = stop_;
    }
  } catch (...) {
    asked = false;
    basHandleError(QStringLiteral(" scan"));
  }
  rows_.Remove(tally.gone);
  if (tally.noRoom) co_await TellNoRoom();
  importing_ = false;
  words_.clear();
  if (asked) {
    Prompt closing;
    closing.text = Summary(tally);
    closing.title = QStringLiteral("File Import");
    closing.icon = PromptIcon::Information;
    services_.prompter.Tell(closing);
    words_ = tr("%1 Tracks Copied Successfully").arg(tally.copied);
  }
  Q_EMIT Changed();
}

Job<> ScanImport::CopyRow(int row, std::shared_ptr<StandingNames> standing, Tally& tally) {
  const QString source = rows_.Row(row).Text(ScanPathColumn);
  StagedName name = StagedNameOf(rows_.Row(row));
  name.artist = standing->ArtistFolder(name.artist);
  const auto look = [source] { return CheckMediaFile(source); };
  const bool fit = co_await services_.loop.Offload(EventLoop::Lane::Apart, look);
  if (!fit) {
    NoteInLog(QStringLiteral("scan: cannot be imported: ") + source);
    ++tally.unfit;
  } else if (standing->InUtility(name)) {
    rows_.SetMark(row, ScanMark::InUtility);
    ++tally.inUtility;
  } else if (standing->InMusic(name) && rows_.Row(row).mark != ScanMark::InDatabase) {
    // A row that is yellow already was picked again: that is the wish to replace.
    rows_.SetMark(row, ScanMark::InDatabase);
    ++tally.inDatabase;
  } else {
    try {
      co_await CopyFileOf(row, name, standing, tally);
    } catch (const Failure& failure) {
      tally.noRoom = IsLackOfRoom(failure);
      if (!tally.noRoom) ++tally.failed;
      NoteInLog(ErrorLog::Compose(std::current_exception(), QStringLiteral(" scan copy")));
    }
  }
  copy_ = nullptr;
}

Job<> ScanImport::CopyFileOf(int row, StagedName name, std::shared_ptr<StandingNames> standing,
                             Tally& tally) {
  words_ = QStringLiteral("Copying ") + name.title + QStringLiteral(" To Utilities Folder");
  Q_EMIT Changed();
  CopyOrder order;
  order.from = rows_.Row(row).Text(ScanPathColumn);
  order.to = StagedPath(services_.paths(Paths::Utility), name);
  const auto prepare = [order, hasRoom = HasRoom, utility = services_.paths(Paths::Utility)] {
    if (!hasRoom(utility, QFileInfo(order.from).size())) return false;
    const QString folder = QFileInfo(order.to).path();
    if (!QDir().mkpath(folder)) throw Failure(QStringLiteral("Cannot make the folder ") + folder, 0, folder);
    return true;
  };
  tally.noRoom = !co_await services_.loop.Offload(EventLoop::Lane::Apart, prepare);
  if (tally.noRoom || stop_) co_return;

  copy_ = std::make_shared<CopyControl>();
  const Timer watch = services_.loop.Every(100ms, [this] { Q_EMIT Changed(); });
  const CopyResult result = co_await CopyFileLater(services_.loop, order, copy_);
  if (result == CopyResult::Stopped) co_return;
  standing->AddStaged(name);
  if (result == CopyResult::Existed) {
    rows_.SetMark(row, ScanMark::InUtility);
    ++tally.inUtility;
    co_return;
  }
  ++tally.copied;
  services_.catalogue.AddStagedFile(order.to);
  rows_.SetMark(row, ScanMark::Copied);
  if (tally.deletes) co_await DeleteSource(row, order.to, tally);
}

Job<> ScanImport::DeleteSource(int row, QString copy, Tally& tally) {
  const QString source = rows_.Row(row).Text(ScanPathColumn);
  const auto remove = [paths = services_.paths, source, copy] { return RemoveSource(paths, source, copy); };
  const bool removed = co_await services_.loop.Offload(EventLoop::Lane::Apart, remove);
  if (removed) {
    tally.gone.push_back(row);
  } else {
    ++tally.sourcesKept;
    NoteInLog(QStringLiteral("scan: the source was not deleted: ") + source);
  }
}

Job<> ScanImport::TellNoRoom() {
  const QString utility = services_.paths(Paths::Utility);
  const auto look = [utility] { return FreeBytes(utility); };
  const std::int64_t free = co_await services_.loop.Offload(EventLoop::Lane::Apart, look);
  Prompt trouble;
  trouble.text = QStringLiteral("Cannot Continue...Not Enough Free Disc Space on Drive ") + utility +
                 kNewLine + QStringLiteral("Free Disc Space : ") +
                 Format000(static_cast<double>(free) / 1048576) + QStringLiteral(" MB");
  trouble.icon = PromptIcon::Critical;
  services_.prompter.Tell(trouble);
}

QString ScanImport::Summary(const Tally& tally) const {
  QStringList lines{QString::number(tally.copied) + QStringLiteral(" Tracks Copied Successfully")};
  const auto count = [&lines](int number, const QString& words) {
    if (number > 0) lines.append(QString::number(number) + words);
  };
  count(tally.inDatabase,
        QStringLiteral(" Track/s Were Not Copied, Which Already Existed In The Main Data Base "
                       "(Highlighted In Yellow)") +
            kNewLine +
            QStringLiteral(
                "If You wish to replace The data base file/s, Please Reselect and Click Import Again !"));
  count(tally.inUtility,
        QStringLiteral(
            " Track/s Not Copied Which Already Existed In The Utilities Folder (Highlighted In Red)") +
            kNewLine + QStringLiteral("These Tracks Cannot Be imported without First Re-Naming"));
  count(tally.unfit, QStringLiteral(" Track/s Not Copied Which Are Gone, Unreadable Or Too Small"));
  count(tally.failed, QStringLiteral(" Track/s Could Not Be Copied (See The Error Log)"));
  count(tally.sourcesKept, QStringLiteral(" Source File/s Were Not Deleted"));
  if (tally.noRoom) {
    lines.append(
        QStringLiteral("The Copy Operation Did Not Fully Complete Due To Insufficiant Disc Space !"));
  }
  if (tally.stopped) lines.append(QStringLiteral("Interupted By User!"));
  return lines.join(kNewLine);
}

}  // namespace kelvo
