#include "database/UtilityFolder.h"

#include "audio/SoundLook.h"
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

constexpr NumberSetting kVolume{
    {setting::kStartup, QLatin1StringView("UtilMediaVol")}, 0, 0, UtilityFolder::kMostLoss};

}  // namespace

UtilityFolder::UtilityFolder(Services services)
    : services_(std::move(services)), player_(services_.audio.MakePlayer()) {
  volume_ = services_.settings.Get(kVolume);
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

WaitingFile UtilityFolder::FileAt(const QString& path) {
  const StagedFile file = ReadStagedPath(path);
  return {file.trackName, file.name.artist, path};
}

void UtilityFolder::Follow(const StagedFileChanged& change) {
  if (listing_) return;  // its end shows all
  const std::vector<WaitingFile>& rows = rows_.All();
  const auto found = std::find_if(rows.begin(), rows.end(),
                                  [&change](const WaitingFile& file) { return file.path == change.path; });
  if (change.waits && found == rows.end()) rows_.Append({FileAt(change.path)});
  if (!change.waits && found != rows.end()) rows_.Remove(static_cast<int>(found - rows.begin()));
  Q_EMIT Changed();
}

Job<> UtilityFolder::RunList() {
  try {
    co_await FindStagedFiles(services_.loop, services_.catalogue, services_.paths);
  } catch (...) {
    basHandleError(QStringLiteral(" frmUtil list"), tr("The utility folder cannot be listed."));
  }
  std::vector<WaitingFile> rows;
  const QStringList& paths = services_.catalogue.StagedFiles;
  std::transform(paths.begin(), paths.end(), std::back_inserter(rows), FileAt);
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
    const Failure why(WithoutPath(opened.error, file.path), 0, file.path);
    basHandleError(QStringLiteral(" frmUtil play"), std::make_exception_ptr(why),
                   tr("%1 cannot be played.").arg(file.fileName));
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
  services_.settings.Set(kVolume, volume_);
}

}  // namespace kelvo
