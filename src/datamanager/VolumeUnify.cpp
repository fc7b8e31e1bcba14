#include "datamanager/VolumeUnify.h"

#include "datamanager/UnifyItem.h"
#include "datamanager/UnifySettings.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QFileInfo>
#include <QPointer>
#include <QSet>
#include <QThread>

#include <algorithm>
#include <array>
#include <cmath>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

const QString kTag = QStringLiteral(" rGain");
const QString kUnknown = QStringLiteral("?");
const QString kNoChange = QStringLiteral("0.0");
/// The help that a question about the target offers.
constexpr int kTargetHelp = 9100;
/// How often files that wait are looked after.
constexpr Nanoseconds kWaitBeat = 500ms;

bool IsMp3(const QString& path) {
  return path.toUpper().endsWith(QStringLiteral("MP3"));
}

}  // namespace

QString VolumeUnify::Item::Name() const {
  return QFileInfo(path).fileName();
}

VolumeUnify::VolumeUnify(Services services) : services_(std::move(services)) {
  targetInt_ = services_.settings.Get(setting::GainInt);
  targetDec_ = services_.settings.Get(setting::GainDec);
  if (services_.processes <= 0) services_.processes = std::max(QThread::idealThreadCount(), 1);
  FollowFiles();
}

VolumeUnify::~VolumeUnify() = default;

// The list.

void VolumeUnify::FollowFiles() {
  GainFiles* const files = services_.files.get();
  connect(files, &GainFiles::Replaced, this, [this] { List(); });
  connect(files, &GainFiles::Added, this, [this](const GainFiles::Entry& file) {
    if (Listing()) return List();
    if (places_.contains(file.path)) return;
    places_.insert(file.path, rows_.Count());
    rows_.Append({RowFrom(file)});
  });
  connect(files, &GainFiles::Recorded, this, [this](const QString& path, const QString& record) {
    const int row = RowOf(path);
    if (row < 0) return;
    const UnifyRow fresh = RowFrom({path, record});
    rows_.Alter(row, [&fresh](UnifyRow& shown) {
      shown.volume = fresh.volume;
      shown.change = fresh.change;
    });
  });
  connect(files, &GainFiles::Renamed, this, [this](const QString& before, const QString& path) {
    for (const ItemPtr& item : items_) {
      if (item->path == before) item->path = path;
    }
    if (const auto record = records_.find(before); record != records_.end()) {
      const Mp3Info kept = *record;
      records_.erase(record);
      records_.insert(path, kept);
    }
    const int row = RowOf(before);
    if (row < 0) return;
    places_.remove(before);
    places_.insert(path, row);
    rows_.Alter(row, [&path](UnifyRow& shown) { shown.path = path; });
  });
  connect(files, &GainFiles::Removed, this, [this](const QString& path) { TakeOut(path); });
}

void VolumeUnify::TakeOut(const QString& path) {
  records_.remove(path);
  for (const ItemPtr& item : items_) {
    if (item->path != path) continue;
    item->gone = true;
    item->stop.Stop();
  }
  const int row = RowOf(path);
  if (row < 0) return;
  places_.remove(path);
  for (int& place : places_) place -= place > row ? 1 : 0;
  rows_.Remove(row);
}

int VolumeUnify::RowOf(const QString& path) const {
  return places_.value(path, -1);
}

UnifyRow VolumeUnify::RowFrom(const GainFiles::Entry& file) {
  const std::optional<Gain> gain = InfoFields::GainRecord.read(file.record);
  if (!gain) return {.path = file.path, .volume = kUnknown, .change = kUnknown};
  return {.path = file.path, .volume = Format0Point0(gain->volume), .change = Format0Point0(gain->change)};
}

void VolumeUnify::List() {
  list_ = RunList();
  Q_EMIT Changed();
}

void VolumeUnify::ListOnly(const QStringList& paths) {
  if (!running_) services_.files->ListOnly(paths);
}

