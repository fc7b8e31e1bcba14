#include "encoding/EncodeList.h"

#include "database/MediaSearch.h"
#include "encoding/ToolDecode.h"
#include "platform/Words.h"

#include <QCoreApplication>
#include <QDirIterator>
#include <QFileInfo>
#include <QSet>

#include <algorithm>
#include <map>
#include <thread>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

constexpr Nanoseconds kLook = 200ms;
/// So long a cancelled run may take to end.
constexpr Nanoseconds kPatience = 10s;
/// Somebody dropped a whole disk.
constexpr std::size_t kMostFiles = 20'000;

QString PercentText(double share) {
  return Format0(share * 100);
}

EncodeRow RowOf(const QFileInfo& file) {
  return {.name = file.fileName(), .path = file.absoluteFilePath(), .bytes = file.size()};
}

std::vector<EncodeRow> Listed(const QStringList& places) {
  std::vector<EncodeRow> rows;
  for (const QString& place : places) {
    const QFileInfo facts(place);
    if (!facts.isDir()) {
      rows.push_back(RowOf(facts));
      continue;
    }
    QStringList found;
    for (QDirIterator each(place, QDir::Files, QDirIterator::Subdirectories); each.hasNext();) {
      const QString path = each.next();
      if (IsMediaName(each.fileName())) found.append(path);
      if (static_cast<std::size_t>(found.size()) >= kMostFiles) break;
    }
    found.sort(Qt::CaseInsensitive);
    for (const QString& path : found) rows.push_back(RowOf(QFileInfo(path)));
  }
  return rows;
}

}  // namespace

QString EncodeRow::StateText() const {
  switch (state) {
    case State::Waiting:
      return EncodeList::tr("Waits");
    case State::Running:
      return EncodeList::tr("%1 %").arg(PercentText(share));
    case State::Done:
      return EncodeList::tr("Encoded");
    case State::Failed:
      return EncodeList::tr("Failed");
    case State::Cancelled:
      break;
  }
  return EncodeList::tr("Cancelled");
}

/// What a run holds while it lasts.
struct EncodeList::Run {
  EncodingPresets presets;
  bool deletes = false;
  bool cancelled = false;
  bool allPassed = true;
  std::map<int, std::shared_ptr<EncodeWork>> works;  ///< of the rows that are being encoded
};

EncodeList::EncodeList(Services services)
    : services_(std::move(services)),
      files_({services_.loop, services_.catalogue, services_.paths, services_.relink}) {
  services_.settings.Listen(setting::Presets, this,
                            [this](const std::optional<EncodingPresets>&) { Q_EMIT Changed(); });
}

EncodeList::~EncodeList() {
  if (!run_) return;
  for (const auto& [id, work] : run_->works) work->Cancel();
}

EncodingPresets EncodeList::Presets() const {
  return services_.settings.Get(setting::Presets).value_or(EncodingPresets());
}

QStringList EncodeList::PresetWords() const {
  const EncodingPresets presets = Presets();
  const auto& known = EncodingLists::kPresets;
  const auto preset = std::find_if(known.begin(), known.end(),
                                   [&](const auto& each) { return each.number == presets.preset; });
  const QString name =
      preset == known.end() ? QString::number(presets.preset) : QString::fromLatin1(preset->words);
  const QString active =
      preset == known.end() ? QStringLiteral(" (Not Active)") : QStringLiteral(" (Active)");
  return {QStringLiteral(" Current Preset : ") + name + active,
          QStringLiteral(" Bitrate : ") + QString::number(presets.bitRate),
          QStringLiteral(" Sample Rate ") + QString::number(presets.sampleRate),
          QStringLiteral(" Vbr Quality ") + QString::number(presets.vbrQuality),
          QStringLiteral(" Vbr Enabled ") + (presets.vbr ? QStringLiteral("Yes") : QStringLiteral("No")),
          presets.WhyInvalid().isEmpty() ? presets.PlanWords() : presets.WhyInvalid()};
}

void EncodeList::SetDeletesSources(bool deletes) {
  deletesSources_ = deletes;
  Q_EMIT Changed();
}

