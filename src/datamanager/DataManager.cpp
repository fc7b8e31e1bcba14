#include "datamanager/DataManager.h"

#include "database/DatabaseSettings.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <algorithm>

namespace kelvo {
namespace {

const QString kLineBreak = QStringLiteral("\r\n");
const QString kAccessTitle = QStringLiteral("Data Base Access");
/// A closing question leads to it.
const QString kUnifyTool = QStringLiteral("Command8");

Prompt Question(const QString& text, const QString& title = {}) {
  Prompt question;
  question.text = text;
  question.title = title;
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Question;
  return question;
}

}  // namespace

DataManager::DataManager(Services services)
    : services_(std::move(services)),
      list_({.loop = services_.loop,
             .disks = services_.disks,
             .catalogue = services_.catalogue,
             .words = services_.words,
             .paths = services_.paths}),
      references_(services_.loop, services_.catalogue),
      find_(services_.prompter, list_),
      preview_(services_.loop, services_.audio, services_.desk),
      bulk_({.loop = services_.loop,
             .prompter = services_.prompter,
             .catalogue = services_.catalogue,
             .paths = services_.paths,
             .changes = services_.changes}) {
  connect(&list_, &TrackList::StateChanged, this, &DataManager::Changed);
  connect(&references_, &ReferenceChoice::Changed, this, &DataManager::Changed);
  connect(&references_, &ReferenceChoice::TrackChanged, this, &DataManager::Changed);
  connect(&bulk_, &BulkEdit::Changed, this, &DataManager::Changed);
  if (services_.tools) tools_ = services_.tools(*this);
  Refresh();
}

// The view.

void DataManager::SetMode(DispMode mode) {
  dispMode_ = mode;
  Refresh();
  Q_EMIT Changed();
}

void DataManager::DisplayAll() {
  references_.ClearFilter();
  Refresh();
}

QString DataManager::AddWords() const {
  return list_.Mode() == DispMode::Jingles ? QStringLiteral("Add Jingles") : QStringLiteral("Add Tracks");
}

QString DataManager::WhyNoFilter() const {
  if (list_.Mode() != DispMode::MusicFiles) return tr("Only tracks can be filtered: display them first");
  return references_.Filter().Count() == 0 ? tr("Choose references for the filter first") : QString();
}

void DataManager::Filter() {
  list_.Filter(references_.Filter().All());
}

// The selection.

void DataManager::SetPicked(std::vector<int> rows, int current) {
  picked_ = std::move(rows);
  current_ = current;
  const Mref track = current >= 0 && current < list_.Count() ? list_.Track(current) : Mref::None;
  references_.ShowTrack(track);
  Q_EMIT Changed();
}

std::vector<Mref> DataManager::PickedTracks() const {
  std::vector<Mref> tracks;
  if (list_.Mode() == DispMode::Jingles) return tracks;
  tracks.reserve(picked_.size());
  for (const int row : picked_) {
    if (row < list_.Count()) tracks.push_back(list_.Track(row));
  }
  return tracks;
}

QStringList DataManager::PickedFiles() const {
  QStringList files;
  for (const int row : picked_) {
    if (row < list_.Count()) files.append(list_.FilePath(row));
  }
  return files;
}

QString DataManager::CurrentWords() const {
  if (current_ < 0 || current_ >= list_.Count()) return {};
  const Mref track = list_.Track(current_);
  const QString number = track == Mref::None ? QStringLiteral("N/A") : QString::number(ToInt(track));
  const QString time =
      track == Mref::None ? QString() : LengthText(services_.catalogue.TrackDurations(track));
  return time.isEmpty() ? tr("No %1").arg(number) : tr("No %1   %2").arg(number, time);
}

void DataManager::PlayCurrent() {
  if (current_ >= 0 && current_ < list_.Count()) preview_.Play(list_.SoundPath(current_));
}

// The tools.

const ManagerTool* DataManager::Tool(const QString& id) const {
  const auto found =
      std::find_if(tools_.begin(), tools_.end(), [&id](const ManagerTool& tool) { return tool.id == id; });
  return found == tools_.end() ? nullptr : &*found;
}

void DataManager::Run(const QString& id) {
  const ManagerTool* tool = Tool(id);
  if (tool == nullptr) return;
  const std::vector<Mref> picked = PickedTracks();
  if (!tool->whyOff || tool->whyOff(picked).isEmpty()) tool->run(picked);
}

void DataManager::ShowProgress(Progress progress) {
  notice_.clear();
  progress_ = std::move(progress);
  Q_EMIT Changed();
}

void DataManager::EndProgress() {
  progress_.reset();
  Q_EMIT Changed();
}

// Access.

void DataManager::Restrict() {
  if (!restrict_.Running()) restrict_ = RunRestrict();
}

Job<> DataManager::RunRestrict() {
  const ProgramSettings& settings = services_.settings;
  const QString text =
      QStringList{
          QStringLiteral("Restrict Access To This Data Manager"),
          QStringLiteral("Enter A PassWord Here to Deny Access"),
          QStringLiteral("(Be Sure To Enter Something Memorable, as YOU will be locked out TOO ! )"),
          QStringLiteral("Leave Empty To Allow Unrestricted Access !"),
          QStringLiteral("Note: Setting a password here also limits access rights to Play List Manager and "
                         "some other Interfaces !"),
          QStringLiteral("(The Setting will Take Effect Only After A Program Restart)")}
          .join(kLineBreak);
  const QString answer =
      co_await services_.prompter.AskText(kAccessTitle, text, settings.Get(setting::DmanPassWord));
  if (!answer.isEmpty()) {
    // What is stored says whether access is free: with a password it is not.
    settings.Set(setting::DmanAccess, false);
    settings.Set(setting::DmanPassWord, answer);
    co_return;
  }
  // A box that was only looked at and closed gives the same empty answer.
  if (!settings.Get(setting::DmanAccess)) {
    const Answer sure =
        co_await services_.prompter.Ask(Question(tr("Allow Unrestricted Access ?"), kAccessTitle));
    if (sure != Answer::Yes) co_return;
  }
  settings.Set(setting::DmanAccess, true);
}

// Closing.

std::vector<Mref> DataManager::NotUnified() const {
  const PooledTextColumn& gains = services_.catalogue.TrackGain;
  std::vector<bool> unknown(gains.Distinct());
  for (std::size_t text = 0; text < unknown.size(); ++text)
    unknown[text] = gains.Text(static_cast<std::uint32_t>(text)) == QLatin1Char('?');
  std::vector<Mref> tracks;
  for (int row = 1; row <= services_.catalogue.LastTrack(); ++row) {
    if (unknown[gains.Id(ToMref(row))]) tracks.push_back(ToMref(row));
  }
  return tracks;
}

Job<bool> DataManager::MayClose() {
  if (const int waiting = services_.catalogue.UtilityCount(); waiting > 0) {
    const Answer answer = co_await services_.prompter.Ask(
        Question(QStringLiteral("There Are ") + QString::number(waiting) +
                 QStringLiteral(" Tracks in the Utility Folder !") + kLineBreak +
                 QStringLiteral("Move them into the Data base Now ?")));
    if (answer == Answer::Yes && services_.openTransfer) services_.openTransfer();
  }
  const ManagerTool* unify = Tool(kUnifyTool);
  const std::size_t count = unify != nullptr ? NotUnified().size() : 0;
  if (count > 0) {
    const Answer answer = co_await services_.prompter.Ask(
        Question(QString::number(count) + QStringLiteral(" Track/s have not had Volume Unified") +
                 kLineBreak + QStringLiteral("Unify Now?")));
    if (answer == Answer::Yes) {
      unify->run(NotUnified());
      co_return false;
    }
  }
  co_return true;
}

}  // namespace kelvo
