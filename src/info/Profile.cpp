#include "info/Profile.h"

#include "database/Catalogue.h"
#include "info/InfoName.h"
#include "platform/AtomicFile.h"
#include "platform/Disks.h"
#include "platform/ErrorLog.h"
#include "platform/TextFile.h"
#include "platform/Words.h"

#include <QPointer>

#include <algorithm>

namespace kelvo {

Profile::Profile(Services services)
    : services_(std::move(services)),
      words_(WordsOf(services_.kind)),
      page_({services_.loop, services_.disks, services_.prompter, services_.pictures, services_.trash}) {
  connect(&page_, &InfoPage::Changed, this, &Profile::Changed);
  services_.catalogue.Listen(this, [this](const ReferenceChanged& change) { Follow(change); });
}

void Profile::Tell(const QString& text, const QString& title) {
  Prompt message;
  message.text = text;
  message.title = title;
  message.icon = PromptIcon::Information;
  services_.prompter.Tell(message);
}

Job<Answer> Profile::Ask(QString text, Buttons buttons) {
  Prompt question;
  question.text = std::move(text);
  question.buttons = buttons;
  question.icon = PromptIcon::Question;
  const Answer answer = co_await services_.prompter.Ask(question);
  co_return answer;
}

void Profile::Begin(Job<> job) {
  work_ = Guard(std::move(job));
  Q_EMIT Changed();
}

Job<> Profile::Guard(Job<> job) {
  try {
    co_await std::move(job);
  } catch (...) {
    basHandleError(QStringLiteral(" profile"), tr("The profile could not be changed."));
  }
  // At the loop's next turn, when this is over.
  services_.loop.Post([self = QPointer(this)] {
    if (self) Q_EMIT self->Changed();
  });
}

void Profile::TellDone() {
  services_.loop.Post([self = QPointer(this)] {
    if (self) Q_EMIT self->Done();
  });
}

QString Profile::InCatalogue(const QString& name) const {
  const QStringList& names = services_.catalogue.References(words_.set);
  if (names.contains(name)) return name;
  const auto found = std::find_if(names.begin(), names.end(), [&name](const QString& each) {
    return each.compare(name, Qt::CaseInsensitive) == 0;
  });
  return found == names.end() ? name : *found;
}

void Profile::Follow(const ReferenceChanged& change) {
  if (change.set != words_.set || name_.isEmpty() || change.before != name_) return;
  if (change.name.isEmpty()) {
    gone_ = true;
    page_.Lose();
  } else {
    name_ = change.name;
    page_.Move({page_.Place().folder, change.name});
  }
  Q_EMIT Changed();
}

void Profile::Open(const QString& name) {
  if (!AtWork() && !name.isEmpty()) Begin(RunOpen(InCatalogue(name)));
}

void Profile::Reread() {
  if (!AtWork() && !name_.isEmpty() && !page_.Dirty()) Begin(Load());
}

Job<> Profile::RunOpen(QString name) {
  if (name == name_ && page_.Dirty()) co_return;
  const bool may = co_await MayClose();
  if (!may) co_return;
  name_ = name;
  gone_ = false;
  readOnly_ = services_.readOnly();
  co_await Load();
  if (page_.Found() || !page_.Editable()) co_return;
  QString words = words_.missing + name_;
  if (words_.picture && !readOnly_) words += QStringLiteral("\r\nPlease Edit then Click Save And Close !");
  Tell(words, QStringLiteral("Info File"));
}

Job<> Profile::Load() {
  InfoPlace place{services_.paths(words_.slot), name_};
  const QStringList references = services_.catalogue.References(words_.set);
  const auto look = [place, references] {
    for (const QString& found : NamesOnDisk(place.folder, place.name)) {
      // One that is written in another way may be that of another name.
      if (found == place.name || !references.contains(found)) return found;
    }
    return place.name;
  };
  const std::optional<QString> found = co_await services_.disks.Look(place.folder, look);
  place.name = found.value_or(place.name);
  const bool read = co_await page_.Load(place);
  if (read) page_.Begin();
}

void Profile::SaveAndClose() {
  if (MayWork()) Begin(RunSave());
}

Job<bool> Profile::Save() {
  const qsizetype excess = LinesOfText(page_.Text()).size() - kMostLines;
  if (excess > 0) {
    Tell(QStringLiteral("The Current File Contains ") + QString::number(excess) +
         QStringLiteral(" lines more than the maximum allowed for info files\r\n"
                        "Please Reduce then try again !"));
    co_return false;
  }
  if (!CheckFileName(services_.prompter, page_.Place().name, QStringLiteral(".txt"))) co_return false;
  const bool saved = co_await page_.Save();
  co_return saved;
}

Job<> Profile::RunSave() {
  bool saved = true;
  if (page_.Dirty()) saved = co_await Save();
  if (saved) TellDone();
}

Job<bool> Profile::MayClose() {
  if (!page_.Dirty()) co_return true;
  const Answer answer = co_await Ask(words_.closeQuestion, Buttons::YesNoCancel);
  if (answer == Answer::Cancel) co_return false;
  if (answer == Answer::No) {
    page_.Revert();
    co_return true;
  }
  const bool saved = co_await Save();
  co_return saved;
}

void Profile::Delete() {
  if (MayWork() && page_.Found()) Begin(RunDelete());
}

Job<> Profile::RunDelete() {
  Prompt question;
  question.text = words_.deleteBefore + name_ + words_.deleteBehind;
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Exclamation;
  question.safe = Answer::No;
  const Answer answer = co_await services_.prompter.Ask(question);
  if (answer != Answer::Yes) co_return;
  const auto discard = [place = page_.Place(), trash = services_.trash] { DiscardInfo(place, trash); };
  co_await services_.loop.Offload(EventLoop::Lane::Files, discard);
  page_.Revert();
  page_.Lose();
}

void Profile::DropText(const QStringList& files) {
  if (MayWork() && page_.Editable()) Begin(RunDropText(files));
}

Job<> Profile::RunDropText(QStringList files) {
  if (files.size() != 1) {
    Tell(tr("Please Drop One File !"));
    co_return;
  }
  const QString path = files.first();
  std::optional<QByteArray> bytes;
  if (UpperExtension(path) == QLatin1StringView("TXT")) {
    const auto look = [path] { return ReadWholeFile(path, kMostTextBytes); };
    bytes = co_await services_.disks.Look(path, look);
    if (!bytes) {
      Tell(tr("Disk Does Not Answer : %1").arg(path));
      co_return;
    }
  }
  if (!bytes || bytes->contains('\0')) {
    Tell(QStringLiteral("Only Text Files can be Dropped"));
    co_return;
  }
  QString text = TextFile::FromBytes(*bytes).Lines().join(QLatin1Char('\n'));
  if (page_.Found()) {
    const QString question = QStringLiteral("File ") + name_ +
                             QStringLiteral(
                                 " Already Exists !\r\nDo You Want To Replace The File ?\r\n"
                                 "(Press No To Append to End Of file)");
    const Answer answer = co_await Ask(question, Buttons::YesNoCancel);
    if (answer == Answer::Cancel) co_return;
    // What was typed and not saved yet comes along.
    if (answer == Answer::No) text = (LinesOfText(page_.Text()) << text).join(QLatin1Char('\n'));
  }
  if (!CheckFileName(services_.prompter, page_.Place().name, QStringLiteral(".txt"))) co_return;
  co_await page_.Replace(text);
}

void Profile::PickPicture() {
  if (MayWork() && words_.picture) Begin(page_.PickPicture());
}

void Profile::DropPicture(const QStringList& files) {
  if (MayWork() && words_.picture) Begin(page_.TakeDropped(files));
}

void Profile::RemovePicture() {
  if (MayWork() && !page_.Picture().isEmpty()) Begin(page_.RemovePicture());
}

}  // namespace kelvo
