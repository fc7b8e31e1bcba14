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
  std::vector<WaitingFile> rows;
  try {
    const auto list = [paths = services_.paths] {
      const UtilityListing waiting = ListUtilityFolder(paths);
      std::vector<WaitingFile> read;
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
  rows_.Replace(std::move(rows));
  listing_ = false;
  Q_EMIT Changed();
}

void UtilityFolder::Play(int row) {
  if (row < 0 || row >= rows_.Count()) return;
  start_ = Start(rows_[row]);
}

Job<> UtilityFolder::Start(WaitingFile file) {
  const OpenResult opened = co_await player_->Open(file.path);
  if (opened.kind == OpenResult::Kind::Failed) {
    basHandleError(QStringLiteral(" frmUtil play"),
                   std::make_exception_ptr(Failure(opened.error, 0, file.path)));
  }
  if (!opened.Ok()) co_return;
  player_->Play();
  Say(QStringLiteral("Currently Playing Sample ") + file.fileName);
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

}  // namespace kelvo
