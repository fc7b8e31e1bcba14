#include "app/windows/Program.h"

#include "app/Installer.h"
#include "app/windows/DeskWindows.h"
#include "app/windows/InstallerWindow.h"
#include "app/windows/SplashWindow.h"
#include "audio/engine/NoDeviceBackend.h"
#include "audio/engine/PulseBackend.h"
#include "audio/engine/SdlBackend.h"
#include "console/windows/ConsoleWindow.h"
#include "platform/SystemFacts.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QScreen>

namespace kelvo {

using namespace std::chrono_literals;

namespace {

/// Far longer than any disk that works needs for the few files that are still to be written.
constexpr Nanoseconds kEndLimit = 30s;

std::unique_ptr<OutputBackend> MakeBackend() {
  if (qEnvironmentVariableIsSet("KELVO_SILENT")) {
    return std::make_unique<NoDeviceBackend>(QStringList{QStringLiteral("Silent Device")});
  }
  const auto hardware = [] { return std::make_unique<SdlBackend>(); };
  // Who names a driver wants that one; a sound server's is our own.
  const QByteArray driver = qgetenv("SDL_AUDIODRIVER");
  if (!driver.isEmpty() && !driver.contains("pulse")) return hardware();
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
}

}  // namespace

Program::Program()
    : programFolder_(ProgramFolder()),
      settings_(loop_, SettingsStore::DefaultFilePath()),
      prompter_([this] { return TopWindow(); }, facts_.title),
      errorLog_(loop_, prompter_, programFolder_ + QStringLiteral("/kelvo.log")),
      audio_(loop_, MakeBackend()) {
  // A session manager that has the state saved may still be told to let the session go on.
  connect(qApp, &QGuiApplication::commitDataRequest, this, [this] { SaveDesk(); });
  qApp->installEventFilter(this);
}

Program::~Program() {
  // The windows look at the desk, the desk at everything else. The players go with the desk: nothing sounds
  // while the disks are waited for.
  beside_.reset();
  window_.reset();
  console_.reset();
  splash_.reset();
  main_.Cancel();
  installerWindow_.reset();
  FlushSettings();
}

QWidget* Program::TopWindow() const {
  // A question stands on the window that it comes from.
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
  const DatabaseCheck::Install install = [this](Paths present) { return RunInstaller(present); };
  databaseCheck_ = std::make_unique<DatabaseCheck>(loop_, prompter_, settings_, facts_, install);
  const std::optional<Paths> paths = co_await databaseCheck_->Run();
  if (!paths) {
    End();
    co_return;
  }
  OpenSplash(*paths);
}

Job<std::optional<Paths>> Program::RunInstaller(Paths present) {
  installer_ = std::make_unique<Installer>(
      Installer::Services{loop_, prompter_, settings_, facts_, programFolder_, DemoGenerator()}, present);
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
  checks_ = std::make_unique<SplashChecks>(SplashChecks::Services{loop_,
                                                                  prompter_,
                                                                  audio_,
                                                                  settings_,
                                                                  facts_,
                                                                  paths_,
                                                                  programFolder_,
                                                                  {screen.width(), screen.height()},
                                                                  ReadPlatformFacts()});
  splash_ = std::make_unique<SplashWindow>(loop_, *checks_, facts_);
  connect(splash_.get(), &SplashWindow::Closed, this,
          [this] { loop_.Post([this] { main_ = AfterSplash(); }); });
  ShowInTheMiddle(*splash_);
}

Job<> Program::AfterSplash() {
  if (!checks_->AudioFailed()) {
    OpenConsole();
    co_return;
  }
  Prompt message;
  message.text = QStringLiteral("A Critical Error Occured While Evaluating Audio Capabilities\r\n") +
                 facts_.title + QStringLiteral(" Needs To Close Down !");
  message.icon = PromptIcon::Critical;
  co_await prompter_.Ask(message);
  End();
}

void Program::OpenConsole() {
  console_ = std::make_unique<Console>(Console::Services{loop_,
                                                         prompter_,
                                                         audio_,
                                                         settings_,
                                                         catalogue_,
                                                         paths_,
                                                         facts_.title,
                                                         facts_.AboutLine(),
                                                         programFolder_,
                                                         facts_.Version(),
                                                         {},
                                                         DocumentsFolder()});
  console_->OnMustEnd = [this] { End(); };
  window_ = std::make_unique<ConsoleWindow>(*console_);
  beside_ = std::make_unique<DeskWindows>(*console_, *window_);
  connect(window_.get(), &ConsoleWindow::Closed, this, [this] { End(); });
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

void Program::EndBySystem() {
  if (endLimit_) return;
  NoteInLog(QStringLiteral("The system ends the program"));
  SaveDesk();
  End();
}

void Program::SaveDesk() {
  if (!console_ || !window_) return;
  console_->SaveSettings(window_->width(), window_->height());
  FlushSettings();
}

void Program::FlushSettings() {
  Guarded(QStringLiteral(" ending"), [this] { settings_.Flush(); });
}

void Program::End() {
  if (endLimit_) return;
  endLimit_.emplace(kEndLimit);
  QCoreApplication::exit(0);
}

}  // namespace kelvo