// The list.

void EncodeList::Add(const QStringList& places) {
  adding_.Add(RunAdd(places));
}

void EncodeList::Take(const QStringList& files) {
  if (!Busy()) static_cast<void>(rows_.TakeAll());
  Add(files);
}

void EncodeList::AddFile() {
  adding_.Add(RunPick(false));
}

void EncodeList::AddFolder() {
  adding_.Add(RunPick(true));
}

Job<> EncodeList::RunPick(bool folder) {
  const QString start = services_.paths(Paths::Utility);
  std::optional<QString> picked;
  if (folder) {
    picked = co_await services_.prompter.PickFolder(tr("Add the music of a folder"), start);
  } else {
    picked =
        co_await services_.prompter.PickFile(tr("Add a file"), start, tr("Music (*.wav *.mp3 *.WAV *.Wav)"));
  }
  if (!picked) co_return;
  const QStringList places{*picked};
  co_await RunAdd(places);
}

Job<> EncodeList::RunAdd(QStringList places) {
  const auto list = [places] { return Listed(places); };
  std::vector<EncodeRow> found = co_await services_.loop.Offload(EventLoop::Lane::Apart, list);
  QSet<QString> known;
  for (const EncodeRow& row : rows_.All()) known.insert(row.path);
  std::vector<EncodeRow> fresh;
  for (EncodeRow& row : found) {
    if (known.contains(row.path)) continue;
    known.insert(row.path);
    row.id = ++lastId_;
    fresh.push_back(std::move(row));
  }
  rows_.Append(std::move(fresh));
  if (!Busy()) words_.clear();
  Q_EMIT Changed();
}

void EncodeList::Remove(const std::vector<int>& rows) {
  if (Busy()) return;
  std::vector<int> last(rows);
  std::sort(last.begin(), last.end(), std::greater<>());
  for (const int row : last) rows_.Remove(row);
  Q_EMIT Changed();
}

int EncodeList::IndexOf(int id) const {
  const auto& rows = rows_.All();
  const auto found =
      std::find_if(rows.begin(), rows.end(), [id](const EncodeRow& row) { return row.id == id; });
  return found == rows.end() ? -1 : static_cast<int>(found - rows.begin());
}

int EncodeList::NextWaiting() const {
  const auto& rows = rows_.All();
  const auto found = std::find_if(
      rows.begin(), rows.end(), [](const EncodeRow& row) { return row.state == EncodeRow::State::Waiting; });
  return found == rows.end() ? 0 : found->id;
}

void EncodeList::SetState(int id, EncodeRow::State state) {
  const int row = IndexOf(id);
  if (row >= 0) rows_.Alter(row, [state](EncodeRow& each) { each.state = state; });
}

void EncodeList::Note(const QString& line) {
  log_.Append({line});
}

void EncodeList::Say(const QString& words) {
  words_ = words;
  Q_EMIT Changed();
}

// Encoding.

QString EncodeList::WhyNoStart() const {
  if (encoding_) return {};
  if (decoding_) return tr("Files are being decoded");
  if (rows_.Count() == 0) return tr("The list is empty");
  const bool any = std::any_of(rows_.All().begin(), rows_.All().end(),
                               [](const EncodeRow& row) { return row.state != EncodeRow::State::Done; });
  if (!any) return tr("All files of the list are encoded");
  return Presets().WhyInvalid();
}

void EncodeList::Start() {
  if (Busy() || !WhyNoStart().isEmpty()) return;
  for (int row = 0; row < rows_.Count(); ++row) {
    if (rows_[row].state == EncodeRow::State::Done) continue;
    rows_.AlterUntold(row, [](EncodeRow& each) { each.state = EncodeRow::State::Waiting; });
  }
  rows_.TellChanged(0, rows_.Count() - 1);
  encoding_ = true;
  run_ = std::make_unique<Run>();
  run_->presets = Presets();
  run_->deletes = deletesSources_;
  tick_ = services_.loop.Every(kLook, [this] { ShowProgress(); });
  work_ = RunAll();
}

