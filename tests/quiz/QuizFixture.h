#pragma once

#include "audio/ClockAudio.h"
#include "database/Catalogue.h"
#include "platform/ErrorLog.h"
#include "platform/SettingsStore.h"
#include "platform/SimulatedEventLoop.h"
#include "quiz/PopQuiz.h"
#include "support/ScriptedPrompter.h"
#include "support/TemporaryTree.h"

#include <QDir>

#include <gmock/gmock.h>

#include <optional>
#include <set>

namespace kelvo::testing {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// The two players of a quiz, as what they did: the orders of the track's player, with the time of each.
class WatchedPlayer : public MediaPlayer {
 public:
  struct Event {
    QString what;
    double at;  ///< seconds of the loop
    bool operator==(const Event&) const = default;
  };
  WatchedPlayer(std::unique_ptr<MediaPlayer> player, EventLoop& loop, std::vector<Event>& events,
                QString name)
      : player_(std::move(player)), loop_(loop), events_(events), name_(std::move(name)) {}

  Job<OpenResult> Open(QString path) override { return player_->Open(std::move(path)); }
  [[nodiscard]] std::uint64_t OpenSteps() const override { return player_->OpenSteps(); }
  [[nodiscard]] Nanoseconds DataLateFor() const override { return player_->DataLateFor(); }
  void Close() override { player_->Close(); }
  [[nodiscard]] QString FileName() const override { return player_->FileName(); }
  [[nodiscard]] double Duration() const override { return player_->Duration(); }
  [[nodiscard]] bool HasSound() const override { return player_->HasSound(); }
  [[nodiscard]] double CurrentPosition() const override { return player_->CurrentPosition(); }
  void SetCurrentPosition(double seconds) override { player_->SetCurrentPosition(seconds); }
  [[nodiscard]] PlayState State() const override { return player_->State(); }
  void Play() override {
    Note(u"play"_s);
    player_->Play();
  }
  void Stop() override {
    if (player_->State() == PlayState::Playing) Note(u"stop"_s);
    player_->Stop();
  }
  void SetVolume(int hundredths) override {
    if (watchLevels) Note(QString::number(hundredths));
    player_->SetVolume(hundredths);
  }
  [[nodiscard]] int Volume() const override { return player_->Volume(); }
  void SetBalance(int hundredths) override { player_->SetBalance(hundredths); }
  [[nodiscard]] int Balance() const override { return player_->Balance(); }
  void SetRate(double rate) override { player_->SetRate(rate); }
  [[nodiscard]] double Rate() const override { return player_->Rate(); }

  static inline bool watchLevels = false;

 private:
  void Note(const QString& what) {
    events_.push_back({name_ + u' ' + what, std::chrono::duration<double>(loop_.Elapsed()).count()});
  }
  std::unique_ptr<MediaPlayer> player_;
  EventLoop& loop_;
  std::vector<Event>& events_;
  QString name_;
};

class WatchedAudio : public ClockAudio {
 public:
  explicit WatchedAudio(EventLoop& loop) : ClockAudio(loop), loop_(loop) {}
  [[nodiscard]] std::unique_ptr<MediaPlayer> MakePlayer(const QString& output = {}) override {
    const QString name = made_++ % 2 == 0 ? u"mixer"_s : u"track"_s;
    return std::make_unique<WatchedPlayer>(ClockAudio::MakePlayer(output), loop_, events, name);
  }
  std::vector<WatchedPlayer::Event> events;

