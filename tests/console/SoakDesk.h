#pragma once

#include "console/Console.h"
#include "console/FaultyAudio.h"
#include "platform/ErrorLog.h"
#include "platform/SettingsStore.h"
#include "platform/SimulatedEventLoop.h"
#include "support/NobodyThere.h"

#include <QFile>
#include <QHash>
#include <QSet>

#include <memory>
#include <optional>
#include <vector>

namespace kelvo::testing {

/// A track as it was made.
struct SoakTrack {
  QString path;
  QString infoPath;
  double stored = 0;  ///< the catalogue's duration, seconds; 0: it has none
  double length = 0;  ///< of the sound, seconds
};

/// How the desk under test is set.
struct SoakSettings {
  int jukeLag = 2;
  int prevSecs = 15;
  int panFadeBias = 12;
  int delta = 3;       ///< first value of `SldDelta`
  int fadeSpeed = 25;  ///< first value of `SldFadeSp`
};

/// What can be seen and heard of a deck.
struct DeckSight {
  QString path;  ///< the file in the player
  bool playing = false;
  bool hasSound = false;
  double position = 0;
  double length = 0;  ///< of the sound in the player
  int loss = 0;       ///< as the player's volume has it
  bool loaded = false;
  bool loading = false;
};

struct DeskSight {
  double at = 0;  ///< seconds since the desk was opened
  PerDeck<DeckSight> decks;
  int slider = 0;
  bool walking = false;
  bool on = false;  ///< automatic play
  bool pause = false;
  bool deviceLost = false;
};

/// What the desk itself says of its next start and of its last fade.
struct DeskPlan {
  int delta = 0;
  int transition = 0;
  int fadeSpeed = 0;
  int lawKind = 0;
  Deck lawSide = Deck::One;
};

/// The joined desk of the program over a database in a folder, in simulated time, and everything that a
/// person, a disk or a device can do to it. All that a soak knows of the product's insides is in here.
class SoakDesk {
 public:
  SoakDesk(const QString& folder, const SoakSettings& settings, std::uint64_t seed);

  /// Before Open.
  void AddTrack(const QString& name, double stored, double length, const QByteArray& info);
  /// Makes the desk, which loads its catalogue, and puts the first `rows` tracks into the queue.
  void Open(int rows);
  [[nodiscard]] const std::vector<SoakTrack>& Tracks() const { return tracks_; }
  [[nodiscard]] const SoakTrack* Find(const QString& path) const;

  void Run(Nanoseconds time) { loop_.RunFor(time); }
  [[nodiscard]] double Now() const;
  [[nodiscard]] DeskSight Look();
  [[nodiscard]] DeskPlan Plan();

  // The operator.
  void SwitchOn(AutoMode mode, bool random);
  void SwitchOff() { desk_->Automatic().ToggleAutoPlay(); }
  void MoveSlider(int to);
  void TogglePause() { desk_->Automatic().TogglePauseAtEnd(); }
  void StopDeck(Deck deck) { desk_->Decks().StopDeck(deck); }
  void Cancel() { desk_->Fades().Cancel(); }
  void SetSpeaking(int depthSlider, int speedSlider);
  void PressSpeak() { desk_->Speak().Press(); }
  void ReleaseSpeak() { desk_->Speak().Release(); }
  void MoveRow(int from, int to) { desk_->Queue().MoveTo(from, to); }
  void ClickRow(int row) { desk_->Queue().Click(row); }
  void EditRow() { desk_->Queue().EditSelected(); }
  void AddRow(const SoakTrack& track);
  [[nodiscard]] int RowCount() { return desk_->Queue().Count(); }
  [[nodiscard]] int SelectedRow() { return desk_->Queue().Selected(); }
  [[nodiscard]] QStringList RowPaths();

  // Files, disks and devices.
  static void Write(const QString& path, const QByteArray& bytes);
  void SetLength(const SoakTrack& track, double seconds) { audio_.SetDuration(track.path, seconds); }
  void SetSilent(const SoakTrack& track, bool silent) { audio_.SetSilent(track.path, silent); }
  void SetOpenTime(Nanoseconds time) { audio_.openTime = time; }
  void RemoveFile(const SoakTrack& track) { QFile::remove(PlaceOf(track)); }
  void RestoreFile(const SoakTrack& track) { Write(PlaceOf(track), "sound"); }
  [[nodiscard]] double OpenTime() const { return std::chrono::duration<double>(audio_.openTime).count(); }
  void TakeMusicAway();
  void BringMusicBack();
  /// Looks at these files, or at all in these folders, do not come back until they hang no more.
  void SetHanging(const QSet<QString>& places);
  [[nodiscard]] QString MusicFolder() const { return paths_(Paths::Music); }
  void SetDeviceLost(bool lost);
  /// No beat for so many seconds.
  void DelayBeats(int seconds);
  void BreakOff(Deck deck) { Disk(deck).BreakOff(); }
  void StandStill(Deck deck) { Disk(deck).StandStill(); }
  /// Its disk gives no more data; what is in memory lasts for so many seconds.
  void LoseDisk(Deck deck, int left) { Disk(deck).LoseDisk(loop_, std::chrono::seconds(left)); }

  [[nodiscard]] bool NothingPlayable() { return desk_->Automatic().NothingPlayable(); }
  [[nodiscard]] QString StatusText() { return desk_->Automatic().StatusText(); }
  [[nodiscard]] int Skipped() { return desk_->Automatic().SkippedCount(); }
  /// What no desk may ever be in, in words; empty when all is well.
  [[nodiscard]] QString Impossible();

 private:
  /// Where its file lies now: the music may have been taken away.
  [[nodiscard]] QString PlaceOf(const SoakTrack& track) const;
  [[nodiscard]] FaultyPlayer& Disk(Deck deck) { return FaultyAudio::Of(desk_->Decks().Player(deck)); }

  QString folder_;
  Paths paths_;
  std::uint64_t seed_;
  SimulatedEventLoop loop_{QDateTime(QDate(2007, 6, 1), QTime(9, 0))};
  NobodyThere nobody_;
  ErrorLog log_;
  FaultyAudio audio_{loop_};
  SettingsStore settings_;
  Catalogue catalogue_;
  std::vector<SoakTrack> tracks_;
  QHash<QString, std::size_t> byPath_;
  QHash<QString, Mref> mrefs_;
  QSet<QString> hanging_;
  std::optional<Console> desk_;
  Nanoseconds openedAt_{0};
  Timer beatsBack_;
  JobList adds_;
};

}  // namespace kelvo::testing
