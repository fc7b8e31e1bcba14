#include "database/JingleImport.h"

#include "database/FolderListing.h"
#include "database/TrackNames.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QFile>
#include <QFileInfo>

#include <algorithm>
#include <array>
#include <cerrno>
#include <utility>

namespace kelvo {
namespace {

using namespace std::chrono_literals;

const QString kNewLine = QStringLiteral("\r\n");

/// Whether the file belongs to the operating system.
bool IsSystemFile(const QString& path) {
  static constexpr std::array kFolders = {"/usr/", "/etc/", "/bin/", "/lib/", "/boot/", "/sbin/", "/opt/"};
  // Another system's disk may be mounted anywhere.
  if (path.contains(QStringLiteral("/WINDOWS/"), Qt::CaseInsensitive)) return true;
  return std::any_of(kFolders.begin(), kFolders.end(),
                     [&path](const char* folder) { return path.startsWith(QLatin1StringView(folder)); });
}

}  // namespace

QString JingleRow::SizeText() const {
  return MegabytesText(size);
}

JingleImport::JingleImport(Services services)
    : services_(std::move(services)),
      drives_(services_.loop, services_.prompter, services_.title),
      search_(services_.loop),
      run_(services_.loop) {
  run_.OnProgress = [this] { Q_EMIT Changed(); };
  connect(&search_, &MediaSearch::Found, this, &JingleImport::Append);
  connect(&search_, &MediaSearch::Progress, this, &JingleImport::Changed);
  connect(&search_, &MediaSearch::Finished, this, [this] {
    End(Counted(rows_.Count(), tr("file found"), tr("files found")) + search_.Exceptions());
  });
  services_.catalogue.Listen(this, [this](const JingleChanged& change) { Follow(change); });
}

JingleImport::~JingleImport() {
  Stop();
}

void JingleImport::Search(const QString& folder) {
  if (Busy() || folder.isEmpty()) return;
  rows_.TakeAll();
  search_.Start({folder}, MediaWalk::Tags::Leave);
}

void JingleImport::Append(const std::vector<FoundFile>& files) {
  std::vector<JingleRow> fresh;
  for (const FoundFile& file : files) {
    fresh.push_back({QFileInfo(file.path).fileName(), file.size, file.path, file.trouble});
  }
  rows_.Append(std::move(fresh));
}

void JingleImport::Stop() {
  search_.Stop();
  run_.Stop();
}

QString JingleImport::Words() const {
  if (!Searching()) return run_.Progress().words;
  return QStringLiteral("Searching ") + search_.Folder() + QStringLiteral(" (") + Format0(search_.Percent()) +
         QStringLiteral(" %)");
}

double JingleImport::Percent() const {
  if (Searching()) return search_.Percent();
  return working_ ? run_.Progress().Percent() : 0;
}

void JingleImport::Begin() {
  working_ = true;
  run_.Reset();
}

void JingleImport::End(const QString& words) {
  working_ = false;
  run_.Show(words);
}

std::vector<JingleRow> JingleImport::Picked(const std::vector<int>& rows) const {
  std::vector<JingleRow> picked;
  picked.reserve(rows.size());
  for (const int row : rows) picked.push_back(rows_[row]);
  return picked;
}

void JingleImport::Import(const std::vector<int>& rows) {
  if (Busy() || rows.empty()) return;
  Begin();
  work_ = RunImport(Picked(rows));
}

Job<> JingleImport::RunImport(std::vector<JingleRow> picked) {
  FileSum sum;
  try {
    const auto read = [folder = services_.paths(Paths::Jingles)] {
      auto standing = std::make_shared<QSet<QString>>();
      for (const QString& name : ListFolder(folder, EntryKind::Files).names) standing->insert(name.toUpper());
      return standing;
    };
    const auto standing = co_await services_.loop.Offload(EventLoop::Lane::Apart, read);
    FileRun::Work work;
    work.files = picked.size();
    work.tag = QStringLiteral(" jingle import");
    work.name = [&picked](std::size_t file) { return picked[file].name; };
    work.step = [this, &picked, standing](std::size_t file) { return ImportOne(picked[file], standing); };
    sum = co_await run_.Run(std::move(work));
  } catch (...) {
    basHandleError(QStringLiteral(" jingle import"), tr("The jingles cannot be imported."));
    End({});
    co_return;
  }
  Prompt closing;
  closing.icon = PromptIcon::Exclamation;
  if (sum.EndedBy(FileOutcome::NoRoom)) {
    const QString room = co_await RoomWords(services_.loop, services_.paths(Paths::Jingles));
    closing.text = QStringLiteral("Insufficient Disc space !") + kNewLine + room;
    services_.prompter.Tell(closing);
  }
  closing.text = Summary(sum, picked);
  closing.icon = PromptIcon::Information;
  services_.prompter.Tell(closing);
  End(Counted(sum.Count(FileOutcome::Done), tr("file imported"), tr("files imported")));
}

Job<FileOutcome> JingleImport::ImportOne(JingleRow row, std::shared_ptr<QSet<QString>> standing) {
  const QString folder = services_.paths(Paths::Jingles);
  run_.Show(QStringLiteral("Importing ") + row.name);
  if (!co_await run_.IsMusic(row.path)) co_return FileOutcome::Unfit;
  if (standing->contains(row.name.toUpper())) co_return FileOutcome::Existed;
  if (!co_await run_.HasRoom(HasRoom, folder, row.path)) co_return FileOutcome::NoRoom;
  CopyOrder order;
  order.from = row.path;
  order.to = folder + QLatin1Char('/') + row.name;
  const FileOutcome outcome = OutcomeOf(co_await run_.Copy(order));
  if (outcome != FileOutcome::Done) co_return outcome;
  standing->insert(row.name.toUpper());
  services_.catalogue.AddJingle(order.to);
  co_return outcome;
}

QString JingleImport::Summary(const FileSum& sum, const std::vector<JingleRow>& picked) {
  QStringList lines{QString::number(sum.Count(FileOutcome::Done)) +
                    QStringLiteral(" Files Were Imported Successfully !")};
  int unplayable = 0;
  for (std::size_t file = 0; file < sum.outcomes.size(); ++file) {
    if (sum.outcomes[file] == FileOutcome::Done && !picked[file].trouble.isEmpty()) ++unplayable;
  }
  AddCount(lines, unplayable, QStringLiteral(" Of Them Cannot Be Played (See Their Rows)"));
  AddCount(lines, sum.Count(FileOutcome::Existed),
           QStringLiteral(" File/s Already Existed And were not Imported!"));
  AddCount(lines, sum.Count(FileOutcome::Unfit),
           QStringLiteral(" File/s Were Too Small(less than 10kbytes )And were Not Imported!"));
  AddCount(lines, sum.Count(FileOutcome::Failed), QStringLiteral(" File/s Could Not Be Copied:"));
  lines += FirstOf(sum.troubles);
  return lines.join(kNewLine);
}

void JingleImport::Delete(const std::vector<int>& rows) {
  if (Busy() || rows.empty()) return;
  Begin();
  work_ = RunDelete(Picked(rows));
}

Job<bool> JingleImport::AskBeforeDeletions(std::size_t files) {
  Prompt warning;
  warning.text =
      QStringLiteral("File deletions may cause programs which rely on the files to mal function !") +
      kNewLine + QStringLiteral("Continue Only if you know that deletion will not effect such programs !") +
      kNewLine +
      QStringLiteral(
          "Select OK to PERMANENTLY Delete (Not Sent To the Recycle Bin !) Selected Files From Hard drive "
          "?") +
      kNewLine + kNewLine +
      Counted(static_cast<qint64>(files), tr("file is selected."), tr("files are selected."));
  warning.buttons = Buttons::OkCancel;
  warning.icon = PromptIcon::Exclamation;
  warning.safe = Answer::Cancel;
  co_return co_await services_.prompter.Ask(warning) == Answer::Ok;
}

Job<> JingleImport::RunDelete(std::vector<JingleRow> picked) {
  QString words;
  if (co_await AskBeforeDeletions(picked.size())) {
    FileRun::Work work;
    work.files = picked.size();
    work.tag = QStringLiteral(" jingle delete");
    work.name = [&picked](std::size_t file) { return picked[file].name; };
    work.step = [this, &picked](std::size_t file) { return DeleteOne(picked[file]); };
    const FileSum sum = co_await run_.Run(std::move(work));
    if (!sum.troubles.isEmpty()) {
      const QString head =
          Counted(sum.troubles.size(), tr("file was not deleted:"), tr("files were not deleted:"));
      services_.prompter.Tell(TroubleMessage(head, sum.troubles));
    }
    words = Counted(sum.Count(FileOutcome::Done), tr("file deleted"), tr("files deleted"));
  }
  End(words);
}

Job<FileOutcome> JingleImport::DeleteOne(JingleRow row) {
  // Either may lie in the system: the name that was found, and what a link of that name leads to.
  const auto look = [path = row.path, jingles = services_.paths(Paths::Jingles)] {
    const QFileInfo file(path);
    const QString folder = QFileInfo(file.path()).canonicalFilePath();
    const bool isJingle = folder == QFileInfo(jingles).canonicalFilePath();
    return std::pair(QStringList{folder + QLatin1Char('/') + file.fileName(), file.canonicalFilePath()},
                     isJingle);
  };
  const auto [places, isJingle] = co_await services_.loop.Offload(EventLoop::Lane::Apart, look);
  if (std::any_of(places.begin(), places.end(), IsSystemFile)) {
    Prompt refusal;
    refusal.text = row.name + QStringLiteral(" Is A System Media File !");
    refusal.icon = PromptIcon::Critical;
    co_await services_.prompter.Ask(refusal);
    co_return FileOutcome::LeftOut;
  }
  Prompt question;
  question.text = QStringLiteral("Are You Sure You Want To Delete this File ?");
  question.title = row.name;
  question.buttons = Buttons::YesNoCancel;
  question.icon = PromptIcon::Question;
  question.safe = Answer::No;
  const Answer answer = co_await services_.prompter.Ask(question);
  if (answer == Answer::No) co_return FileOutcome::LeftOut;
  if (answer != Answer::Yes) co_return FileOutcome::Stopped;
  const auto remove = [path = row.path] {
    QFile file(path);
    const bool gone = file.remove() || !file.exists();
    return gone ? QString() : file.errorString();
  };
  const QString trouble = co_await services_.loop.Offload(EventLoop::Lane::Apart, remove);
  if (!trouble.isEmpty()) {
    throw Failure(QStringLiteral("Cannot delete %1 : %2").arg(row.path, trouble), 0, row.path);
  }
  RemoveRow(row.path);
  // The catalogue knows it by its place in the jingle folder, however it was found.
  if (isJingle) {
    services_.catalogue.RemoveJingle(services_.paths(Paths::Jingles) + QLatin1Char('/') +
                                     QFileInfo(row.path).fileName());
  }
  co_return FileOutcome::Done;
}

void JingleImport::RemoveRow(const QString& path) {
  const std::vector<JingleRow>& rows = rows_.All();
  const auto found =
      std::find_if(rows.begin(), rows.end(), [&path](const JingleRow& each) { return each.path == path; });
  if (found != rows.end()) rows_.Remove(static_cast<int>(found - rows.begin()));
}

void JingleImport::Follow(const JingleChanged& change) {
  if (change.path.isEmpty()) {
    RemoveRow(change.before);
    return;
  }
  const std::vector<JingleRow>& rows = rows_.All();
  const auto found = std::find_if(rows.begin(), rows.end(),
                                  [&change](const JingleRow& row) { return row.path == change.before; });
  if (found == rows.end()) return;
  rows_.Alter(static_cast<int>(found - rows.begin()), [&change](JingleRow& row) {
    row.path = change.path;
    row.name = QFileInfo(change.path).fileName();
  });
}

}  // namespace kelvo
