#pragma once

#include "audio/AudioSystem.h"
#include "console/DataManagerAccess.h"
#include "console/DeskSliders.h"
#include "console/QueueTimes.h"
#include "console/ScreenLock.h"
#include "console/automatic/AutoPlay.h"
#include "console/browser/LibraryBrowser.h"
#include "console/decks/ConfirmationPanel.h"
#include "console/decks/DeckEngine.h"
#include "console/decks/RequestsToRead.h"
#include "console/desk/ConsoleState.h"
#include "console/group/GroupPlay.h"
#include "console/jingles/Jingles.h"
#include "console/monitor/Monitor.h"
#include "console/queue/PlayQueue.h"
#include "console/recorder/ProgrammeRecorder.h"
#include "console/scope/ProgrammeView.h"
#include "console/session/PlayedTracks.h"
#include "console/session/SessionFile.h"
#include "console/session/SessionList.h"
#include "console/session/SessionLog.h"
#include "console/status/ReserveWatch.h"
#include "console/status/StatusTick.h"
#include "console/transitions/PressToSpeak.h"
#include "console/transitions/Transitions.h"
#include "database/Catalogue.h"
#include "database/CatalogueLoader.h"
#include "database/Paths.h"
#include "database/TrackFilter.h"
#include "platform/Disks.h"
#include "platform/EventLoop.h"
#include "platform/Prompter.h"
#include "platform/RandomSource.h"

#include <QObject>

#include <functional>
#include <memory>

namespace kelvo {

class SettingsStore;

/// The live desk without its windows: the parts, joined. It owns the decks, the queue, the session list and
/// the players; the catalogue and the settings store belong to the program's entry and outlive it. Logic
/// thread.
class Console : public QObject {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    AudioSystem& audio;
    SettingsStore& settings;
    Catalogue& catalogue;
    Paths paths;
    QString title;
    QString aboutLine;
    QString programFolder;
    QString version = {};
    std::optional<std::uint64_t> seed = {};  ///< of all chance on the desk; none: the system's
    QString documents = {};                  ///< the operator's documents; empty: no session log is kept
    SoundInput* soundInput = nullptr;        ///< for the scope
  };

  explicit Console(Services services);
  ~Console() override;

  [[nodiscard]] ConsoleState& State() { return state_; }
  [[nodiscard]] PlayQueue& Queue() { return queue_; }
  [[nodiscard]] ConfirmationPanel& Panel() { return panel_; }
  [[nodiscard]] DeckEngine& Decks() { return decks_; }
  [[nodiscard]] RequestsToRead& ToRead() { return toRead_; }
  [[nodiscard]] const QueueTimes& RowTimes() const { return times_; }
  [[nodiscard]] SessionList& Session() { return session_; }
  [[nodiscard]] const PlayedTracks& Played() const { return played_; }
  /// Where every event of this and of earlier sessions is kept; its folder is empty where none is.
  [[nodiscard]] SessionArchive Archive() const;
  [[nodiscard]] Transitions& Fades() { return transitions_; }
  [[nodiscard]] PressToSpeak& Speak() { return speak_; }
  [[nodiscard]] AutoPlay& Automatic() { return auto_; }
  [[nodiscard]] const GroupPlay& Group() const { return group_; }
  [[nodiscard]] Jingles& Bites() { return jingles_; }
  [[nodiscard]] Monitor& Pfl() { return monitor_; }
  [[nodiscard]] ProgrammeRecorder& AirRecorder() { return recorder_; }
  [[nodiscard]] ProgrammeView& Programme() { return programme_; }
  [[nodiscard]] StatusTick& Status() { return tick_; }
  [[nodiscard]] ScreenLock& Lock() { return lock_; }
  [[nodiscard]] DataManagerAccess& ManagerAccess() { return managerAccess_; }
  [[nodiscard]] Disks& SlowDisks() { return disks_; }
  [[nodiscard]] Catalogue& Tracks() { return services_.catalogue; }
  [[nodiscard]] TrackFilter& Filter() { return filter_; }
  [[nodiscard]] LibraryBrowser& Browser() { return browser_; }
  [[nodiscard]] const ProgramSettings& Settings() const { return settings_; }
  [[nodiscard]] const Services& GetServices() const { return services_; }
  [[nodiscard]] const QString& Title() const { return services_.title; }

