#pragma once

#include "audio/AudioSystem.h"
#include "audio/Recorder.h"
#include "console/decks/DeckEngine.h"
#include "console/jingles/Jingles.h"
#include "console/recorder/RecordingPlace.h"
#include "platform/Disks.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"
#include "platform/Setting.h"

#include <QObject>

#include <functional>
#include <memory>
#include <optional>

namespace kelvo {

namespace setting {

/// The folder of the recordings; empty: one in the operator's documents.
inline constexpr TextSetting RecordFolder{{kStartup, QLatin1StringView("RecordFolder")}};
/// "FLAC" or "WAV".
inline constexpr TextSetting RecordFormat{{kStartup, QLatin1StringView("RecordFormat")},
                                          QLatin1StringView("FLAC")};

}  // namespace setting

/// The desk's recorder: puts what goes on air into a new file of the chosen folder, and the titles that the
/// decks bring on air into the cue sheet beside it; a jingle is a title where no deck is heard. Tells the
/// operator what keeps it from recording. Owned by the Console; logic thread.
class ProgrammeRecorder : public QObject {
  Q_OBJECT
 public:
  enum class State { Idle, Starting, Recording, Closing };
  struct Services {
    EventLoop& loop;
    Disks& disks;
    Prompter& prompter;
    AudioSystem& audio;
    DeckEngine& decks;
    Jingles& jingles;
    ProgramSettings settings;
    QString home;  ///< the folder of the recordings as long as none is chosen
  };
  explicit ProgrammeRecorder(Services services);
  /// Closes the file.
  ~ProgrammeRecorder() override;

  void Start();
  void Stop();
  /// The command of the console: starts, or asks whether to stop.
  void Press();
  /// The end of the program: asks when it records.
  [[nodiscard]] Job<bool> MayEnd();

  [[nodiscard]] State Now() const;
  [[nodiscard]] bool Runs() const { return Now() != State::Idle; }
  /// Of the recording that runs, else of the last one.
  [[nodiscard]] const QString& Path() const { return recorder_.Path(); }
  [[nodiscard]] double Seconds() const { return recorder_.Seconds(); }
  [[nodiscard]] std::int64_t Bytes() const { return recorder_.Bytes(); }
  /// Free bytes where it records, else where it would, as last looked at; nothing while that is not known.
  [[nodiscard]] std::optional<std::int64_t> BytesLeft() const;
  [[nodiscard]] bool SpaceIsLow() const {
    return BytesLeft().value_or(Recorder::kLowSpace) < Recorder::kLowSpace;
  }
  /// Looks at the free space of the folder.
  void LookAtSpace();

  /// What the operator should know of the recording that runs, in words; empty when all is well.
  [[nodiscard]] QString Warning() const;
  /// Why the last recording did not begin, or ended by itself; empty when it did not, or once it is read.
  [[nodiscard]] const QString& Trouble() const { return trouble_; }
  void AcceptTrouble();

  [[nodiscard]] QString Folder() const;
  [[nodiscard]] RecordingFile::Kind Format() const;
  void SetFormat(RecordingFile::Kind kind);
  /// The operator picks the folder.
  void ChooseFolder();

  // The desk tells what comes on air.
  void DeckStarted(Deck deck);
  /// A deck that was faded out and has played on is brought back.
  void DeckBroughtBack(Deck deck);
  void BiteStarted();

 Q_SIGNALS:
  /// Anything of the above; twice a second while it runs.
  void Changed();
  /// The folder has one more recording, or is another one.
  void FolderChanged();

 private:
  /// What the sheet names last.
  struct Aired {
    std::optional<Deck> deck;
    QString path;
    bool operator==(const Aired&) const = default;
  };
  [[nodiscard]] Job<> RunStart();
  [[nodiscard]] Job<> RunPress();
  [[nodiscard]] Job<> RunLook();
  [[nodiscard]] Job<> RunChoose();
  void Begin(const RecordingPlace& place, RecordingFile::Kind kind);
  void Ended(const QString& error);
  void Tell(const QString& what, const std::exception_ptr& failure);
  void NoteWhatPlays();
  void Note(Aired aired, const MediaPlayer* player);
  /// A title that is taken back gives the air back to the other deck.
  void FollowDecks();
  [[nodiscard]] Aired Of(Deck deck) const { return {deck, services_.decks.Record(deck).FilePath}; }

  Services services_;
  std::shared_ptr<const Tap> tap_;
  Recorder recorder_;
  std::optional<std::int64_t> folderLeft_;
  bool starting_ = false;
  QString trouble_;
  Aired aired_;
  Timer beat_;
  Job<> start_;
  Job<> press_;
  Job<> look_;
  Job<> choose_;
};

}  // namespace kelvo
