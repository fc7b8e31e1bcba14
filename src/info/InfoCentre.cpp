#include "info/InfoCentre.h"

#include "info/InfoName.h"
#include "platform/Disks.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QDir>
#include <QPointer>

#include <algorithm>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

/// Between the last letter that is typed and the search.
constexpr Nanoseconds kFindDelay = 200ms;
constexpr std::size_t kMostHits = 500;

/// The fixed words of a level.
struct LevelWords {
  QString box;     ///< title of the box that asks for a new one
  QString prompt;  ///< what it asks
  QString exists;  ///< behind the name, and where it is
  QString tooLong;
};

LevelWords WordsOf(InfoLevel level) {
  switch (level) {
    case InfoLevel::Category:
      return {QStringLiteral("New Category"), QStringLiteral("Please Enter New Info Centre Category"),
              QStringLiteral(" Already Exists\r\nPlease Choose Another Category Name !"),
              QStringLiteral("Category Names Cannot be longer than 20 Characters")};
    case InfoLevel::Topic:
      return {QStringLiteral("New Topic"), QStringLiteral("Please Enter Topic Name For Category :-"),
              QStringLiteral(" Already Exists\r\nPlease Choose Another Topic Name !"),
              QStringLiteral("Topic Names Cannot be longer than 20 Characters  ")};
    case InfoLevel::Title:
      break;
  }
  return {QStringLiteral("New Title"), QStringLiteral("Please Enter Title Name For Topic :-"),
          QStringLiteral(" Already Exists\r\nPlease Choose Another Title Name !"),
          QStringLiteral("Title Names Cannot be longer than 30 Characters")};
}

/// The refusal of a name that is there already, up to " Already Exists".
QString Taken(InfoLevel level, const InfoPath& path, const QString& name) {
  switch (level) {
    case InfoLevel::Category:
      return QStringLiteral("Info Centre Category ") + name;
    case InfoLevel::Topic:
      return QStringLiteral("Topic Name ") + name + QStringLiteral("In Category ") + path.category;
    case InfoLevel::Title:
      break;
  }
  return QStringLiteral("Title Name ") + name + QStringLiteral("In ") + path.topic;
}

QString EndingOf(InfoLevel level) {
  return level == InfoLevel::Title ? QStringLiteral(".txt") : QString();
}

}  // namespace

InfoCentre::InfoCentre(Services services)
    : services_(std::move(services)),
      page_({services_.loop, services_.disks, services_.prompter, services_.pictures, services_.trash}) {
  connect(&page_, &InfoPage::Changed, this, &InfoCentre::Changed);
}

InfoCentre::~InfoCentre() {
  if (stopFinding_) *stopFinding_ = true;
}

int InfoCentre::MostLetters(InfoLevel level) {
  return level == InfoLevel::Title ? 30 : 20;
}

const RowStore<InfoName>& InfoCentre::Names(InfoLevel level) const {
  return names_[static_cast<std::size_t>(level)];
}

RowStore<InfoName>& InfoCentre::Rows(InfoLevel level) {
  return names_[static_cast<std::size_t>(level)];
}

InfoPlace InfoCentre::PlaceOf(const InfoPath& path) const {
  return {FolderOf(services_.root, path, InfoLevel::Title), path.title};
}

void InfoCentre::Refuse(const QString& text) {
  Prompt message;
  message.text = text;
  message.icon = PromptIcon::Exclamation;
  services_.prompter.Tell(message);
}

Job<Answer> InfoCentre::Ask(QString text, Buttons buttons, QString title) {
  Prompt question;
  question.text = std::move(text);
  question.title = std::move(title);
  question.buttons = buttons;
  question.icon = PromptIcon::Question;
  const Answer answer = co_await services_.prompter.Ask(question);
  co_return answer;
}

void InfoCentre::Begin(Job<> job) {
  work_ = Guard(std::move(job));
  Q_EMIT Changed();
}