void EncodeList::Cancel() {
  if (decoding_) {
    decode_.Cancel();
    decoding_ = false;
    Note(QStringLiteral("Canceled"));
    Say(tr("Decoding Cancelled"));
    return;
  }
  if (!run_ || run_->cancelled) return;
  run_->cancelled = true;
  for (const auto& [id, work] : run_->works) work->Cancel();
  Say(QStringLiteral("Encoding Cancelled"));
  // A disk that hangs holds up nobody: what was begun there ends by itself, and leaves nothing.
  giveUp_ = services_.loop.After(kPatience, [this] {
    work_.Cancel();
    End();
  });
}

Job<> EncodeList::RunAll() {
  const int processors = static_cast<int>(std::max(1U, std::thread::hardware_concurrency()));
  const int atOnce = std::min(services_.atOnce > 0 ? services_.atOnce : processors, rows_.Count());
  std::vector<Job<>> workers;
  for (int worker = 0; worker < atOnce; ++worker) workers.push_back(RunWorker());
  for (Job<>& worker : workers) co_await std::move(worker);
  End();
}

void EncodeList::End() {
  tick_.Stop();
  giveUp_.Stop();
  encoding_ = false;
  const std::unique_ptr<Run> run = std::move(run_);
  if (run->cancelled) {
    for (int row = 0; row < rows_.Count(); ++row) {
      const EncodeRow::State state = rows_[row].state;
      if (state == EncodeRow::State::Waiting || state == EncodeRow::State::Running)
        SetState(rows_[row].id, EncodeRow::State::Cancelled);
    }
    Note(QStringLiteral("Canceled"));
    Say(QStringLiteral("Encoding Cancelled"));
  } else {
    Say(run->allPassed ? QStringLiteral("Encoding Done Successfully")
                       : QStringLiteral("Encoding Not Entirely Successful"));
  }
}

Job<> EncodeList::RunWorker() {
  for (int id = NextWaiting(); id != 0 && !run_->cancelled; id = NextWaiting()) co_await EncodeOne(id);
}

Job<> EncodeList::EncodeOne(int id) {
  const EncodeRow row = rows_[IndexOf(id)];
  const auto work = std::make_shared<EncodeWork>(row.path, run_->presets, run_->deletes);
  run_->works.emplace(id, work);
  SetState(id, EncodeRow::State::Running);
  ShowProgress();
  const auto encode = [work] { return work->Do(); };
  const EncodeWork::Result result = co_await services_.loop.Offload(EventLoop::Lane::Apart, encode);
  using Outcome = EncodeWork::Outcome;
  bool passed = result.outcome == Outcome::Encoded;
  QString line;
  switch (result.outcome) {
    case Outcome::Encoded: {
      const QString why = co_await Follow(work, result);
      line = row.name + QStringLiteral(" - ") + QFileInfo(result.target).fileName() +
             QStringLiteral(" Successfull");
      if (!why.isEmpty()) line += tr(" - Not Deleted : %1").arg(why);
      passed = why.isEmpty();
      break;
    }
    case Outcome::Cancelled:
      break;
    case Outcome::NotWave:
      line = row.name + QStringLiteral(" - Cant Encode - Not a Wave File !");
      break;
    case Outcome::Missing:
      line = row.name + QStringLiteral(" -  File Can't be Found !");
      break;
    case Outcome::BadFormat:
      line = row.name + QStringLiteral(" - Incorrect File Format!");
      break;
    case Outcome::Failed:
      line = row.name + QStringLiteral(" - ");
      break;
  }
  if (result.outcome == Outcome::BadFormat && !result.why.isEmpty()) line += QLatin1Char(' ');
  if (!passed && result.outcome != Outcome::Encoded) line += result.why;
  run_->works.erase(id);
  if (!line.isEmpty()) Note(line);
  run_->allPassed = run_->allPassed && passed;
  SetState(id, result.outcome == Outcome::Encoded     ? EncodeRow::State::Done
               : result.outcome == Outcome::Cancelled ? EncodeRow::State::Cancelled
                                                      : EncodeRow::State::Failed);
  ShowProgress();
}