Job<> VolumeUnify::RunList() {
  const std::vector<GainFiles::Entry> files = co_await services_.files->List();
  std::vector<UnifyRow> rows;
  rows.reserve(files.size());
  QHash<QString, int> places;
  Turn turn(services_.loop);
  for (const GainFiles::Entry& file : files) {
    places.insert(file.path, static_cast<int>(rows.size()));
    rows.push_back(RowFrom(file));
    co_await turn.Yield();
  }
  places_ = std::move(places);
  rows_.Replace(std::move(rows));
  // Later: this job still counts as running.
  services_.loop.Post([self = QPointer(this)] {
    if (self) Q_EMIT self->Changed();
  });
}

void VolumeUnify::ShowRecord(const QString& path) {
  const int row = RowOf(path);
  if (row < 0) return;
  std::optional<Gain> shown = records_.value(path).Shown();
  if (shown && !IsMp3(path)) shown->change = 0;
  rows_.Alter(row, [&shown](UnifyRow& each) {
    each.volume = shown ? Format0Point0(shown->volume) : kUnknown;
    each.change = shown ? Format0Point0(shown->change) : kUnknown;
  });
}

void VolumeUnify::SetState(Item& item, UnifyState state, const QString& words) {
  item.state = state;
  const int row = RowOf(item.path);
  if (row < 0) return;
  rows_.Alter(row, [&](UnifyRow& shown) {
    shown.state = state;
    shown.words = words;
  });
}

// The target.

double VolumeUnify::GainAdjust() const {
  return std::round((targetInt_ + targetDec_ / 10.0) * 10) / 10 - kUnityVolume;
}

void VolumeUnify::SetTarget(const QString& whole, const QString& tenths, const std::vector<int>& picked) {
  if (running_ || target_.Running()) return;
  const bool numbers = NumberIn(whole.toStdString()) && NumberIn(tenths.toStdString());
  if (!numbers) return Q_EMIT TargetChanged();
  const int first = WholeNumber(tenths.trimmed().left(1), 0, 9);
  target_ = RunTarget(WholeNumber(QString::number(Int(Val(whole))), 0, setting::kMost16), first, picked);
}

Job<> VolumeUnify::RunTarget(int whole, int tenths, std::vector<int> picked) {
  QStringList paths;
  for (const int row : picked) paths.append(rows_[row].path);
  const bool louder = whole > static_cast<int>(kUnityVolume) && whole != targetInt_;
  if (louder) {
    Prompt question;
    question.text = QStringLiteral(
        "The Recommended Maximum Db Setting is: 89\r\nLarger Settings May Introduce Clipping Of "
        "Audio ( An Unpleasant  Scratchy Noise )\r\nContinue With Change ?");
    question.buttons = Buttons::YesNo;
    question.icon = PromptIcon::Question;
    question.safe = Answer::No;
    question.help = {
        kTargetHelp,
        tr("The target is the loudness that all files are brought to. Most music reaches 89 dB with "
           "its peaks whole. Above that the peaks of many files are higher than the file can hold, "
           "and are cut when it is played.")};
    const Answer answer = co_await services_.prompter.Ask(std::move(question));
    if (answer != Answer::Yes) {
      targetInt_ = services_.settings.Get(setting::GainInt);
      targetDec_ = services_.settings.Get(setting::GainDec);
      Q_EMIT TargetChanged();
      co_return;
    }
  }
  targetInt_ = std::clamp(whole, setting::GainInt.lowest, setting::GainInt.highest);
  targetDec_ = tenths;
  Q_EMIT TargetChanged();
  preview_ = RunPreview(paths);
}

void VolumeUnify::Preview(const std::vector<int>& picked) {
  if (running_) return;
  QStringList paths;
  for (const int row : picked) paths.append(rows_[row].path);
  preview_ = RunPreview(paths);
}

Job<> VolumeUnify::RunPreview(QStringList paths) {
  co_await ReadMeasured();
  Turn turn(services_.loop);
  for (const QString& path : std::as_const(paths)) {
    if (running_) co_return;
    if (!records_.contains(path) && measured_->Knows(path)) {
      const auto look = [path] { return MarkOf(path); };
      const std::optional<FileMark> mark = co_await services_.disks.Look(path, look);
      const std::optional<Mp3Info> known = mark ? measured_->Find(path, *mark) : std::nullopt;
      if (known && !records_.contains(path)) records_.insert(path, *known);
    }
    if (const auto record = records_.find(path); record != records_.end() && IsMp3(path)) {
      record->ModifydBGain = GainAdjust();
      ShowRecord(path);
    }
    co_await turn.Yield();
  }
}