Job<> InfoCentre::Guard(Job<> job) {
  try {
    co_await std::move(job);
  } catch (...) {
    basHandleError(QStringLiteral(" infocentre"), tr("The Info Centre could not be changed."));
  }
  reading_ = false;
  TellChanged();
}

void InfoCentre::TellChanged() {
  // At the loop's next turn, when the job that tells it is over.
  services_.loop.Post([self = QPointer(this)] {
    if (self) Q_EMIT self->Changed();
  });
}

void InfoCentre::Enter() {
  readOnly_ = services_.readOnly();
  List();
}

void InfoCentre::List() {
  if (!AtWork()) Begin(Show(chosen_));
}

void InfoCentre::Choose(InfoLevel level, const QString& name) {
  if (name == chosen_[level]) return;
  if (AtWork()) {
    TellChanged();
    return;
  }
  Begin(Show(chosen_.With(level, name)));
}

Job<bool> InfoCentre::MayLeave(QString question) {
  if (!page_.Dirty()) co_return true;
  const Answer answer = co_await Ask(std::move(question), Buttons::YesNoCancel);
  if (answer == Answer::Cancel) co_return false;
  if (answer == Answer::No) {
    page_.Revert();
    co_return true;
  }
  const bool saved = co_await page_.Save();
  co_return saved;
}

Job<> InfoCentre::Show(InfoPath wanted) {
  reading_ = false;
  const bool another = wanted != chosen_;
  if (another) {
    const bool may = co_await MayLeave(QStringLiteral("Save Changes to ") + chosen_.title);
    if (!may) co_return;
  }
  reading_ = true;
  const bool otherTitle = !(PlaceOf(wanted) == PlaceOf(chosen_));
  chosen_ = std::move(wanted);
  if (otherTitle) page_.Clear();
  TellChanged();
  co_await ListAll();
  if (chosen_.title.isEmpty()) {
    if (!page_.Dirty()) page_.Clear();
  } else if (!page_.Dirty()) {
    const InfoPlace place = PlaceOf(chosen_);
    co_await page_.Load(place);
  }
}

Job<QStringList> InfoCentre::NamesAt(InfoPath path, InfoLevel level) {
  const auto look = [root = services_.root, path, level] { return InfoNames(root, path, level); };
  std::optional<QStringList> names = co_await services_.disks.Look(services_.root, look);
  if (!names) trouble_ = tr("Disk Does Not Answer : %1").arg(services_.root);
  co_return names.value_or(QStringList());
}

Job<> InfoCentre::ListAll() {
  trouble_.clear();
  for (const InfoLevel level : kInfoLevels) {
    QStringList names;
    const bool parent =
        level == InfoLevel::Category ||
        !chosen_[level == InfoLevel::Topic ? InfoLevel::Category : InfoLevel::Topic].isEmpty();
    try {
      if (parent) names = co_await NamesAt(chosen_, level);
    } catch (...) {
      trouble_ = tr("The folder cannot be read: %1").arg(FolderOf(services_.root, chosen_, level));
    }
    // A title that has gone is shown as such.
    if (level != InfoLevel::Title && !names.contains(chosen_[level])) chosen_ = chosen_.With(level, {});
    std::vector<InfoName> rows;
    for (const QString& name : names) rows.push_back({name});
    if (Names(level).All() != rows) Rows(level).Replace(std::move(rows));
  }
  TellChanged();
}

void InfoCentre::New(InfoLevel level) {
  if (AtWork() || readOnly_) return;
  if (level == InfoLevel::Topic && chosen_.category.isEmpty()) {
    Refuse(QStringLiteral("Please Select or Create A Category To Contain Your New Topic !"));
  } else if (level == InfoLevel::Title && chosen_.topic.isEmpty()) {
    Refuse(QStringLiteral("Please Select or Create A Topic To Contain Your New Title !"));
  } else {
    Begin(RunNew(level));
  }
}

