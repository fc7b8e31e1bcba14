#pragma once

#include "app/DatabaseCheck.h"
#include "app/ProgramFacts.h"
#include "app/SessionEnd.h"
#include "app/SplashChecks.h"
#include "audio/AudioEngine.h"
#include "audio/SoundInput.h"
#include "console/Console.h"
#include "database/Catalogue.h"
#include "platform/EndLimit.h"
#include "platform/EndSignals.h"
#include "platform/ErrorLog.h"
#include "platform/QtEventLoop.h"
#include "platform/SettingsStore.h"
#include "ui/MessageBoxPrompter.h"

#include <QObject>

#include <memory>
#include <optional>

class QEventLoop;

namespace kelvo {

class ConsoleWindow;
class DeskWindows;
class Installer;
class InstallerWindow;
class SplashWindow;
class WaitPointer;

/// The whole program: it owns what lives for the run and opens one step after the other: the database check,
/// the splash, the console. Made by main, before Qt's event loop runs; GUI thread.
class Program : public QObject {
  Q_OBJECT
 public:
  Program();
  ~Program() override;

  /// Begins the start-up; the process ends through QCoreApplication::exit, with 0 after an ordinary end.
  void Start();

  /// Answers a session that ends, before it returns. See AnswerSessionEnd.
  void EndWithSession(SessionManager& manager);

  /// Hears the application's own wish to quit, which comes when the session ends.
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  [[nodiscard]] Job<> Main();
  [[nodiscard]] Job<std::optional<Paths>> CheckDatabase();
  [[nodiscard]] Job<std::optional<Paths>> RunInstaller(Paths present);
  [[nodiscard]] Job<> AfterSplash();
  void OpenSplash(const Paths& paths);
  void OpenConsole();
  /// A step of the start has failed for a reason that nobody foresaw.
  [[nodiscard]] Job<> TellAndEnd(std::exception_ptr failure);
  [[nodiscard]] Job<> AskBeforeSessionEnds(SessionManager& manager, bool* answered, QEventLoop& waiting);
  /// The system ends the program: it asks nothing, and saves what a close of the desk would have saved.
  void EndBySystem();
  /// Into the settings, not yet to disk.
  void SaveDesk();
  /// Returns whether all is on disk.
  bool FlushSettings();
  /// Saves and leaves the event loop; all that is open goes with this object.
  void End(int exitCode);
  [[nodiscard]] QWidget* TopWindow() const;

  std::optional<EndLimit> endLimit_;  ///< goes last: it waits for everything else
  EndSignals endSignals_{[this] { EndBySystem(); }};
  ProgramFacts facts_;
  QString programFolder_;
  QtEventLoop loop_;
  SettingsStore settings_;
  MessageBoxPrompter prompter_;
  ErrorLog errorLog_;
  AudioEngine audio_;
  std::unique_ptr<SoundInput> soundInput_;
  Catalogue catalogue_;
  Paths paths_;
  std::unique_ptr<DatabaseCheck> databaseCheck_;
  std::unique_ptr<Installer> installer_;
  std::unique_ptr<InstallerWindow> installerWindow_;
  std::unique_ptr<SplashChecks> checks_;
  std::unique_ptr<SplashWindow> splash_;
  std::unique_ptr<Console> console_;
  std::unique_ptr<ConsoleWindow> window_;
  std::unique_ptr<WaitPointer> waitPointer_;
  std::unique_ptr<DeskWindows> beside_;
  Job<> main_;
  bool asksForSession_ = false;
};

}  // namespace kelvo
