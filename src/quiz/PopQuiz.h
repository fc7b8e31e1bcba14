#pragma once

#include "audio/AudioSystem.h"
#include "database/Catalogue.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"
#include "platform/RandomSource.h"
#include "platform/RowStore.h"
#include "platform/Setting.h"
#include "quiz/AudienceView.h"
#include "quiz/Candidate.h"
#include "quiz/QuizKeeper.h"
#include "quiz/QuizPlan.h"
#include "quiz/QuizPlayers.h"
#include "quiz/QuizRecord.h"
#include "quiz/QuizScores.h"
#include "quiz/QuizSounds.h"
#include "quiz/QuizStore.h"

#include <QObject>

#include <functional>

namespace kelvo {

/// A row of the list of questions.
struct AskedRow {
  QString words;
};

/// "Pop Quiz": makes a quiz of the operator's tracks, runs it element by element, and shows and plays again
/// what was asked. One thing at a time: while it is locked everything but STOP is refused. Owned beside its
/// window; logic thread.
class PopQuiz : public QObject {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    AudioSystem& audio;
    Catalogue& catalogue;
    ProgramSettings settings;
    QString title;          ///< the program's
    QString programFolder;  ///< the quiz keeps its folders there
    RandomSource random = {};
    /// Turns the console's own sound down for as long as the quiz is heard, and up again.
    std::function<void(bool down)> dip = {};
    /// Evens out the loudness of these files; empty: nothing can.
    std::function<void(const QStringList& files)> unify = {};
    bool goOn = false;  ///< the operator has said already that an earlier quiz is gone on with
  };

  explicit PopQuiz(Services services);
  ~PopQuiz() override;

  [[nodiscard]] QuizPlan& Plan() { return plan_; }
  [[nodiscard]] QuizSounds& Sounds() { return sounds_; }
  [[nodiscard]] QuizPlayers& Players() { return players_; }
  [[nodiscard]] QuizScores& Scores() { return scores_; }
  [[nodiscard]] QuizStore& Store() { return store_; }

  /// It came on the screen. The first time it offers to go on with the quiz that an earlier run has left.
  void Enter();

  // What is shown.
  [[nodiscard]] const QString& Text() const { return text_; }        ///< question or status
  [[nodiscard]] const QString& Heading() const { return heading_; }  ///< or which quiz is loaded
  [[nodiscard]] const QString& StartWords() const { return startWords_; }
  [[nodiscard]] const RowStore<AskedRow>& Asked() const { return asked_; }
  [[nodiscard]] int Selected() const { return selected_; }  ///< row of Asked; -1 for none
  [[nodiscard]] const RowStore<AnswerRow>& Answers() const { return answers_; }
  [[nodiscard]] int CurrentGenre() const { return currentGenre_; }  ///< whose tracks are collected; -1: none
  /// The element that runs or runs next, as a row of the plan; -1 for none.
  [[nodiscard]] int CurrentElement() const;
  [[nodiscard]] int TracksFound() const { return pool_.Found(); }
  [[nodiscard]] bool Locked() const { return locked_; }
  /// A track plays that an answer names: it can be sought in.
  [[nodiscard]] bool PlaysByHand() const { return byHand_; }
  [[nodiscard]] const std::vector<QuizItem>& Items() const { return items_; }
  /// What the quiz is called: the name of the one that was loaded, or was saved last.
  [[nodiscard]] const QString& Name() const { return name_; }
  [[nodiscard]] AudienceView Audience() const;

  // Why a command is off, in words for the operator; empty when it can be given.
  [[nodiscard]] QString WhyLocked() const;
  [[nodiscard]] QString WhyNoFormat() const;
  [[nodiscard]] QString WhyNoStart() const;
  [[nodiscard]] QString WhyNoAnswers() const;
  [[nodiscard]] QString WhyNoReplay() const;
  [[nodiscard]] QString WhyNoPlay(int answerRow) const;
  [[nodiscard]] QString WhyNoReveal() const;
  [[nodiscard]] QString WhyNoSheet() const;
  [[nodiscard]] QString WhyNoUnify() const;

  // Commands. One that is off does nothing.
  void AddElement(ElementKind kind);
  void AddSound(QuizSound sound);
  void ChooseSound(QuizSound sound, const QString& name);
  void TryMixer();
  void PlayIntro();
  void Format();
  void StartElement();
  void Stop();
  void Select(int row);
  void ShowAnswers();
  void Replay();
  void PlayAnswer(int answerRow, PlayPart part);
  void SetRevealed(bool revealed);
  [[nodiscard]] bool Revealed() const { return revealed_; }
  /// Writes questions and answers into a file in a folder that the operator chooses.
  void WriteSheet();
  /// Makes the bytes of that file of its HTML; given by who can draw.
  std::function<QByteArray(const QString& html)> DrawSheet;
  void Unify();
  [[nodiscard]] bool Unifies() const { return static_cast<bool>(services_.unify); }
  [[nodiscard]] bool DipsConsole() const;
  void SetDipsConsole(bool dips);
  [[nodiscard]] Job<bool> MayClose();

