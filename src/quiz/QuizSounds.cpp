#include "quiz/QuizSounds.h"

#include "platform/Words.h"

#include <QDir>
#include <QFileInfo>

namespace kelvo {
namespace {

const QString kNone = QStringLiteral("None");
constexpr double kLongMixer = 5;  // seconds

}  // namespace

QString QuizSounds::Folder(QuizSound sound) const {
  return QDir(services_.programFolder)
      .filePath(sound == QuizSound::Mixer ? QStringLiteral("Quiz Mixers") : QStringLiteral("Quiz Intros"));
}

QString QuizSounds::PathOf(QuizSound sound, const QString& name) const {
  // A name out of a file of the quiz leads nowhere but into the folder.
  if (name.isEmpty() || name == kNone || name.contains(QLatin1Char('/'))) return {};
  return Folder(sound) + QLatin1Char('/') + name;
}

QStringList QuizSounds::Files() const {
  QStringList files;
  for (const QuizSound sound : {QuizSound::Mixer, QuizSound::Intro}) {
    for (const QString& name : Names(sound)) {
      if (const QString path = PathOf(sound, name); !path.isEmpty()) files.append(path);
    }
  }
  return files;
}

Job<> QuizSounds::List() {
  const auto look = [mixers = Folder(QuizSound::Mixer), intros = Folder(QuizSound::Intro)] {
    const auto names = [](const QString& folder) {
      return QStringList{kNone} + QDir(folder).entryList(QDir::Files, QDir::Name | QDir::IgnoreCase);
    };
    return std::pair{names(mixers), names(intros)};
  };
  std::pair<QStringList, QStringList> found = co_await services_.loop.Offload(EventLoop::Lane::Apart, look);
  mixers_ = std::move(found.first);
  intros_ = std::move(found.second);
  Q_EMIT Listed();
}

Job<bool> QuizSounds::IsThere(QuizSound sound, QString name) {
  const QString path = PathOf(sound, name);
  if (path.isEmpty()) co_return false;
  const auto look = [path] { return QFileInfo(path).isFile(); };
  co_return co_await services_.loop.Offload(EventLoop::Lane::Apart, look);
}

Job<bool> QuizSounds::MayBeLong(QString path) {
  const double seconds = co_await services_.audio.DurationOf(path);
  if (seconds <= kLongMixer) co_return true;
  Prompt question;
  question.title = QStringLiteral("Quiz mixer Duration!");
  question.text = QStringLiteral(
                      "The Media File %1\r\n Has A Play Duration of %2 Seconds\r\n"
                      "The Recommended Maximum length for Quiz Mixers is 5 Seconds !?\r\n"
                      "Are You sure you Want to Use this file As a Quiz Mixer ?")
                      .arg(QFileInfo(path).fileName(), Format0Point0(seconds));
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Question;
  const Answer answer = co_await services_.prompter.Ask(question);
  co_return answer == Answer::Yes;
}

Job<QString> QuizSounds::Add(QuizSound sound) {
  const bool mixer = sound == QuizSound::Mixer;
  const std::optional<QString> picked = co_await services_.prompter.PickFile(
      mixer ? QStringLiteral("Manage Snippet Mixers") : QStringLiteral("Manage Quiz Introductions"),
      Folder(sound),
      mixer ? QStringLiteral("Mp3(*.Mp3 *.mp3 *.MP3)") : QStringLiteral("Mp3 (*.mp3 *.Mp3 *.MP3)"));
  if (!picked) co_return QString();
  if (mixer) {
    const bool use = co_await MayBeLong(*picked);
    if (!use) co_return QString();
  }
  const QString name = QFileInfo(*picked).fileName();
  const auto make = [folder = Folder(sound)] { (void)QDir().mkpath(folder); };
  co_await services_.loop.Offload(EventLoop::Lane::Apart, make);
  // One of that name that is there already stays, and is taken.
  const CopyOrder order{.from = *picked, .to = PathOf(sound, name)};
  if (order.from != order.to) {
    const auto control = std::make_shared<CopyControl>();
    (void)co_await CopyFileLater(services_.loop, order, control);
  }
  co_await List();
  co_return name;
}

}  // namespace kelvo