  /// The first time the desk becomes active it loads the catalogue; later calls do nothing. While the load
  /// runs the desk is disabled.
  void Activate();
  /// The same with a catalogue that holds its tracks: nothing is read.
  void ActivateLoaded();
  [[nodiscard]] bool PendingCatalogueLoad() const { return pendingCatalogueLoad_; }
  [[nodiscard]] bool CatalogueLoaded() const { return catalogueLoaded_; }
  /// The running load, for its window; none otherwise.
  [[nodiscard]] const CatalogueLoader* Load() const { return loader_.get(); }

  /// The line at the foot of the desk: what plays, or what the desk last had to say.
  [[nodiscard]] const QString& StatusLine() const { return statusLine_; }
  void SetStatusLine(const QString& text);
  /// What is wrong with the sound device at the moment; empty when all is well.
  [[nodiscard]] const QString& DeviceNotice() const { return deviceNotice_; }
  /// What became of the sound's reserve; empty when there is nothing to say.
  [[nodiscard]] const QString& ReserveNotice() const { return reserveNotice_; }
  [[nodiscard]] const ReserveWatch& Reserve() const { return reserve_; }
  /// Seconds since the session began.
  [[nodiscard]] double SessionClock() const;
  [[nodiscard]] const QDateTime& SessionStart() const { return sessionStart_; }
  /// Why the session list can't be shown now, in words; empty when it can.
  [[nodiscard]] QString WhyNoSession();

  /// Whether a deck or a jingle is heard.
  [[nodiscard]] bool Plays();
  /// Whether the desk may close; asks unless the operating system closes it without a deck playing. On Yes
  /// the timers have stopped.
  [[nodiscard]] Job<bool> QueryClose(bool bySystem);
  /// Writes what the desk finds again at its next start.
  void SaveSettings();

  /// Asked each second: whether something beside the desk is heard on the programme by the operator's will, so
  /// that decks at rest are no silence.
  std::function<bool()> OthersOnAir;
  /// The program has to end: a database that can't be read.
  std::function<void()> OnMustEnd;

 Q_SIGNALS:
  void StatusChanged();
  void LoadProgress();
  /// The load began or ended: PendingCatalogueLoad tells which.
  void LoadChanged();

 private:
  void JoinParts();
  [[nodiscard]] AutoPlay::Services ForAutoPlay();
  [[nodiscard]] Job<> LoadCatalogue();
  void BeginWithCatalogue();
  /// Why the operator's hand on library and queue is refused: while the desk asks, and while a fade runs.
  [[nodiscard]] QString WhyListsHeld() const;
  void ShowTotalTracks();
  /// A title goes on air.
  void LogPlay(const QString& title);
  void TakeAudioWarning();
  void SetUpLevels();
  void SaveJingles();
  void ShowDevice(const OutputStatus& status);
  void WatchReserve();
  [[nodiscard]] AirFacts Air();
  void OnPanelConfirmed(const PanelQuestion& question);
  [[nodiscard]] SessionFacts FactsFor(Deck deck) const;

  Services services_;
  ProgramSettings settings_;
  PlaySettings play_;
  JingleSettings sliders_;
  ConsoleState state_;
  QDateTime sessionStart_;
  Disks disks_;
  PlayQueue queue_;
  ConfirmationPanel panel_;
  SessionList session_;
  PlayedTracks played_;
  SessionLog log_;
  SessionFile sessionFile_;
  DeckEngine decks_;
  RequestsToRead toRead_;
  Transitions transitions_;
  PressToSpeak speak_;
  RandomSource random_;
  AutoPlay auto_;
  QueueTimes times_;
  GroupPlay group_;
  Jingles jingles_;
  ProgrammeRecorder recorder_;
  Monitor monitor_;
  ProgrammeView programme_;
  std::unique_ptr<MediaPlayer> warningPlayer_;
  StatusTick tick_;
  ScreenLock lock_;
  DataManagerAccess managerAccess_;
  TrackFilter filter_;
  LibraryBrowser browser_;
  std::unique_ptr<CatalogueLoader> loader_;
  Job<> load_;
  bool pendingCatalogueLoad_ = true;
  bool catalogueLoaded_ = false;
  QString statusLine_;
  QString deviceNotice_;
  ReserveWatch reserve_;
  QString reserveNotice_;
};

}  // namespace kelvo
