// What the editor does beside its fields: the duration panel, the import of text, listening.

#include "database/DatabaseSettings.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "platform/Words.h"
#include "playlists/PlayEditor.h"

#include <QFileInfo>

namespace kelvo {

namespace {

const QString kTag = QStringLiteral(" playedit");
const QString kLineBreak = QStringLiteral("\r\n");
/// More text than this is no comment.
constexpr qint64 kMostImport = qint64{1} << 20;

}  // namespace

// The duration.

void PlayEditor::OpenDuration() {
  if (!WhyNoEdit().isEmpty()) return;
  durationOpen_ = true;
  Q_EMIT Changed();
}

void PlayEditor::CloseDuration() {
  work_.Cancel();
  durationOpen_ = false;
  Q_EMIT Changed();
}

void PlayEditor::Reread() {
  if (durationOpen_ && !work_.Running()) work_ = RunReread();
}

Job<> PlayEditor::RunReread() {
  try {
    Prompt question;
    question.text = QStringLiteral("Read the Duration from the Actual Track\r\nContinue ?");
    question.buttons = Buttons::YesNo;
    question.icon = PromptIcon::Question;
    const Answer answer = co_await services_.prompter.Ask(question);
    if (answer != Answer::Yes) co_return;
    const QString base = services_.paths(Paths::Music) + QLatin1Char('/') + BaseName();
    const auto find = [base] {
      for (const QString& extension : {QStringLiteral(".mp3"), QStringLiteral(".Mp3")}) {
        if (QFileInfo(base + extension).isFile()) return base + extension;
      }
      return QString();
    };
    const std::optional<QString> found = co_await services_.disks.Look(base, find);
    if (!found || found->isEmpty()) {
      Tell(QStringLiteral("Could Not Access file"));
      co_return;
    }
    const double seconds = co_await services_.audio.DurationOf(*found);
    rereadDuration_ = static_cast<int>(Int(seconds));
    Q_EMIT Changed();
    Tell(QStringLiteral("The Duration Has Been Re-Read !\r\n"
                        "Don`t forget to Click 'Save And Close'!"),
         PromptIcon::Information);
  } catch (...) {
    basHandleError(kTag, tr("The duration of %1 could not be read.").arg(BaseName()));
  }
}

void PlayEditor::ApplyDuration(int seconds) {
  if (durationOpen_) work_ = RunApply(seconds);
}

Job<> PlayEditor::RunApply(int seconds) {
  Prompt question;
  question.text = QStringLiteral("Change the Duration ") + kLineBreak + QStringLiteral("From ") +
                  MinutesSeconds(edit_.duration) + kLineBreak + QStringLiteral("To ") +
                  MinutesSeconds(seconds);
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Question;
  const Answer answer = co_await services_.prompter.Ask(question);
  if (answer == Answer::Yes) edit_.duration = seconds;
  durationOpen_ = false;
  Q_EMIT Changed();
}

// The import.

void PlayEditor::ImportText() {
  if (WhyNoEdit().isEmpty() && !work_.Running()) work_ = RunImport();
}

Job<> PlayEditor::RunImport() {
  try {
    const std::optional<QString> path = co_await services_.prompter.PickFile(
        QStringLiteral("Import Track Info File"), services_.paths(Paths::Info),
        QStringLiteral("Kelvo Info Files (*.kif)"));
    if (!path || path->isEmpty()) co_return;
    const QString name = QFileInfo(*path).fileName();
    const auto read = [path = *path] {
      const TextFile text = TextFile::FromBytes(ReadWholeFile(path, kMostImport));
      return TextOfInfoFile(TrackInfo(text), text.Count());
    };
    ImportedText text;
    if (UpperExtension(name) == QLatin1StringView("KIF")) {
      const std::optional<ImportedText> found = co_await services_.disks.Look(*path, read);
      if (!found) throw Failure(tr("Its disk does not answer."), 0, *path);
      text = *found;
    } else {
      text.badLine = 1;
    }
    if (text.badLine > 0) {
      Tell(QStringLiteral("The File ") + name + kLineBreak + QStringLiteral("Is Not Of the Correct ") +
           services_.title + QStringLiteral(" File Format !") + kLineBreak + QStringLiteral("Bad File ") +
           QString::number(text.badLine));
      co_return;
    }
    Prompt question;
    question.text =
        QStringLiteral("Do You Wish to Clear the Comments Box Prior To Importing Text From - \r\n") + name +
        QStringLiteral(" ?");
    question.title = QStringLiteral("Info File Import");
    question.buttons = Buttons::YesNoCancel;
    question.icon = PromptIcon::Question;
    const Answer answer = co_await services_.prompter.Ask(question);
    if (answer != Answer::Yes && answer != Answer::No) co_return;
    const bool keeps = answer == Answer::No && !edit_.comments.isEmpty();
    edit_.comments =
        (keeps ? QStringList(edit_.comments) + text.comments : text.comments).join(QLatin1Char('\n'));
    Q_EMIT Changed();
  } catch (...) {
    basHandleError(kTag, tr("The text could not be imported."));
  }
}

// Listening.

QString PlayEditor::WhyNoTrial() const {
  const QString why = WhyNoEdit();
  return why.isEmpty() ? services_.desk->WhyNoTrial() : why;
}

void PlayEditor::TryOrStop() {
  if (services_.desk->Trying()) {
    services_.desk->StopTrial();
  } else if (WhyNoTrial().isEmpty()) {
    trial_ = RunTrial();
  }
}

Job<> PlayEditor::RunTrial() {
  try {
    PlayTrial trial;
    trial.after = path_;
    trial.afterPlay = trial.beforePlay = PlaySettingsOf(edit_);
    trial.before = services_.desk->TrackBefore(path_);
    if (trial.before != path_) {
      const QString infoPath =
          TrackInfoPath(services_.paths, kelvo::BaseName(QFileInfo(trial.before).fileName()));
      const auto read = [infoPath, defaults = Defaults()] {
        return ReadTrackInfo(infoPath).value_or(TrackInfo()).Play(defaults);
      };
      const std::optional<TrackPlaySettings> play = co_await services_.disks.Look(infoPath, read);
      if (play) trial.beforePlay = *play;
    }
    services_.desk->Try(trial);
  } catch (...) {
    basHandleError(kTag, tr("There is nothing to listen to."));
  }
}

}  // namespace kelvo
