#include "app/windows/QuizLines.h"

#include "console/Console.h"
#include "datamanager/VolumeUnify.h"
#include "datamanager/windows/UnifyWindow.h"
#include "quiz/windows/QuizWindow.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(WindowLines)
};

const QString kQuiz = QStringLiteral("PopQuiz");
const QString kUnifyQuiz = QStringLiteral("UnifyQuiz");

/// A quiz that an earlier run has left: asked about once, at the start or when its window is opened before.
struct LeftOver {
  bool asked = false;
  bool goOn = false;
  bool made = false;
  Job<> asking;
};

Job<> OfferLeftOver(Console& desk, LeftOver& leftOver, std::function<void(const QString& id)> open) {
  const Console::Services& have = desk.GetServices();
  const QString path = QuizKeeper::PathIn(QDir(have.programFolder).filePath(QStringLiteral("Pop Quizes")));
  const auto read = [path] { return QuizKeeper::Read(path).has_value(); };
  const bool left = co_await have.loop.Offload(EventLoop::Lane::Files, read);
  if (!left || leftOver.made) co_return;
  const Answer answer = co_await have.prompter.Ask(QuizKeeper::Question(have.title));
  // Who has opened the window meanwhile was asked there.
  if (leftOver.made) co_return;
  if (answer == Answer::Yes) {
    leftOver.goOn = true;
    open(kQuiz);
  } else {
    const auto remove = [path] { return QFile::remove(path); };
    (void)co_await have.loop.Offload(EventLoop::Lane::Files, remove);
  }
}

/// The unify window over the sounds of the quiz. It has no entry in a menu: the quiz opens it.
WindowLine UnifyQuizLine(Console& desk, const WindowHost& host,
                         const std::shared_ptr<PlainGainFiles>& files) {
  WindowLine line{.id = kUnifyQuiz,
                  .busyQuestion = Text::tr("Volumes Are Still Being Unified !\r\nStop That And Quit ?"),
                  .place = QStringLiteral("Unify")};
  line.make = [&desk, host, files, place = line.place] {
    const Console::Services& have = desk.GetServices();
    return std::make_unique<Hosted<UnifyWindow, VolumeUnify>>(
        host, place,
        VolumeUnify::Services{.loop = have.loop,
                              .disks = desk.SlowDisks(),
                              .prompter = have.prompter,
                              .settings = desk.Settings(),
                              .files = files,
                              .tool = GainTool(have.loop, GainTool::Find(have.programFolder))});
  };
  return line;
}

}  // namespace

std::vector<WindowLine> QuizLines(Console& desk, const WindowHost& host,
                                  const std::function<void(const QString& id)>& open) {
  const auto leftOver = std::make_shared<LeftOver>();
  QObject::connect(&desk, &Console::LoadChanged, &desk, [&desk, leftOver, open] {
    if (!desk.CatalogueLoaded() || std::exchange(leftOver->asked, true)) return;
    leftOver->asking = OfferLeftOver(desk, *leftOver, open);
  });
  const auto sounds = std::make_shared<PlainGainFiles>(QStringList());
  WindowLine line{
      .id = kQuiz,
      .menu = DeskMenu::Desk,
      .words = Text::tr("Pop &Quiz..."),
      .key = QStringLiteral("Ctrl+Shift+Q"),
      // It is opened on an idle desk; once it is there music may play between two rounds.
      .whyClosed = [&desk, leftOver] { return leftOver->made ? QString() : desk.Status().WhyBusy(); },
      .place = QStringLiteral("Quiz")};
  line.make = [&desk, host, leftOver, sounds, open, place = line.place] {
    leftOver->made = true;
    const Console::Services& have = desk.GetServices();
    PopQuiz::Services services{.loop = have.loop,
                               .prompter = have.prompter,
                               .audio = have.audio,
                               .catalogue = have.catalogue,
                               .settings = desk.Settings(),
                               .title = have.title,
                               .programFolder = have.programFolder,
                               .dip = [&desk](bool down) { desk.Speak().SetHeld(down); },
                               .unify =
                                   [sounds, open](const QStringList& files) {
                                     sounds->Replace(files);
                                     open(kUnifyQuiz);
                                   },
                               .goOn = leftOver->goOn};
    if (have.seed) services.random = RandomSource(*have.seed);
    auto made = std::make_unique<Hosted<QuizWindow, PopQuiz>>(host, place, std::move(services));
    made->window.Audience().KeepPlace(host.settings,
                                      PlaceKeys::Of(host.title, host.section, QStringLiteral("Audience")));
    return made;
  };
  return {std::move(line), UnifyQuizLine(desk, host, sounds)};
}

}  // namespace kelvo