Job<> InfoCentre::RunNew(InfoLevel level) {
  reading_ = false;
  const LevelWords words = WordsOf(level);
  const QString typed = co_await services_.prompter.AskText(words.box, words.prompt, QString());
  const QString name = typed.trimmed();
  if (name.isEmpty()) co_return;
  const QStringList there = co_await NamesAt(chosen_, level);
  if (there.contains(name, Qt::CaseInsensitive)) {
    Refuse(Taken(level, chosen_, name) + words.exists);
    co_return;
  }
  if (name.size() > MostLetters(level)) {
    Refuse(words.tooLong);
    co_return;
  }
  if (!CheckFileName(services_.prompter, name, EndingOf(level))) co_return;
  const InfoPath made = chosen_.With(level, name);
  const QString folder = FolderOf(services_.root, made, level);
  const QString first = QStringLiteral("New Title ") + name + QStringLiteral(" Created On: ") +
                        services_.loop.Now().toString(QStringLiteral("dd/MM/yyyy"));
  const auto make = [folder, name, first, level, trash = services_.trash] {
    if (level == InfoLevel::Title) {
      // What is left of a title that other hands deleted does not become this one's.
      DropPictures({folder, name}, trash);
      SaveInfo({folder, name}, first);
    } else if (!QDir().mkpath(folder + QLatin1Char('/') + name)) {
      throw Failure(tr("The folder cannot be made."), 0, folder + QLatin1Char('/') + name);
    }
  };
  co_await services_.loop.Offload(EventLoop::Lane::Files, make);
  co_await Show(made);
}

void InfoCentre::Rename(InfoLevel level) {
  if (!AtWork() && !readOnly_ && !chosen_[level].isEmpty()) Begin(RunRename(level));
}

Job<> InfoCentre::RunRename(InfoLevel level) {
  reading_ = false;
  const QString old = chosen_[level];
  const QString typed = co_await services_.prompter.AskText(
      QStringLiteral("Rename"), QStringLiteral("Please Enter New Name for ") + old, old);
  const QString name = typed.trimmed();
  if (name.isEmpty() || name == old) co_return;
  if (const int most = MostLetters(level); name.size() > most) {
    Refuse(name + QStringLiteral(" Cannot be longer that ") + QString::number(most) +
           QStringLiteral(" Characters !"));
    co_return;
  }
  if (!CheckFileName(services_.prompter, name, EndingOf(level))) co_return;
  const QString question = QStringLiteral("Rename ") + old + QStringLiteral(" To ") + name;
  const Answer answer = co_await Ask(question, Buttons::YesNo);
  if (answer != Answer::Yes) co_return;
  const QStringList there = co_await NamesAt(chosen_, level);
  const bool onlyCase = name.compare(old, Qt::CaseInsensitive) == 0;
  bool renamed = false;
  if (onlyCase || !there.contains(name, Qt::CaseInsensitive)) {
    const auto rename = [root = services_.root, path = chosen_, level, name] {
      return RenameEntry(root, path, level, name);
    };
    renamed = co_await services_.loop.Offload(EventLoop::Lane::Files, rename);
  }
  if (!renamed) {
    Refuse(QStringLiteral("Cannot Rename ") + (level == InfoLevel::Title
                                                   ? QStringLiteral("File Name Already Exists !")
                                                   : QStringLiteral("Folder Name Already Exists !")));
    co_return;
  }
  // What is shown stays, a changed text too.
  InfoPath path = chosen_.With(level, name);
  if (level == InfoLevel::Category) path.topic = chosen_.topic;
  if (level != InfoLevel::Title) path.title = chosen_.title;
  chosen_ = path;
  if (page_.Shown()) page_.Move(PlaceOf(chosen_));
  co_await Show(chosen_);
}

void InfoCentre::Delete(InfoLevel level) {
  if (!AtWork() && !readOnly_ && !chosen_[level].isEmpty()) Begin(RunDelete(level));
}

