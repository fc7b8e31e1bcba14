#include "app/windows/Program.h"

#include "app/Installer.h"
#include "app/windows/DeskWindows.h"
#include "app/windows/InstallerWindow.h"
#include "app/windows/SplashWindow.h"
#include "app/windows/WaitPointer.h"
#include "audio/engine/NoDeviceBackend.h"
#include "audio/engine/PulseBackend.h"
#include "audio/engine/PulseInput.h"
#include "audio/engine/SdlBackend.h"
#include "console/windows/ConsoleWindow.h"
#include "platform/SystemFacts.h"

#include <QApplication>
#include <QDir>
#include <QEventLoop>
#include <QFileInfo>
#include <QScreen>
#include <QSessionManager>

#include <cstdlib>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

/// Long for any disk that works, with the few files that are still to be written; short for a person who
/// waits, or for a system that is going down.
constexpr Nanoseconds kEndLimit = 4500ms;

class QtSession : public SessionManager {
 public:
  explicit QtSession(QSessionManager& manager) : manager_(manager) {}
  [[nodiscard]] bool AllowsInteraction() override { return manager_.allowsInteraction(); }
  void Release() override { manager_.release(); }
  void Cancel() override { manager_.cancel(); }

 private:
  QSessionManager& manager_;
};

bool MeantSilent() {
  return qEnvironmentVariableIsSet("KELVO_SILENT");
}

/// Who names a driver wants that one; a sound server's is our own.
bool UsesSoundServer() {
  const QByteArray driver = qgetenv("SDL_AUDIODRIVER");
  return !MeantSilent() && (driver.isEmpty() || driver.contains("pulse"));
}

std::unique_ptr<OutputBackend> MakeBackend() {
  if (MeantSilent()) return std::make_unique<NoDeviceBackend>(QStringList{QStringLiteral("Silent Device")});
  const auto hardware = [] { return std::make_unique<SdlBackend>(); };
  if (!UsesSoundServer()) return hardware();
  return std::make_unique<PulseBackend>(hardware);
}

/// The program that makes the demo library: where it is installed, or in the build folder; empty when it is
/// in neither.
QString DemoGenerator() {
  const QDir here(QCoreApplication::applicationDirPath());
  for (const QString& place : {QStringLiteral(KELVO_LIBEXEC), QStringLiteral("../tools")}) {
    const QString path = QDir::cleanPath(here.filePath(place + QStringLiteral("/demo_library")));
    if (QFileInfo(path).isExecutable()) return path;
  }
  return {};
}

void ShowInTheMiddle(QWidget& window) {
  QRect place(QPoint(), window.size().expandedTo(window.sizeHint()));
  place.moveCenter(QGuiApplication::primaryScreen()->availableGeometry().center());
  window.setGeometry(place);
  window.show();
  window.activateWindow();
}

}  // namespace

Program::Program()
    : programFolder_(ProgramFolder()),
      settings_(loop_, SettingsStore::DefaultFilePath()),
      prompter_([this] { return TopWindow(); }, facts_.title),
      errorLog_(loop_, prompter_, programFolder_ + QStringLiteral("/kelvo.log")),
      audio_(loop_, MakeBackend()),
      soundInput_(UsesSoundServer() ? std::make_unique<PulseInput>() : nullptr) {
  // Direct: the manager wants its answer when the signal returns.
  connect(
      qApp, &QGuiApplication::commitDataRequest, this,
      [this](QSessionManager& manager) {
        QtSession session(manager);
        EndWithSession(session);
      },
      Qt::DirectConnection);
  qApp->installEventFilter(this);
}

Program::~Program() {
  // The windows look at the desk, the desk at everything else.
  beside_.reset();
  waitPointer_.reset();
  window_.reset();
  console_.reset();
  splash_.reset();
  main_.Cancel();
  installerWindow_.reset();
  FlushSettings();
}

QWidget* Program::TopWindow() const {
  // A question belongs on the window that it comes from.
  QWidget* const active = QApplication::activeWindow();
  if (beside_ && beside_->Owns(active)) return active;
  if (window_) return window_.get();
  if (installerWindow_) return installerWindow_.get();
  return splash_.get();
}

void Program::Start() {
  main_ = Main();
}

Job<> Program::Main() {
  // Whoever starts it gets control back first: an end before the event loop runs would be lost.
  co_await loop_.Yield();
  std::exception_ptr failure;
  try {
    const std::optional<Paths> paths = co_await CheckDatabase();
    if (paths) {
      OpenSplash(*paths);
    } else {
      End(EXIT_FAILURE);
    }
  } catch (...) {
    failure = std::current_exception();
  }
  if (failure) co_await TellAndEnd(failure);
}

Job<std::optional<Paths>> Program::CheckDatabase() {
  const DatabaseCheck::Install install = [this](Paths present) { return RunInstaller(present); };
  databaseCheck_ = std::make_unique<DatabaseCheck>(loop_, prompter_, settings_, facts_, install);
  co_return co_await databaseCheck_->Run();
}

/// Without a window there is nobody left to end the program.
Job<> Program::TellAndEnd(std::exception_ptr failure) {
  Prompt message;
  message.text = ErrorLog::Compose(failure, QStringLiteral(" Main"));
  message.icon = PromptIcon::Critical;
  NoteInLog(message.text);
  co_await prompter_.Ask(message);
  End(EXIT_FAILURE);
}

