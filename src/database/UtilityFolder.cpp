#include "database/UtilityFolder.h"

#include "database/StagedName.h"
#include "database/UtilityListing.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kelvo {
namespace {

using namespace std::chrono_literals;

const QString kSection = QStringLiteral("Startup");
const QString kVolumeKey = QStringLiteral("UtilMediaVol");

}  // namespace

UtilityFolder::UtilityFolder(Services services)
    : services_(std::move(services)), player_(services_.audio.MakePlayer()) {
  const QString kept =
      services_.settings.GetSetting(services_.title, kSection, kVolumeKey, QStringLiteral("0"));
  volume_ = WholeNumber(kept, 0, kMostLoss);
  player_->SetVolume(-2 * volume_);
  player_->OnEndOfStream = [this] { Stop(); };
  services_.catalogue.Listen(this, [this](const StagedFileChanged& change) { Follow(change); });
}

UtilityFolder::~UtilityFolder() {
  if (keep_.Active()) KeepVolume();
}

void UtilityFolder::List() {
  listing_ = true;
  list_ = RunList();
  Q_EMIT Changed();
}

UtilityFolder::Row UtilityFolder::RowOf(const QString& path) {
  const StagedFile file = ReadStagedPath(path);
  return {file.trackName, file.name.artist, path};
}

void UtilityFolder::Follow(const StagedFileChanged& change) {
  if (listing_) return;  // its end shows all
  const auto found =
      std::find_if(rows_.begin(), rows_.end(), [&change](const Row& row) { return row.path == change.path; });
  if (change.waits && found == rows_.end()) {
    beginInsertRows({}, rowCount(), rowCount());
    rows_.push_back(RowOf(change.path));
    endInsertRows();
  } else if (!change.waits && found != rows_.end()) {
    const int row = static_cast<int>(found - rows_.begin());
    beginRemoveRows({}, row, row);
    rows_.erase(found);
    endRemoveRows();
  }
  Q_EMIT Changed();
}

Job<> UtilityFolder::RunList() {
  try {
    co_await FindStagedFiles(services_.loop, services_.catalogue, services_.paths);
  } catch (...) {
    basHandleError(QStringLiteral(" frmUtil list"));
  }
  beginResetModel();
  const QStringList& paths = services_.catalogue.StagedFiles;
  rows_.clear();
  std::transform(paths.begin(), paths.end(), std::back_inserter(rows_), RowOf);
  endResetModel();
  listing_ = false;
  Q_EMIT Changed();
}

void UtilityFolder::Play(int row) {
  if (row < 0 || row >= rowCount()) return;
  start_ = Start(rows_[static_cast<std::size_t>(row)]);
}

Job<> UtilityFolder::Start(Row row) {
  const OpenResult opened = co_await player_->Open(row.path);
  if (opened.kind == OpenResult::Kind::Failed) {
    basHandleError(QStringLiteral(" frmUtil play"),
                   std::make_exception_ptr(Failure(opened.error, 0, row.path)));
  }
  if (!opened.Ok()) co_return;
  player_->Play();
  Say(QStringLiteral("Currently Playing Sample ") + row.fileName);
}

void UtilityFolder::Stop() {
  start_.Cancel();
  player_->Close();
  Say({});
}

void UtilityFolder::Say(const QString& playing) {
  playing_ = playing;
  Q_EMIT Changed();
}

void UtilityFolder::SetVolume(int loss) {
  volume_ = std::clamp(loss, 0, kMostLoss);
  player_->SetVolume(-2 * volume_);
  keep_ = services_.loop.After(500ms, [this] { KeepVolume(); });
}

void UtilityFolder::KeepVolume() {
  services_.settings.SaveSetting(services_.title, kSection, kVolumeKey, QString::number(volume_));
}

int UtilityFolder::rowCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : static_cast<int>(rows_.size());
}
int UtilityFolder::columnCount(const QModelIndex& parent) const {
  return parent.isValid() ? 0 : ColumnCount;
}

QVariant UtilityFolder::data(const QModelIndex& index, int role) const {
  if (!index.isValid()) return {};
  const Row& row = rows_[static_cast<std::size_t>(index.row())];
  if (role == Qt::ToolTipRole) return row.path;
  if (role != Qt::DisplayRole) return {};
  switch (index.column()) {
    case FileName:
      return row.fileName;
    case Artist:
      return row.artist;
    case Path:
      return row.path;
    default:
      return {};
  }
}

QVariant UtilityFolder::headerData(int section, Qt::Orientation orientation, int role) const {
  if (orientation != Qt::Horizontal || role != Qt::DisplayRole) return {};
  static const QStringList heads{QStringLiteral("File Name"), QStringLiteral("Artist"),
                                 QStringLiteral("Path")};
  return heads.value(section);
}

}  // namespace kelvo