Job<QString> EncodeList::Follow(std::shared_ptr<EncodeWork> work, EncodeWork::Result result) {
  const bool goes = result.proven;
  EncodedFiles::Encoded encoded{work->Source(), result.target, result.seconds, goes};
  try {
    co_await files_.Tell(std::move(encoded));
  } catch (...) {
    basHandleError(QStringLiteral(" encode1"),
                   tr("What the database says of %1 was not brought up to date.").arg(result.target));
    co_return goes ? tr("the database could not be changed") : QString();
  }
  if (!goes) co_return result.why;
  const auto remove = [work]() -> QString {
    try {
      work->DeleteSource();
      return {};
    } catch (const std::exception& failure) {
      return QString::fromUtf8(failure.what());
    }
  };
  const QString why = co_await services_.loop.Offload(EventLoop::Lane::Files, remove);
  if (!why.isEmpty()) files_.TellSourceStays(work->Source());
  co_return why;
}

void EncodeList::ShowProgress() {
  if (!run_) return;
  QStringList words;
  for (const auto& [id, work] : run_->works) {
    const int row = IndexOf(id);
    const double share = work->Share();
    rows_.Alter(row, [share](EncodeRow& each) { each.share = share; });
    words.append(QStringLiteral("Encoding %1,  (%2%)").arg(rows_[row].name, PercentText(share)));
  }
  if (!run_->cancelled && !words.isEmpty()) words_ = words.join(QStringLiteral("   "));
  Q_EMIT Changed();
}

std::optional<double> EncodeList::Share() const {
  if (!encoding_) return std::nullopt;
  double done = 0;
  double all = 0;
  for (const EncodeRow& row : rows_.All()) {
    const double weight = static_cast<double>(row.bytes) + 1;
    all += weight;
    if (row.state == EncodeRow::State::Running) done += weight * row.share;
    if (row.state != EncodeRow::State::Running && row.state != EncodeRow::State::Waiting) done += weight;
  }
  return all > 0 ? done / all : 0;
}

// Decoding.

QString EncodeList::WhyNoDecode(const std::vector<int>& rows) const {
  if (encoding_) return tr("Files are being encoded");
  if (decoding_) return tr("Files are being decoded");
  const bool any = std::any_of(rows.begin(), rows.end(), [this](int row) {
    return UpperExtension(rows_[row].name) == QStringLiteral("MP3");
  });
  return any ? QString() : tr("No Mp3 file is selected");
}

void EncodeList::Decode(const std::vector<int>& rows) {
  if (!WhyNoDecode(rows).isEmpty()) return;
  QStringList files;
  for (const int row : rows) {
    if (UpperExtension(rows_[row].name) == QStringLiteral("MP3")) files.append(rows_[row].path);
  }
  decoding_ = true;
  decode_ = RunDecode(files);
}

Job<> EncodeList::RunDecode(QStringList files) {
  bool all = true;
  for (const QString& file : files) {
    const QString name = QFileInfo(file).fileName();
    Say(QStringLiteral("Decoding %1 Please Wait...").arg(name));
    const QString target =
        services_.paths(Paths::kFirst) + QLatin1Char('/') + BaseName(name) + QStringLiteral(".wav");
    const auto look = [target] { return QFileInfo::exists(target); };
    if (co_await services_.loop.Offload(EventLoop::Lane::Apart, look)) {
      Prompt question{.text = tr("The File %1 Already Exists !\r\nReplace It ?").arg(target),
                      .title = {},
                      .buttons = Buttons::YesNo,
                      .icon = PromptIcon::Question,
                      .safe = Answer::No};
      const Answer answer = co_await services_.prompter.Ask(std::move(question));
      if (answer != Answer::Yes) continue;
    }
    const QString why = co_await DecodeWithTool(services_.loop, services_.lameTool, file, target);
    all = all && why.isEmpty();
    Note(why.isEmpty() ? tr("%1 - Decoded To %2").arg(name, target)
                       : QStringLiteral("%1 Failed ! %2").arg(name, why));
  }
  decoding_ = false;
  Say(all ? tr("Decoding Done") : tr("Decoding Not Entirely Successful"));
}

}  // namespace kelvo
