#include "datamanager/TrackEditor.h"

#include "database/TrackInfo.h"
#include "database/TrackNames.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"

#include <QFileInfo>
#include <QPointer>

#include <cerrno>

namespace kelvo {
namespace {

const QString kTag = QStringLiteral(" fileed");
constexpr int kFirstYear = 1950;

TrackFacts FactsIn(const TrackInfo& info) {
  const ReleaseDate date = info.Get(InfoFields::ReleaseDate);
  const auto strong = [&info](InfoLine::Line line) {
    return info.Text(line).trimmed() != QStringLiteral("0");
  };
  return {.year = date.year,
          .month = date.month,
          .hiPos = info.Text(InfoLine::HiPos),
          .bpm = info.Text(InfoLine::Bpm),
          .startStrong = strong(InfoLine::StartStyle),
          .endStrong = strong(InfoLine::EndStyle),
          .comments = info.Comments().join(QLatin1Char('\n')).trimmed()};
}

QString OrZero(const QString& text) {
  const QString trimmed = text.trimmed();
  return trimmed.isEmpty() ? QStringLiteral("0") : trimmed;
}

/// Puts the facts into the file. The rest stays as it is there by now.
void WriteFacts(const TrackFacts& facts, bool converted, TrackInfo& info) {
  info.Set(InfoFields::ReleaseDate, ReleaseDate{facts.year, facts.month});
  info.SetText(InfoLine::Bpm, OrZero(facts.bpm));
  info.SetText(InfoLine::HiPos, OrZero(facts.hiPos));
  info.SetText(InfoLine::StartStyle, facts.startStrong ? QStringLiteral("1") : QStringLiteral("0"));
  info.SetText(InfoLine::EndStyle, facts.endStrong ? QStringLiteral("1") : QStringLiteral("0"));
  if (converted) info.SetText(InfoLine::GainRecord, QStringLiteral("?"));
  info.SetComments(facts.comments);
}

}  // namespace

TrackEditor::TrackEditor(Services services) : services_(std::move(services)) {
  connect(services_.changes.get(), &LibraryChanges::Changed, this, &TrackEditor::Changed);
  FollowCatalogue();
}

void TrackEditor::FollowCatalogue() {
  const auto renamed = [this](const QString& before, const QString& path) {
    if (before != path_) return;
    const bool typed = newName_ != BaseName();
    path_ = path;
    if (!typed || work_.Running()) newName_ = BaseName();
    Q_EMIT Changed();
  };
  const auto went = [this](const QString& path) {
    if (path != path_) return;
    ready_ = false;
    gone_ = true;
    Q_EMIT Changed();
  };
  services_.catalogue.Listen(
      this, [renamed](const TrackRenamed& change) { renamed(change.pathBefore, change.path); },
      [renamed, went](const JingleChanged& change) {
        change.path.isEmpty() ? went(change.before) : renamed(change.before, change.path);
      },
      [went](const TrackRemoved& removed) { went(removed.path); },
      [this](const CatalogueReplaced&) {
        if (!jingle_ && !path_.isEmpty() && services_.catalogue.Find(path_) == Mref::None) gone_ = true;
      });
}

QString TrackEditor::Title() const {
  const QString name = QFileInfo(path_).fileName();
  return deleted_ ? name + QStringLiteral(" - Removed") : name;
}

QString TrackEditor::BaseName() const {
  return kelvo::BaseName(QFileInfo(path_).fileName());
}

const QStringList& TrackEditor::Months() {
  static const QStringList months =
      QStringLiteral("xxx,Jan,Feb,Mar,Apr,May,Jun,Jul,Aug,Sep,Oct,Nov,Dec").split(QLatin1Char(','));
  return months;
}

QStringList TrackEditor::Years() const {
  QStringList years;
  for (int year = services_.loop.Now().date().year(); year >= kFirstYear; --year)
    years.append(QString::number(year));
  return years;
}

QString TrackEditor::WhyNoChange() const {
  if (path_.isEmpty()) return tr("No file is open");
  if (deleted_) return tr("The file was removed");
  if (gone_) return tr("The file is no longer in the library");
  if (work_.Running()) return tr("The file is being worked on");
  return services_.changes->WhyNot();
}

QString TrackEditor::WhyNoFacts() const {
  const QString why = WhyNoChange();
  if (!why.isEmpty()) return why;
  if (jingle_) return tr("A jingle has no info file");
  return ready_ ? QString() : tr("The file is being read");
}

void TrackEditor::SetNewName(const QString& name) {
  if (name == newName_) return;
  newName_ = name;
  Q_EMIT Changed();
}

void TrackEditor::Change(const std::function<void(TrackFacts&)>& change) {
  if (!ready_) return;
  change(facts_);
  Q_EMIT Changed();
}

void TrackEditor::Tell(const QString& text, PromptIcon icon) {
  Prompt message;
  message.text = text;
  message.icon = icon;
  services_.prompter.Tell(message);
}

Job<bool> TrackEditor::Ask(QString text) {
  Prompt question;
  question.text = text;
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Question;
  question.safe = Answer::No;
  const Answer answer = co_await services_.prompter.Ask(question);
  co_return answer == Answer::Yes;
}

// Opening and closing.

void TrackEditor::Open(const QString& path) {
  if (work_.Running()) return;
  // Changes to this very file stay as they are.
  if (path == path_ && Dirty()) {
    Q_EMIT Changed();
  } else {
    opening_ = RunOpen(path);
  }
}

void TrackEditor::Forget() {
  ready_ = jingle_ = deleted_ = gone_ = converted_ = false;
  before_ = facts_ = {};
  newName_.clear();
  path_.clear();
}

void TrackEditor::ShowLater() {
  services_.loop.Post([self = QPointer(this)] {
    if (self) Q_EMIT self->Changed();
  });
}

void TrackEditor::CloseLater() {
  // Later: the window that closes then may drop the job that wants it.
  services_.loop.Post([self = QPointer(this)] {
    if (self) Q_EMIT self->Closed();
  });
}

Job<> TrackEditor::RunOpen(QString path) {
  try {
    const bool may = co_await MayClose();
    if (!may) co_return;
    Forget();
    path_ = path;
    newName_ = BaseName();
    jingle_ = QFileInfo(path).path() != services_.paths(Paths::Music);
    if (jingle_) facts_.comments = QStringLiteral("N/A");
    Q_EMIT Changed();
    if (!jingle_) {
      const QString infoPath = TrackInfoPath(services_.paths, BaseName());
      const auto look = [infoPath] { return ReadTrackInfo(infoPath); };
      const std::optional<std::optional<TrackInfo>> found = co_await services_.disks.Look(infoPath, look);
      if (!found) throw Failure(tr("Its disk does not answer."), 0, infoPath);
      if (!*found) {
        Forget();
        Tell(QStringLiteral("Requested File Dousn't Exist !"));
        CloseLater();
        co_return;
      }
      before_ = facts_ = FactsIn(**found);
      ready_ = true;
    }
    Q_EMIT Opened();
    Q_EMIT Changed();
  } catch (...) {
    Forget();
    basHandleError(kTag, tr("What is known of %1 could not be read.").arg(QFileInfo(path).fileName()));
    CloseLater();
  }
}

void TrackEditor::Leave() {
  if (work_.Running() || Dirty()) return;
  opening_.Cancel();
  Forget();
  Q_EMIT Changed();
}

Job<bool> TrackEditor::MayClose() {
  if (!Dirty()) co_return true;
  if (work_.Running()) co_return false;
  Prompt question;
  question.text = tr("Save Changes ?");
  question.buttons = Buttons::YesNoCancel;
  question.icon = PromptIcon::Question;
  const Answer answer = co_await services_.prompter.Ask(question);
  if (answer == Answer::Yes) {
    const bool saved = co_await RunSave();
    co_return saved;
  }
  if (answer != Answer::No) co_return false;
  facts_ = before_;
  Q_EMIT Opened();
  Q_EMIT Changed();
  co_return true;
}

// Saving.

bool TrackEditor::CheckFigure(const QString& text, const QString& before, const QString& refusal) {
  // What the file said already ("?") is no fault of the operator's.
  const QString trimmed = text.trimmed();
  if (!ready_ || trimmed.isEmpty() || text == before || NumberIn(trimmed.toStdString())) return true;
  Tell(refusal);
  return false;
}

bool TrackEditor::CheckHiPos() {
  return CheckFigure(facts_.hiPos, before_.hiPos, QStringLiteral("Hi Pos Must Be A Number !"));
}

bool TrackEditor::CheckBpm() {
  return CheckFigure(facts_.bpm, before_.bpm, QStringLiteral("Bpm Must Be A Number"));
}

void TrackEditor::Save() {
  if (WhyNoFacts().isEmpty()) work_ = RunSaveAndClose();
}

Job<> TrackEditor::RunSaveAndClose() {
  const bool saved = co_await RunSave();
  if (saved) CloseLater();
  ShowLater();
}

Job<bool> TrackEditor::RunSave() {
  if (!CheckHiPos() || !CheckBpm()) co_return false;
  Q_EMIT Changed();
  bool saved = false;
  try {
    const QString path = path_;
    const TrackFacts facts = facts_;
    const auto write = [infoPath = TrackInfoPath(services_.paths, BaseName()), facts,
                        converted = converted_] {
      std::optional<TrackInfo> info = ReadTrackInfo(infoPath);
      if (!info) throw Failure(QStringLiteral("Could Not Save info File !"), ENOENT, infoPath);
      WriteFacts(facts, converted, *info);
      WriteTrackInfo(infoPath, *info);
      return *info;
    };
    const TrackInfo info = co_await services_.loop.Offload(EventLoop::Lane::Files, write);
    services_.catalogue.TakeInfo(services_.catalogue.Find(path), info);
    before_ = facts;
    converted_ = false;
    saved = true;
  } catch (const Failure& failure) {
    if (failure.Number() == ENOENT) {
      NoteInLog(QStringLiteral("%1: %2").arg(failure.Source(), QString::fromUtf8(failure.what())));
      Tell(QStringLiteral("Could Not Save info File !"));
    } else {
      basHandleError(kTag, tr("The changes to %1 could not be saved.").arg(BaseName()));
    }
  } catch (...) {
    basHandleError(kTag, tr("The changes to %1 could not be saved.").arg(BaseName()));
  }
  Q_EMIT Changed();
  co_return saved;
}

}  // namespace kelvo