void VolumeUnify::KeepTarget() const {
  services_.settings.Set(setting::GainInt, targetInt_);
  services_.settings.Set(setting::GainDec, targetDec_);
}

Job<> VolumeUnify::ReadMeasured() {
  if (measured_) co_return;
  auto fresh = std::make_shared<MeasuredGains>();
  if (!services_.measuredFile.isEmpty()) {
    const auto read = [file = services_.measuredFile, fresh] { *fresh = MeasuredGains::Load(file); };
    co_await services_.loop.Offload(EventLoop::Lane::Files, read);
  }
  if (!measured_) measured_ = fresh;
}

// The run.

QString VolumeUnify::Caption() const {
  return running_ ? QStringLiteral("CANCEL") : QStringLiteral("UNIFY VOLUME");
}

double VolumeUnify::Share() const {
  double done = doneWeight_;
  for (const ItemPtr& item : active_) done += item->Weight() * item->percent / 100;
  return allWeight_ > 0 ? std::min(done / allWeight_, 1.0) : 0;
}

void VolumeUnify::Say(const QString& words) {
  words_ = words;
  Q_EMIT Changed();
}

void VolumeUnify::SayPercent(const QString& words) {
  const double percent =
      queue_.empty() ? 0 : 100.0 * static_cast<double>(finished_) / static_cast<double>(queue_.size());
  Say(words + QLatin1Char('(') + Format0(percent) + QStringLiteral("%)"));
}

void VolumeUnify::Unify() {
  if (running_ || Listing()) return;
  std::vector<int> rows;
  std::vector<int> others;
  for (int row = 0; row < rows_.Count(); ++row) {
    if (rows_[row].change == kNoChange) continue;
    (IsMp3(rows_[row].path) ? rows : others).push_back(row);
  }
  chosen_ = rows;
  rows.insert(rows.end(), others.begin(), others.end());
  Begin(std::move(rows), false);
}

void VolumeUnify::Measure(const std::vector<int>& rows) {
  if (running_ || Listing()) return;
  chosen_ = rows;
  Begin(rows, true);
}

void VolumeUnify::Begin(std::vector<int> rows, bool measureOnly) {
  items_.clear();
  for (const int row : rows) {
    auto item = std::make_shared<Item>();
    item->path = rows_[row].path;
    item->mp3 = IsMp3(item->path);
    items_.push_back(std::move(item));
  }
  running_ = true;
  cancel_ = false;
  measureOnly_ = measureOnly;
  sumWords_.clear();
  endWords_.clear();
  Q_EMIT Chose();
  run_ = Run();
  Q_EMIT Changed();
}

void VolumeUnify::Cancel() {
  if (!running_ || cancel_) return;
  cancel_ = true;
  endWords_ = QStringLiteral("Operation Cancelled ! ");
  Say(QStringLiteral("Canceling !"));
  // A stop may let a file go on, and with it the list.
  const std::vector<ItemPtr> items = items_;
  for (const ItemPtr& item : items) item->stop.Stop();
}

Job<> VolumeUnify::Run() {
  try {
    co_await RunSteps();
  } catch (...) {
    basHandleError(kTag, tr("The volumes could not be unified."));
  }
  Sum();
  queue_.clear();
  items_.clear();
  waiting_.clear();
  running_ = false;
  Say(endWords_);
}

Job<> VolumeUnify::RunSteps() {
  co_await ReadMeasured();
  co_await DropOldCopies();
  const std::vector<ItemPtr> items = items_;
  co_await RunStep(items, &VolumeUnify::ReadItem, QStringLiteral("Reading Gain Levels "));
  if (!cancel_) co_await RunStep(items, &VolumeUnify::SaveItem, QStringLiteral("Saving Gain Level "));
  co_await RunWaiting();
  co_await DropOldCopies();
}

