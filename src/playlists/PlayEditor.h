#pragma once

#include "audio/AudioSystem.h"
#include "database/Catalogue.h"
#include "database/Paths.h"
#include "platform/Disks.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"
#include "platform/Setting.h"
#include "playlists/PlayEdit.h"
#include "playlists/PlayEditDesk.h"
#include "playlists/TrackWave.h"

#include <QObject>

#include <memory>
#include <optional>

namespace kelvo {

/// Edits how a track is played, and the rest of its info file. What is saved is in the file first, and in the
/// catalogue in the turn in which the write is known to be done; who plays the track hears of it from there.
/// A new name has its folder before the file bears it. So a crash between two steps leaves a name that no
/// track bears, or the whole save: the next start reads folders and files, and nothing else is kept. Owned
/// beside its window; logic thread.
class PlayEditor : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Disks& disks;
    Prompter& prompter;
    AudioSystem& audio;
    Catalogue& catalogue;
    Paths paths;
    ProgramSettings settings;
    QString title;  ///< of the program
    std::shared_ptr<PlayEditDesk> desk;
    QString cacheFolder = {};  ///< of pictures of sound; empty: none is kept
  };
  explicit PlayEditor(Services services);
  ~PlayEditor() override;

  /// Takes up the track of this music file; asks first what becomes of changes to another one.
  void Open(const QString& path);
  /// The window went off the screen: what runs for it ends. Changes that nobody was asked about are kept.
  void Leave();
  /// Whether the window may close: asks whether changes are to be saved.
  [[nodiscard]] Job<bool> MayClose();

  /// A track is open to be edited. What the rest says counts then.
  [[nodiscard]] bool Ready() const { return ready_; }
  /// Ready, and nothing is being saved, read or asked.
  [[nodiscard]] QString WhyNoEdit() const;
  [[nodiscard]] QString BaseName() const;
  /// "3.45 Mb".
  [[nodiscard]] const QString& SizeWords() const { return sizeWords_; }
  /// What the operator should know: a file that is missing, a disk that does not answer. Empty: nothing.
  [[nodiscard]] const QString& Notice() const { return notice_; }
  [[nodiscard]] const QString& ProgramTitle() const { return services_.title; }
  /// This year down to 1950.
  [[nodiscard]] QStringList Years() const;
  [[nodiscard]] const QStringList& KnownNames(std::size_t set) const;

  [[nodiscard]] const PlayEdit& Edit() const { return edit_; }
  /// A field is another: any but names and duration.
  void Change(const std::function<void(PlayEdit&)>& change);
  [[nodiscard]] bool Dirty() const { return ready_ && edit_ != before_; }

  // The names.
  /// Adds a name, made fit for a folder, and returns it; none when there is nothing to add.
  [[nodiscard]] std::optional<QString> AddName(std::size_t set, const QString& text);
  void RemoveName(std::size_t set, int row);
  [[nodiscard]] QString WhyNoRemove(std::size_t set, int row) const;
  /// Swaps it with the one above (-1) or below (1). Returns its new row.
  int MoveName(std::size_t set, int row, int step);

  // The duration panel.
  [[nodiscard]] bool DurationOpen() const { return durationOpen_; }
  [[nodiscard]] int RereadDuration() const { return rereadDuration_; }
  void OpenDuration();
  void Reread();
  void ApplyDuration(int seconds);
  void CloseDuration();

  void ImportText();
  void Save();

  // Listening.
  [[nodiscard]] QString WhyNoTrial() const;
  void TryOrStop();
  [[nodiscard]] const PlayEditDesk& Desk() const { return *services_.desk; }

  [[nodiscard]] const TrackWave& Wave() const { return wave_; }

 Q_SIGNALS:
  void Changed();
  /// All fields are others: a track was opened.
  void Opened();
  /// It is saved: the window closes.
  void Saved();

 private:
  struct FileState;
  void FollowCatalogue();
  void Lose(const QString& why);
  [[nodiscard]] QString InfoPath() const;
  [[nodiscard]] Job<> RunOpen(QString path);
  void TakeFile(const FileState& file);
  [[nodiscard]] Job<bool> RunSave();
  [[nodiscard]] Job<bool> WriteAndTell();
  [[nodiscard]] Job<> RunSaveAndClose();
  [[nodiscard]] Job<> RunReread();
  [[nodiscard]] Job<> RunApply(int seconds);
  [[nodiscard]] Job<> RunImport();
  [[nodiscard]] Job<> RunTrial();
  [[nodiscard]] bool CheckFields();
  /// The names of a set that the catalogue does not know yet.
  [[nodiscard]] QStringList NewNames(std::size_t set) const;
  [[nodiscard]] TrackDefaults Defaults() const;
  void Tell(const QString& text, PromptIcon icon = PromptIcon::Exclamation);

  Services services_;
  TrackWave wave_;
  QString path_;  ///< of the music file
  Mref track_ = Mref::None;
  bool ready_ = false;
  bool fileMissing_ = false;
  bool saving_ = false;
  bool durationOpen_ = false;
  int rereadDuration_ = -1;
  PlayEdit before_;
  PlayEdit edit_;
  QString sizeWords_;
  QString notice_;
  Job<> opening_;
  Job<> work_;
  Job<> trial_;
};

}  // namespace kelvo