Job<std::optional<Paths>> Program::RunInstaller(Paths present) {
  installer_ = std::make_unique<Installer>(Installer::Services{.loop = loop_,
                                                               .prompter = prompter_,
                                                               .settings = settings_,
                                                               .facts = facts_,
                                                               .programFolder = programFolder_,
                                                               .demoGenerator = DemoGenerator()},
                                           present);
  installerWindow_ = std::make_unique<InstallerWindow>(loop_, *installer_);
  ShowInTheMiddle(*installerWindow_);
  const std::optional<Paths> paths = co_await installer_->Run();
  installerWindow_.reset();
  installer_.reset();
  co_return paths;
}

void Program::OpenSplash(const Paths& paths) {
  paths_ = paths;
  const QSize screen =
      QGuiApplication::primaryScreen()->size() * QGuiApplication::primaryScreen()->devicePixelRatio();
  checks_ = std::make_unique<SplashChecks>(
      SplashChecks::Services{.loop = loop_,
                             .prompter = prompter_,
                             .audio = audio_,
                             .settings = settings_,
                             .facts = facts_,
                             .paths = paths_,
                             .programFolder = programFolder_,
                             .display = {screen.width(), screen.height(), ReadDisplayModes()},
                             .platform = ReadPlatformFacts()});
  splash_ = std::make_unique<SplashWindow>(loop_, *checks_, facts_);
  connect(splash_.get(), &SplashWindow::Closed, this,
          [this] { loop_.Post([this] { main_ = AfterSplash(); }); });
  ShowInTheMiddle(*splash_);
}

Job<> Program::AfterSplash() {
  if (!checks_->AudioFailed()) {
    std::exception_ptr failure;
    try {
      OpenConsole();
    } catch (...) {
      failure = std::current_exception();
    }
    if (failure) co_await TellAndEnd(failure);
    co_return;
  }
  Prompt message;
  message.text = QStringLiteral("A Critical Error Occured While Evaluating Audio Capabilities\r\n") +
                 facts_.title + QStringLiteral(" Needs To Close Down !");
  message.icon = PromptIcon::Critical;
  co_await prompter_.Ask(message);
  End(EXIT_FAILURE);
}

void Program::OpenConsole() {
  console_ = std::make_unique<Console>(Console::Services{.loop = loop_,
                                                         .prompter = prompter_,
                                                         .audio = audio_,
                                                         .settings = settings_,
                                                         .catalogue = catalogue_,
                                                         .paths = paths_,
                                                         .title = facts_.title,
                                                         .aboutLine = facts_.AboutLine(),
                                                         .programFolder = programFolder_,
                                                         .version = facts_.Version(),
                                                         .documents = DocumentsFolder(),
                                                         .soundInput = soundInput_.get()});
  console_->OnMustEnd = [this] { End(EXIT_FAILURE); };
  window_ = std::make_unique<ConsoleWindow>(*console_);
  waitPointer_ = std::make_unique<WaitPointer>(*console_, *window_);
  beside_ = std::make_unique<DeskWindows>(*console_, *window_);
  connect(window_.get(), &ConsoleWindow::Closed, this, [this] { End(EXIT_SUCCESS); });
  window_->show();
  window_->activateWindow();
  splash_.reset();
  checks_.reset();
}

bool Program::eventFilter(QObject* watched, QEvent* event) {
  if (event->type() != QEvent::Quit || watched != qApp) return QObject::eventFilter(watched, event);
  EndBySystem();
  return true;
}

void Program::EndWithSession(SessionManager& manager) {
  if (!console_ || endLimit_ || asksForSession_) return;
  // The answer is owed when this returns, and decks, fades and timers have to go on while a person thinks. A
  // nested loop does no harm here, and only here: Qt calls from its own loop, outside every turn of ours.
  QEventLoop waiting;
  bool answered = false;
  asksForSession_ = true;
  const Job<> asking = AskBeforeSessionEnds(manager, &answered, waiting);
  // A signal that ends the program ends this loop too.
  if (!answered) waiting.exec();
  asksForSession_ = false;
}

Job<> Program::AskBeforeSessionEnds(SessionManager& manager, bool* answered, QEventLoop& waiting) {
  bool quit = false;
  try {
    // A locked screen asks nobody but for its code.
    const DeskAtSessionEnd desk{[this] { return console_->Plays() && !console_->Lock().Locked(); },
                                [this] { return console_->QueryClose(true); },
                                [this] {
                                  SaveDesk();
                                  FlushSettings();
                                }};
    quit = co_await AnswerSessionEnd(manager, desk);
  } catch (...) {
    basHandleError(QStringLiteral(" session"),
                   QStringLiteral("The end of the desktop's session could not be asked about."));
  }
  *answered = true;
  waiting.quit();
  if (quit) End(EXIT_SUCCESS);
}

void Program::EndBySystem() {
  if (endLimit_) return;
  NoteInLog(QStringLiteral("The system ends the program"));
  SaveDesk();
  End(EXIT_SUCCESS);
}

void Program::SaveDesk() {
  if (!console_ || !window_) return;
  window_->SaveSettings();
}

bool Program::FlushSettings() {
  return Guarded(QStringLiteral(" ending"), [this] { settings_.Flush(); });
}

void Program::End(int exitCode) {
  if (endLimit_) return;
  endLimit_.emplace(kEndLimit);
  // What the person would miss is safe before anything is waited for that may hang, and nothing sounds
  // meanwhile.
  if (console_) {
    for (const Deck deck : kDecks) console_->Decks().Player(deck).Stop();
  }
  if (beside_) beside_->Close();
  if (!FlushSettings()) exitCode = EXIT_FAILURE;
  errorLog_.Flush();
  // Behind all that was given to be written so far.
  loop_.RunOffThread(EventLoop::Lane::Files, endLimit_->WhenWritten(exitCode), [] {});
  QCoreApplication::exit(exitCode);
}

}  // namespace kelvo