Job<> VolumeUnify::RunStep(std::vector<ItemPtr> items, ItemStep step, QString words) {
  if (items.empty()) co_return;
  queue_ = std::move(items);
  stepWords_ = words;
  active_.clear();
  next_ = finished_ = 0;
  doneWeight_ = allWeight_ = 0;
  for (const ItemPtr& item : queue_) {
    item->percent = 0;
    allWeight_ += item->Weight();
  }
  ++step_;
  SayPercent(stepWords_);
  const auto ends = std::make_shared<OneShot<bool>>();
  stepEnds_ = ends;
  working_ = static_cast<int>(std::min(queue_.size(), static_cast<std::size_t>(services_.processes)));
  for (int worker = working_; worker > 0; --worker) workers_.Add(Work(step));
  co_await ends->Wait();
}

Job<> VolumeUnify::Work(ItemStep step) {
  while (!cancel_ && next_ < queue_.size()) {
    const ItemPtr item = queue_[next_++];
    // Known before its weight is: what it counts for must not change on its way.
    const double weight = item->Weight();
    active_.push_back(item);
    if (!item->gone) {
      if (const int row = RowOf(item->path); row >= 0) Q_EMIT RowBegan(row);
      try {
        co_await (this->*step)(item);
      } catch (...) {
        SetState(*item, UnifyState::Failed, tr("Failed"));
        basHandleError(kTag, tr("The volume of %1 could not be unified.").arg(item->Name()));
      }
    }
    item->percent = 0;
    std::erase(active_, item);
    doneWeight_ += weight;
    ++finished_;
    if (!cancel_) SayPercent(stepWords_);
  }
  if (--working_ == 0) stepEnds_->Set(true);
}

Job<> VolumeUnify::RunWaiting() {
  while (!waiting_.empty() && !cancel_) {
    std::vector<ItemPtr> free;
    for (const ItemPtr& item : waiting_) {
      if (item->gone || !InUse(item->path)) free.push_back(item);
    }
    if (free.empty()) {
      Say(tr("Waiting for %1 in use")
              .arg(Counted(static_cast<qint64>(waiting_.size()), tr("track"), tr("tracks"))));
      co_await services_.loop.Sleep(kWaitBeat);
      continue;
    }
    for (const ItemPtr& item : free) std::erase(waiting_, item);
    co_await RunStep(free, &VolumeUnify::SaveItem, QStringLiteral("Saving Gain Level "));
  }
  for (const ItemPtr& item : waiting_)
    SetState(*item, UnifyState::LeftOut, tr("Left as it is: it is in use"));
}

Job<> VolumeUnify::DropOldCopies() {
  QSet<QString> folders;
  QStringList paths;
  for (const ItemPtr& item : items_) {
    const QString folder = QFileInfo(item->path).path();
    if (!item->mp3 || folders.contains(folder)) continue;
    folders.insert(folder);
    paths.append(item->path);
  }
  for (const QString& path : std::as_const(paths)) {
    const auto drop = [path] {
      DropCopies(path);
      return true;
    };
    (void)co_await services_.disks.Look(path, drop);
  }
}

void VolumeUnify::Sum() {
  std::array<int, static_cast<std::size_t>(UnifyState::Failed) + 1> counts{};
  for (const ItemPtr& item : items_) {
    if (item->gone) continue;
    // What the end of the run met on its way.
    if (item->state < UnifyState::Measured) SetState(*item, UnifyState::LeftOut, tr("Left out"));
    ++counts[static_cast<std::size_t>(item->state)];
  }
  QStringList parts;
  const auto add = [&](UnifyState state, const QString& words) {
    const int count = counts[static_cast<std::size_t>(state)];
    if (count > 0) parts.append(words.arg(count));
  };
  add(UnifyState::Saved, tr("%1 changed"));
  add(UnifyState::Measured, measureOnly_ ? tr("%1 measured") : tr("%1 right already"));
  add(UnifyState::CantChange, tr("%1 measured that can't be changed"));
  add(UnifyState::Failed, tr("%1 failed"));
  add(UnifyState::LeftOut, tr("%1 left out"));
  sumWords_ = parts.isEmpty() ? tr("Nothing had to be changed.")
                              : parts.join(QStringLiteral(", ")) + QLatin1Char('.');
}

}  // namespace kelvo