 Q_SIGNALS:
  void Changed();
  /// What the audience sees may be another.
  void AudienceChanged();

 private:
  /// How an element ended.
  enum class Outcome { Asked, Cancelled, NoTrack };
  struct Drawn {
    Outcome outcome = Outcome::Asked;
    int candidate = 0;
    SnippetSpan span;
    QString title;
  };

  void Begin(Job<> job);
  [[nodiscard]] Job<> Guard(Job<> job);
  void Lock();
  /// The quiz is heard until Release: turns the console down, where the operator wants that.
  void BeginSound();
  void Release();
  void Dip();
  void Say(const QString& text);
  void Tell(const QString& text);
  void ResetAnswers();
  /// Nothing is formatted or asked any more.
  void Clear();

  [[nodiscard]] Job<> RunFormat();
  [[nodiscard]] Job<> Collect();
  [[nodiscard]] Job<> CollectGenre(QString genre);

  [[nodiscard]] Job<> RunElement();
  [[nodiscard]] Job<Outcome> Ask(QuizItem& item);
  [[nodiscard]] Job<Outcome> PlayOne(QuizItem& item);
  [[nodiscard]] Job<Outcome> PlayChain(QuizItem& item);
  /// A candidate whose file can be played, open and with its snippet chosen.
  [[nodiscard]] Job<Drawn> DrawSnippet();
  [[nodiscard]] SnippetRecord RecordOf(const Drawn& drawn, ElementKind kind);
  void EndElement(Outcome outcome, QuizItem item);
  void ShowNextElement();
  [[nodiscard]] Job<bool> OpenChosenMixer();
  [[nodiscard]] Job<> RunReplay(QuizItem item);
  [[nodiscard]] Job<> RunPlayAnswer(SnippetRecord record, PlayPart part);
  [[nodiscard]] Job<> RunSound(QuizSound sound);
  [[nodiscard]] Job<> RunAddSound(QuizSound sound);

  [[nodiscard]] QuizStore::Services ForStore();
  [[nodiscard]] QString WhyNoSave() const;
  [[nodiscard]] SavedQuiz Whole() const;
  [[nodiscard]] Job<> TakeQuiz(QString name, SavedQuiz quiz);
  /// Gives the records the numbers that their tracks have today; names those that are gone.
  [[nodiscard]] Job<QStringList> FitToCatalogue(SavedQuiz& quiz);
  void TellMissing(const QStringList& missing);
  [[nodiscard]] Job<> RunSheet();
  [[nodiscard]] Job<> OfferToGoOn();
  [[nodiscard]] Job<> GoOn(QuizState state);
  void KeepState();
  void FollowCatalogue();
  void TrackWasRemoved(const TrackRemoved& removed);

  Services services_;
  QuizPlan plan_;
  QuizSounds sounds_;
  QuizPlayers players_;
  QuizScores scores_;
  QuizStore store_;
  QuizKeeper keeper_;
  CandidatePool pool_;
  std::vector<QuizElement> formatted_;  ///< the elements of the quiz that runs
  int next_ = 0;                        ///< the element that runs next, from 1; 0: none
  bool canStart_ = false;               ///< formatted, and not changed since
  bool loaded_ = false;                 ///< a saved quiz is shown
  bool saved_ = false;                  ///< the quiz is on disk under a name
  bool running_ = false;                ///< an element is under way
  std::vector<QuizItem> items_;
  NamesOfTracks names_;  ///< of the tracks in `items_`
  RowStore<AskedRow> asked_;
  RowStore<AnswerRow> answers_;
  int selected_ = -1;
  int currentGenre_ = -1;
  bool revealed_ = false;
  bool locked_ = false;
  bool byHand_ = false;
  bool heard_ = false;  ///< since BeginSound
  bool dipped_ = false;
  bool entered_ = false;
  bool keeps_ = false;  ///< what an earlier run has left was dealt with
  int chainOf_ = 0;     ///< snippets of the chain that sounds; 0: none does
  QString name_;
  QString text_;
  QString heading_ = QStringLiteral("Current Quiz Element");
  QString startWords_ = QStringLiteral("Welcome To Pop Quiz V1.1");
  Job<> work_;
  Job<> listing_;
};

}  // namespace kelvo
