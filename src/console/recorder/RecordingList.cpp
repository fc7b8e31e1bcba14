#include "console/recorder/RecordingList.h"

#include "platform/ErrorLog.h"

#include <QFileInfo>
#include <QPointer>

#include <algorithm>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kLookAtSpaceEvery = 10s;

}  // namespace

RecordingList::RecordingList(Services services) : services_(services) {
  connect(&services_.recorder, &ProgrammeRecorder::FolderChanged, this, [this] {
    if (shown_) List();
  });
  connect(&services_.recorder, &ProgrammeRecorder::Changed, this, &RecordingList::ShowGrowing);
}

void RecordingList::SetShown(bool shown) {
  shown_ = shown;
  space_.Stop();
  if (!shown) return;
  services_.recorder.LookAtSpace();
  space_ = services_.loop.Every(kLookAtSpaceEvery, [this] { services_.recorder.LookAtSpace(); });
}

void RecordingList::List() {
  list_ = RunList();
  Q_EMIT Changed();
}

Job<> RecordingList::RunList() {
  trouble_.clear();
  const QString folder = services_.recorder.Folder();
  const auto look = [folder] { return RecordingsIn(folder); };
  try {
    std::optional<std::vector<KeptRecording>> found = co_await services_.disks.Look(folder, look);
    if (!found) trouble_ = tr("The disk of %1 does not answer.").arg(folder);
    rows_.Replace(found ? std::move(*found) : std::vector<KeptRecording>());
  } catch (...) {
    basHandleError(QStringLiteral(" recordings"), tr("The recordings cannot be listed."));
  }
  ShowGrowing();
  // From the loop, when this job is over.
  services_.loop.Post([this, alive = QPointer<RecordingList>(this)] {
    if (alive) Q_EMIT Changed();
  });
}

void RecordingList::ShowGrowing() {
  const ProgrammeRecorder& recorder = services_.recorder;
  if (recorder.Path().isEmpty()) return;
  const std::vector<KeptRecording>& rows = rows_.All();
  const auto found = std::find_if(rows.begin(), rows.end(),
                                  [&](const KeptRecording& row) { return row.path == recorder.Path(); });
  if (found == rows.end()) {
    const QFileInfo file(recorder.Path());
    const bool grows = recorder.Now() == ProgrammeRecorder::State::Recording && recorder.Bytes() > 0;
    if (grows && !list_.Running() && file.path() == recorder.Folder())
      rows_.Insert(0, {file.fileName(), recorder.Path(), recorder.Bytes(), recorder.Seconds()});
    return;
  }
  if (found->seconds == recorder.Seconds() && found->bytes == recorder.Bytes()) return;
  rows_.Alter(static_cast<int>(found - rows.begin()), [&recorder](KeptRecording& row) {
    row.seconds = recorder.Seconds();
    row.bytes = recorder.Bytes();
  });
}

}  // namespace kelvo
