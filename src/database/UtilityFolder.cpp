#include "database/UtilityFolder.h"

#include "database/StagedName.h"
#include "database/UtilityListing.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <algorithm>
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
}

UtilityFolder::~UtilityFolder() {
  if (keep_.Active()) KeepVolume();
}

void UtilityFolder::List() {
  listing_ = true;
  list_ = RunList();
  Q_EMIT Changed();
}

Job<> UtilityFolder::RunList() {
  std::vector<Row> rows;
  try {
    const auto list = [paths = services_.paths] {
      const UtilityListing waiting = ListUtilityFolder(paths);
      std::vector<Row> read;
      for (const QString& path : waiting.files) {
        const StagedFile file = ReadStagedPath(path);
        read.push_back({file.trackName, file.name.artist, path});
      }
      return std::pair(std::move(read), waiting.passedOver);
    };
    auto [read, passedOver] = co_await services_.loop.Offload(EventLoop::Lane::Apart, list);
    for (const QString& line : passedOver) NoteInLog(line);
    rows = std::move(read);
  } catch (...) {
    basHandleError(QStringLiteral(" frmUtil list"));
  }
  beginResetModel();
  rows_ = std::move(rows);
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
