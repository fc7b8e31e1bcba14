#include "database/Transfer.h"

#include "audio/SoundLook.h"
#include "database/DatabaseSettings.h"
#include "database/MediaSearch.h"
#include "database/TrackNames.h"
#include "database/UtilityListing.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QDir>
#include <QFile>
#include <QFileInfo>
#include <QHash>
#include <QSet>

#include <algorithm>
#include <utility>

namespace kelvo {
namespace {

/// Rows read in one go: each costs a look into a file, so a few keep the list coming.
constexpr qsizetype kFilesAtOnce = 16;
const QString kLineBreak = QStringLiteral("\r\n");

void RemoveFile(const QString& path) {
  QFile file(path);
  if (file.remove() || !file.exists()) return;
  throw Failure(QStringLiteral("Cannot delete %1 : %2").arg(path, file.errorString()), 0, path);
}

}  // namespace

Transfer::Transfer(Services services)
    : services_(std::move(services)), rows_(services_.catalogue), run_(services_.loop) {
  run_.OnProgress = [this] { Q_EMIT Changed(); };
  services_.catalogue.Listen(
      this,
      [this](const StagedFileChanged& change) {
        if (change.waits) {
          StagedFileCame();
        } else {
          rows_.Remove(change.path);
        }
      },
      [this](const TrackRenamed& renamed) {
        if (names_) names_->Rename(renamed.pathBefore, renamed.path);
      },
      [this](const TrackRemoved& removed) {
        if (names_) names_->Rename(removed.path, {});
      },
      [this](const ReferenceChanged& change) {
        if (names_) names_->Rename(change);
      });
}

void Transfer::List() {
  if (running_) return;
  listing_ = true;
  listed_ = true;
  reading_.Cancel();
  list_ = RunList();
  Q_EMIT Changed();
}

Job<> Transfer::RunList() {
  // What was typed into a row that still waits is not typed twice.
  TypedTexts typed;
  for (const TransferRow& row : rows_.All()) typed.insert(row.path, row);
  rows_.Clear();
  run_.Reset();
  try {
    co_await FindStagedFiles(services_.loop, services_.catalogue, services_.paths);
    co_await ReadMissing(std::move(typed));
  } catch (...) {
    basHandleError(QStringLiteral(" FrmTransfer list"),
                   QStringLiteral("The waiting files cannot be listed."));
  }
  listing_ = false;
  Q_EMIT Changed();
}

void Transfer::StagedFileCame() {
  if (listed_ && !listing_ && !reading_.Running()) reading_ = ReadMissing({});
}

QStringList Transfer::Missing() const {
  QSet<QString> listed;
  for (const TransferRow& row : rows_.All()) listed.insert(row.path);
  QStringList missing = services_.catalogue.StagedFiles;
  missing.removeIf([&listed](const QString& path) { return listed.contains(path); });
  return missing;
}

Job<> Transfer::ReadMissing(TypedTexts typed) {
  for (QStringList missing = Missing(); !missing.isEmpty(); missing = Missing()) {
    const auto read = [some = missing.first(std::min(missing.size(), kFilesAtOnce))] {
      std::vector<TransferRow> rows;
      std::transform(some.begin(), some.end(), std::back_inserter(rows), ReadTransferRow);
      return rows;
    };
    std::vector<TransferRow> rows = co_await services_.loop.Offload(EventLoop::Lane::Apart, read);
    std::erase_if(
        rows, [this](const TransferRow& row) { return !services_.catalogue.StagedFiles.contains(row.path); });
    for (TransferRow& row : rows) {
      const auto before = typed.constFind(row.path);
      if (before == typed.constEnd() || before->bytes != row.bytes) continue;
      row.artist = before->artist;
      row.album = before->album;
      row.category = before->category;
      row.date = before->date;
    }
    rows_.Append(std::move(rows));
  }
}

void Transfer::Move(const std::vector<int>& ids) {
  if (running_ || ids.empty() || !DatesAreGood(ids)) return;
  run_.Reset();
  moves_ = true;
  SetRunning(true);
  work_ = RunMove(InListOrder(ids));
}

void Transfer::Delete(const std::vector<int>& ids) {
  if (running_ || ids.empty()) return;
  run_.Reset();
  moves_ = false;
  SetRunning(true);
  work_ = RunDelete(InListOrder(ids));
}

QStringList Transfer::FilesToEncode(const std::vector<int>& ids) const {
  QStringList files;
  for (const int id : InListOrder(ids)) files.append(rows_.Find(id)->path);
  if (files.isEmpty()) {
    services_.prompter.Tell(
        {QStringLiteral("Please Select Some Files to encode!"), {}, Buttons::Ok, PromptIcon::Exclamation});
  }
  return files;
}

void Transfer::Stop() {
  run_.Stop();
  list_.Cancel();
  reading_.Cancel();
  listing_ = false;
  Q_EMIT Changed();
}

void Transfer::SetRunning(bool running) {
  running_ = running;
  rows_.SetLocked(running);
  Q_EMIT Changed();
}

std::vector<int> Transfer::InListOrder(const std::vector<int>& ids) const {
  const QSet<int> wanted(ids.begin(), ids.end());
  std::vector<int> ordered;
  for (const TransferRow& row : rows_.All()) {
    if (wanted.contains(row.id)) ordered.push_back(row.id);
  }
  return ordered;
}

bool Transfer::DatesAreGood(const std::vector<int>& ids) {
  return std::all_of(ids.begin(), ids.end(), [this](int id) {
    const TransferRow* const row = rows_.Find(id);
    return row == nullptr || CheckDate(services_.prompter, row->date);
  });
}

Job<> Transfer::RunMove(std::vector<int> ids) {
  Prompt sure;
  sure.text = QStringLiteral("Move %1 Files To Data Base ?").arg(ids.size());
  sure.buttons = Buttons::YesNo;
  sure.icon = PromptIcon::Question;
  try {
    if (co_await services_.prompter.Ask(sure) == Answer::Yes) co_await MoveAll(ids);
  } catch (...) {
    basHandleError(QStringLiteral(" FrmTransfer"), QStringLiteral("The files cannot be moved."));
  }
  SetRunning(false);
}

Job<> Transfer::MoveAll(const std::vector<int>& ids) {
  const auto read = [paths = services_.paths] {
    return std::make_shared<DatabaseNames>(DatabaseNames::Read(paths));
  };
  names_ = co_await services_.loop.Offload(EventLoop::Lane::Apart, read);
  const auto readHalf = [folder = services_.paths(Paths::Utility)] { return HalfMoved::Read(folder); };
  half_ = co_await services_.loop.Offload(EventLoop::Lane::Apart, readHalf);
  FileRun::Work work;
  work.files = ids.size();
  work.tag = QStringLiteral(" FrmTransfer");
  work.name = [this, &ids](std::size_t file) { return NameOf(ids[file]); };
  work.step = [this, &ids](std::size_t file) { return MoveOne(ids[file]); };
  work.after = [this, &ids](std::size_t file, FileOutcome outcome, const QString& why) {
    if (outcome != FileOutcome::Done) rows_.SetTaken(ids[file], false);
    if (outcome == FileOutcome::Failed) rows_.SetTrouble(ids[file], why);
  };
  const FileSum sum = co_await run_.Run(std::move(work));
  co_await KeepHalfMoved();
  if (!sum.troubles.isEmpty()) {
    const QString head = Counted(sum.troubles.size(), QStringLiteral("file was not moved and waits on:"),
                                 QStringLiteral("files were not moved and wait on:"));
    services_.prompter.Tell(TroubleMessage(head, sum.troubles));
  }
  if (sum.EndedBy(FileOutcome::NoRoom)) {
    const QString music = services_.paths(Paths::Music);
    const QString room = co_await RoomWords(services_.loop, music);
    Prompt full;
    full.text = QStringLiteral("Cannot Continue...Free Disc Space Is Seriously low!") + kLineBreak +
                kLineBreak + music + kLineBreak + room;
    full.icon = PromptIcon::Exclamation;
    co_await services_.prompter.Ask(full);
  }
  run_.Show(QString::number(sum.Count(FileOutcome::Done)) + QStringLiteral(" Of ") +
            Counted(static_cast<qint64>(ids.size()), QStringLiteral("File"), QStringLiteral("Files")) +
            QStringLiteral(" Moved"));
  // The names of a large database take their time to be freed.
  const auto forget = [names = std::exchange(names_, nullptr)] { *names = DatabaseNames(); };
  co_await services_.loop.Offload(EventLoop::Lane::Apart, forget);
}

Job<FileOutcome> Transfer::MoveOne(int id) {
  const TransferRow* const found = rows_.Find(id);
  if (found == nullptr) co_return FileOutcome::Unfit;
  TransferRow row = *found;
  run_.At(QStringLiteral("open"));
  if (!co_await Exists(row.path)) {
    run_.Note(QStringLiteral("A file of the transfer list is gone: %1").arg(row.path));
    services_.catalogue.RemoveStagedFile(row.path);
    co_return FileOutcome::Unfit;
  }
  const double duration = co_await LookAt(row);

  run_.At(QStringLiteral("folders"));
  Catalogue& catalogue = services_.catalogue;
  row.artist = co_await EnsureReference(Paths::Artists, row.artist, ReferenceSet::Artists);
  row.album = co_await EnsureReference(Paths::Albums, row.album, ReferenceSet::Albums);
  row.category = co_await EnsureReference(Paths::Categories, row.category, ReferenceSet::Genres);

  const QString music = services_.paths(Paths::Music);
  run_.At(QStringLiteral("copy"));
  std::optional<HalfMoved::Move> move = co_await CopiedBefore(row);
  const bool finishes = move.has_value();
  if (!finishes) {
    run_.At(QStringLiteral("room"));
    if (!co_await run_.HasRoom(HasRoom, music, row.path)) co_return FileOutcome::NoRoom;
    run_.At(QStringLiteral("copy"));
    move = co_await CopyMusic(row);
  }
  if (!move) co_return run_.Stopping() ? FileOutcome::Stopped : FileOutcome::LeftOut;
  const QString fileName = move->fileName;

  run_.At(QStringLiteral("info"));
  rows_.SetTaken(row.id, true);
  const QString today = services_.loop.Now().toString(QStringLiteral("dd/MM/yyyy"));
  const TrackInfo fresh = NewTrackInfo(row, duration, ReadTrackDefaults(services_.settings), today);
  const TrackInfo info = co_await WriteInfo(*move, finishes, fresh);
  const QString path = music + QLatin1Char('/') + fileName;
  StoreRow(catalogue, RowFrom(info, fileName, duration), path);

  run_.At(QStringLiteral("delete"));
  const auto remove = [from = row.path, to = path] {
    if (QFileInfo(from).canonicalFilePath() == QFileInfo(to).canonicalFilePath()) {
      throw Failure(QStringLiteral("%1 is itself the file of the database").arg(from), 0, from);
    }
    RemoveFile(from);
  };
  co_await services_.loop.Offload(EventLoop::Lane::Files, remove);
  half_.Remove(row.path);
  catalogue.RemoveStagedFile(row.path);
  co_return FileOutcome::Done;
}

QString Transfer::NameOf(int id) const {
  const TransferRow* const row = rows_.Find(id);
  return row == nullptr ? QString() : row->trackName;
}

Job<bool> Transfer::Exists(QString path) {
  const auto look = [path] { return QFileInfo::exists(path); };
  co_return co_await services_.loop.Offload(EventLoop::Lane::Apart, look);
}

Job<double> Transfer::LookAt(const TransferRow& row) {
  if (!IsMediaName(row.path)) throw Failure(QStringLiteral("The file is no Mp3 or Wav file."), 0, row.path);
  try {
    co_return co_await services_.audio.DurationOf(row.path);
  } catch (const std::exception& unreadable) {
    throw Failure(WithoutPath(QString::fromUtf8(unreadable.what()), row.path), 0, row.path);
  }
}

Job<QString> Transfer::EnsureReference(Paths::Slot slot, QString name, ReferenceSet set) {
  if (name.isEmpty()) co_return name;
  // One artist, however it is spelled: a second folder would be a second artist.
  const QString known = names_->Find(slot, name);
  if (!known.isEmpty()) co_return known;
  const auto make = [folder = services_.paths(slot) + QLatin1Char('/') + name] {
    if (!QDir().mkdir(folder) && !QFileInfo(folder).isDir()) {
      throw Failure(QStringLiteral("Cannot make the folder %1").arg(folder), 0, folder);
    }
  };
  co_await services_.loop.Offload(EventLoop::Lane::Files, make);
  names_->Add(slot, name);
  services_.catalogue.AddReference(set, name);
  co_return name;
}

Job<std::optional<HalfMoved::Move>> Transfer::CopiedBefore(const TransferRow& row) {
  std::optional<HalfMoved::Move> move = half_.Find(row.path);
  if (!move) co_return move;
  const QString copy = services_.paths(Paths::Music) + QLatin1Char('/') + move->fileName;
  const auto look = [waiting = row.path, copy] { return SameContent(waiting, copy); };
  const bool copied = co_await services_.loop.Offload(EventLoop::Lane::Apart, look);
  if (!copied) {
    half_.Remove(row.path);
    move.reset();
  }
  co_return move;
}

Job<> Transfer::KeepHalfMoved() {
  const auto write = [half = half_, folder = services_.paths(Paths::Utility)] { half.Write(folder); };
  try {
    co_await services_.loop.Offload(EventLoop::Lane::Files, write);
  } catch (...) {
    // Without it a crash costs a question, no file.
    NoteInLog(ErrorLog::Compose(std::current_exception(), QStringLiteral(" FrmTransfer half moved")));
  }
}

Job<std::optional<HalfMoved::Move>> Transfer::CopyMusic(const TransferRow& row) {
  HalfMoved::Move move;
  move.fileName = MusicFileName(row.trackName);
  for (;;) {
    CopyOrder order;
    if (const QString standing = names_->Find(Paths::Music, move.fileName); !standing.isEmpty()) {
      const QString free = names_->FirstFree(move.fileName);
      const Prompt question = DuplicationQuestion(move.fileName, standing, free);
      const IfTaken wish = co_await run_.AskIfTaken(services_.prompter, question);
      if (wish == IfTaken::LeaveOut) co_return std::nullopt;
      order.replace = wish == IfTaken::Replace;
      move.fileName = order.replace ? standing : free;
    }
    run_.Show(QStringLiteral("Moving ") + move.fileName + QStringLiteral(" Into Database !"));
    move.replaces = order.replace;
    half_.Add(row.path, move);
    co_await KeepHalfMoved();
    order.from = row.path;
    order.to = services_.paths(Paths::Music) + QLatin1Char('/') + move.fileName;
    const CopyResult result = co_await run_.Copy(order);
    if (result == CopyResult::Copied) {
      names_->Add(Paths::Music, move.fileName);
      co_return move;
    }
    half_.Remove(row.path);
    if (result == CopyResult::Stopped) co_return std::nullopt;
    // The file has come there since the run began: ask about it.
    names_->Add(Paths::Music, move.fileName);
  }
}

Job<TrackInfo> Transfer::WriteInfo(HalfMoved::Move move, bool finishes, TrackInfo fresh) {
  const QString baseName = BaseName(move.fileName);
  const QString name = baseName + QStringLiteral(".kif");
  const QString standing = names_->Find(Paths::Info, name);
  const QString file = standing.isEmpty() ? name : standing;
  const QString today = services_.loop.Now().toString(QStringLiteral("dd/MM/yyyy"));
  const bool keeps = finishes && !move.replaces;
  const auto write = [path = services_.paths(Paths::Info) + QLatin1Char('/') + file, fresh, baseName, keeps,
                      defaults = ReadTrackDefaults(services_.settings), today] {
    std::optional<TrackInfo> old = ReadTrackInfo(path);
    if (!old) {
      CreateTrackInfo(path, fresh);
      return fresh;
    }
    TrackInfo info = keeps ? FinishedTrackInfo(*std::move(old), fresh, baseName, defaults)
                           : ReplacedTrackInfo(*std::move(old), fresh, baseName, defaults, today);
    WriteTrackInfo(path, info);
    return info;
  };
  TrackInfo info = co_await services_.loop.Offload(EventLoop::Lane::Files, write);
  names_->Add(Paths::Info, file);
  co_return info;
}

Job<> Transfer::RunDelete(std::vector<int> ids) {
  Prompt sure;
  sure.text = QStringLiteral("This Action Will Delete All Selected Files in The List !") + kLineBreak +
              QStringLiteral("Continue With Delete ?") + kLineBreak + kLineBreak +
              Counted(static_cast<qint64>(ids.size()), QStringLiteral("file is selected."),
                      QStringLiteral("files are selected."));
  sure.buttons = Buttons::YesNo;
  sure.icon = PromptIcon::Exclamation;
  sure.safe = Answer::No;
  if (co_await services_.prompter.Ask(sure) == Answer::Yes) co_await DeleteAll(ids);
  SetRunning(false);
}

Job<> Transfer::DeleteAll(const std::vector<int>& ids) {
  FileRun::Work work;
  work.files = ids.size();
  work.tag = QStringLiteral(" FrmTransfer");
  work.name = [this, &ids](std::size_t file) { return NameOf(ids[file]); };
  work.step = [this, &ids](std::size_t file) { return DeleteOne(ids[file]); };
  const FileSum sum = co_await run_.Run(std::move(work));
  if (!sum.troubles.isEmpty()) {
    const QString head = Counted(sum.troubles.size(), QStringLiteral("file was not deleted:"),
                                 QStringLiteral("files were not deleted:"));
    services_.prompter.Tell(TroubleMessage(head, sum.troubles));
  }
  run_.Show(Counted(sum.Count(FileOutcome::Done), QStringLiteral("File"), QStringLiteral("Files")) +
            QStringLiteral(" Deleted"));
}

Job<FileOutcome> Transfer::DeleteOne(int id) {
  run_.At(QStringLiteral("CmdDelete"));
  const TransferRow* const row = rows_.Find(id);
  if (row == nullptr) co_return FileOutcome::Unfit;
  const QString path = row->path;
  const auto remove = [path] { RemoveFile(path); };
  co_await services_.loop.Offload(EventLoop::Lane::Files, remove);
  services_.catalogue.RemoveStagedFile(path);
  co_return FileOutcome::Done;
}

}  // namespace kelvo