 private:
  EventLoop& loop_;
  int made_ = 0;
};

/// A loop whose disk can be left out: what the quiz keeps of itself is not written then.
class QuizLoop : public SimulatedEventLoop {
 public:
  bool writes = true;
  void RunOffThread(Lane lane, std::function<void()> work, Callback done) override {
    if (lane == Lane::Files && !writes) work = [] {};
    SimulatedEventLoop::RunOffThread(lane, std::move(work), std::move(done));
  }
};

/// A quiz over a catalogue in memory, in simulated time. Its tracks last a minute, its mixer a second.
class QuizTest : public ::testing::Test {
 protected:
  QuizTest() {
    audio_.openTime = 1ms;
    audio_.SetDuration(tree_.Write(u"Quiz Mixers/QzDrum.wav"_s, "sound"), 1);
    audio_.SetDuration(tree_.Write(u"Quiz Intros/Hello.mp3"_s, "sound"), 3);
    catalogue_.Replace(CatalogueTables(tree_.Path(u"music"_s)));
    catalogue_.AddReference(ReferenceSet::Genres, u"~ALL CATEGORIES"_s);
    catalogue_.AddReference(ReferenceSet::Genres, u"Pop"_s);
    catalogue_.AddReference(ReferenceSet::Genres, u"Rock"_s);
    WatchedPlayer::watchLevels = false;
  }
  void AddTracks(int count, const QString& genres = u"~ALL CATEGORIES,Pop"_s, double seconds = 60) {
    for (int number = 0; number < count; ++number) {
      const QString title = QString::number(++added_);
      const Mref track = catalogue_.Append({.name = u"Artist "_s + title + u" - Title "_s + title,
                                            .extension = u".mp3"_s,
                                            .genres = genres,
                                            .artists = u"~ALL ARTISTS,Artist "_s + title,
                                            .albums = u"~ALL ALBUMS,Album"_s,
                                            .date = u"1999-Dec"_s,
                                            .hi = u"7"_s,
                                            .duration = seconds});
      audio_.SetDuration(catalogue_.TrackPaths(track), seconds);
    }
  }
  void Make(std::uint64_t seed = 5) {
    quiz_.emplace(PopQuiz::Services{.loop = loop_,
                                    .prompter = prompter_,
                                    .audio = audio_,
                                    .catalogue = catalogue_,
                                    .settings = ProgramSettings(settings_, u"Kelvo"_s),
                                    .title = u"Kelvo"_s,
                                    .programFolder = tree_.Path(),
                                    .random = RandomSource(seed),
                                    .dip = [this](bool down) { dips_.push_back(down); }});
    quiz_->Enter();
    Settle();
    quiz_->ChooseSound(QuizSound::Mixer, u"QzDrum.wav"_s);
  }
  /// Lets the quiz come to rest.
  void Settle() {
    loop_.RunUntil([this] { return quiz_->WhyLocked().isEmpty() && !quiz_->Store().Busy(); }, 10min);
    loop_.RunFor(1ms);
  }
  void Format(const std::vector<ElementKind>& kinds) {
    quiz_->Plan().Choose({0});
    quiz_->Plan().ClearElements();
    for (const ElementKind kind : kinds) quiz_->AddElement(kind);
    quiz_->Format();
    Settle();
  }
  void RunElement() {
    quiz_->StartElement();
    Settle();
  }
  [[nodiscard]] QStringList Rows() const {
    QStringList rows;
    for (const AskedRow& each : quiz_->Asked().All()) rows.append(each.words);
    return rows;
  }
  [[nodiscard]] QStringList Answers() const {
    QStringList rows;
    for (const AnswerRow& each : quiz_->Answers().All()) rows.append(each.text);
    return rows;
  }
  /// The tracks of all snippets so far.
  [[nodiscard]] std::vector<int> Played() const {
    std::vector<int> tracks;
    for (const QuizItem& item : quiz_->Items()) {
      for (const SnippetRecord& each : SnippetsOf(item)) tracks.push_back(each.track);
    }
    return tracks;
  }
  void SaveAs(const QString& name) {
    quiz_->Store().OpenToSave();
    Settle();
    quiz_->Store().SetName(name);
    quiz_->Store().Confirm();
    Settle();
  }
  void Load(const QString& name) {
    quiz_->Store().OpenToLoad();
    Settle();
    quiz_->Store().SetName(name);
    quiz_->Store().Confirm();
    Settle();
  }

  TemporaryTree tree_;
  QuizLoop loop_;
  ScriptedPrompter prompter_;
  ErrorLog log_{loop_, prompter_, tree_.Path(u"kelvo.log"_s)};
  SettingsStore settings_{loop_, tree_.Path(u"settings.ini"_s)};
  Catalogue catalogue_;
  WatchedAudio audio_{loop_};
  std::vector<bool> dips_;
  int added_ = 0;
  std::optional<PopQuiz> quiz_;
};

}  // namespace kelvo::testing