Job<> InfoCentre::RunDelete(InfoLevel level) {
  reading_ = false;
  const InfoPath path = chosen_;
  const QString box = QStringLiteral("Delete ") + path[level];
  QString question = box;
  if (level != InfoLevel::Title) {
    const QString folder = FolderOf(services_.root, path, level) + QLatin1Char('/') + path[level];
    const auto look = [folder] { return CountIn(folder); };
    const std::optional<InfoCount> count = co_await services_.disks.Look(folder, look);
    if (!count) {
      Refuse(tr("Disk Does Not Answer : %1").arg(folder));
      co_return;
    }
    question = QStringLiteral("Deleting The Folder: ") + path[level] + QStringLiteral(" Will Also Delete:-") +
               QString::number(count->folders) + QStringLiteral(" SubFolders And ") +
               QString::number(count->files) + QStringLiteral(" Files\r\nContinue With Delete ?");
  }
  Prompt prompt;
  prompt.text = question;
  prompt.title = box;
  prompt.buttons = Buttons::YesNo;
  prompt.icon = PromptIcon::Exclamation;
  prompt.safe = Answer::No;
  const Answer answer = co_await services_.prompter.Ask(prompt);
  if (answer != Answer::Yes) co_return;
  const auto discard = [root = services_.root, path, level, trash = services_.trash] {
    DiscardEntry(root, path, level, trash);
  };
  co_await services_.loop.Offload(EventLoop::Lane::Files, discard);
  page_.Clear();
  chosen_ = path.With(level, {});
  co_await Show(chosen_);
}

void InfoCentre::SaveAndClose() {
  if (!AtWork() && !readOnly_) Begin(RunSave());
}

Job<> InfoCentre::RunSave() {
  reading_ = false;
  bool saved = true;
  if (page_.Dirty()) saved = co_await page_.Save();
  if (!saved) co_return;
  services_.loop.Post([self = QPointer(this)] {
    if (self) Q_EMIT self->Done();
  });
}

Job<bool> InfoCentre::MayClose() {
  const bool may = co_await MayLeave(QStringLiteral("Do you Want to Save Changes to .."));
  co_return may;
}

void InfoCentre::PickPicture() {
  if (AtWork() || readOnly_ || !page_.Editable()) return;
  reading_ = false;
  Begin(page_.PickPicture());
}

void InfoCentre::DropPicture(const QStringList& files) {
  if (AtWork() || readOnly_ || !page_.Editable()) return;
  reading_ = false;
  Begin(page_.TakeDropped(files));
}

void InfoCentre::RemovePicture() {
  if (AtWork() || readOnly_ || page_.Picture().isEmpty()) return;
  reading_ = false;
  Begin(page_.RemovePicture());
}

void InfoCentre::Find(const QString& words) {
  const QString wanted = words.simplified();
  if (wanted == words_) return;
  words_ = wanted;
  if (stopFinding_) *stopFinding_ = true;
  finding_ = {};
  if (words_.isEmpty()) {
    hits_.TakeAll();
  } else {
    finding_ = RunFind(words_);
  }
  Q_EMIT Changed();
}

Job<> InfoCentre::RunFind(QString words) {
  stopFinding_ = std::make_shared<std::atomic<bool>>(false);
  co_await services_.loop.Sleep(kFindDelay);
  try {
    const auto look = [root = services_.root, stop = stopFinding_,
                       wanted = FoldedText(words).split(QLatin1Char(' '), Qt::SkipEmptyParts)] {
      return FindInBank(root, wanted, kMostHits, stop);
    };
    std::optional<std::vector<InfoHit>> hits = co_await services_.disks.Look(services_.root, look);
    if (!hits) trouble_ = tr("Disk Does Not Answer : %1").arg(services_.root);
    hits_.Replace(hits ? std::move(*hits) : std::vector<InfoHit>());
  } catch (...) {
    basHandleError(QStringLiteral(" infofind"), tr("The texts cannot be searched."));
  }
  TellChanged();
}

void InfoCentre::ChooseHit(int row) {
  if (AtWork() || row < 0 || row >= hits_.Count()) return;
  if (const InfoPath path = hits_[row].path; path != chosen_) Begin(Show(path));
}

}  // namespace kelvo
