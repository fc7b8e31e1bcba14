#include "database/KeptTracks.h"
#include "database/SafeFileName.h"
#include "database/StagedName.h"
#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"
#include "quiz/PopQuiz.h"
#include "quiz/QuizSheet.h"

#include <QDir>
#include <QFileInfo>
#include <QSet>

namespace kelvo {
namespace {

/// More names than these fill no screen with a message.
constexpr qsizetype kMostNamesTold = 15;

}  // namespace

QuizStore::Services PopQuiz::ForStore() {
  return {.loop = services_.loop,
          .prompter = services_.prompter,
          .folder = QDir(services_.programFolder).filePath(QStringLiteral("Pop Quizes")),
          .whyHeld = [this] { return WhyLocked(); },
          .whyNoSave = [this] { return WhyNoSave(); },
          .setup = [this] { return plan_.Setup(); },
          .quiz = [this] { return Whole(); },
          .onSaved =
              [this] {
                saved_ = true;
                name_ = store_.Name();
                KeepState();
              },
          .takeSetup =
              [this](const QStringList& fields) {
                QuizSetup setup = plan_.Setup();
                const QuizSetup before = setup;
                setup.Take(fields);
                // A sound that is not there any more selects nothing.
                if (!sounds_.Names(QuizSound::Mixer).contains(setup.mixer)) setup.mixer = before.mixer;
                if (!sounds_.Names(QuizSound::Intro).contains(setup.intro)) setup.intro = before.intro;
                plan_.SetSetup(setup);
              },
          .takeQuiz = [this](QString name,
                             SavedQuiz quiz) { return TakeQuiz(std::move(name), std::move(quiz)); }};
}

QString PopQuiz::WhyNoSave() const {
  if (loaded_) {
    return QStringLiteral("You Currently Have \r\n") + heading_ +
           QStringLiteral(" Open, Please Format A New Quiz To Save !");
  }
  const bool done = next_ > 0 && next_ > static_cast<int>(formatted_.size());
  return done ? QString() : QStringLiteral("Can't Save Yet, Current Quiz Not Completed !");
}

SavedQuiz PopQuiz::Whole() const {
  return {.items = items_, .names = names_};
}

Job<> PopQuiz::TakeQuiz(QString name, SavedQuiz quiz) {
  const QStringList missing = co_await FitToCatalogue(quiz);
  Clear();
  loaded_ = true;
  name_ = name;
  heading_ = QStringLiteral("Loaded Quiz: ") + name;
  items_ = std::move(quiz.items);
  names_ = std::move(quiz.names);
  std::vector<AskedRow> rows;
  for (const QuizItem& item : items_) {
    const QString number = QString::number(rows.size() + 1);
    const std::vector<SnippetRecord> records = SnippetsOf(item);
    if (item.IsQuestion()) {
      rows.push_back({number + QStringLiteral(" Saved Question")});
    } else if (!records.empty() && records.front().kind == ElementKind::Chain) {
      rows.push_back(
          {number + QStringLiteral(" Saved Snippet Chain of ") + QString::number(plan_.Setup().chainQty)});
    } else {
      rows.push_back({number + QStringLiteral(" Saved Snippet")});
    }
  }
  asked_.Replace(std::move(rows));
  selected_ = asked_.Count() - 1;
  text_ = items_.empty() ? QString() : items_.back().Shown();
  Release();
  KeepState();
  TellMissing(missing);
}

Job<QStringList> PopQuiz::FitToCatalogue(SavedQuiz& quiz) {
  const Catalogue& tracks = services_.catalogue;
  // Quizes of older versions have no names: their tracks are those that have their numbers today.
  if (quiz.names.empty()) {
    for (const QuizItem& item : quiz.items) {
      for (const SnippetRecord& each : SnippetsOf(item)) {
        const Mref track = ToMref(each.track);
        if (tracks.IsTrack(track)) quiz.names[each.track] = tracks.TrackNames[track];
      }
    }
    co_return QStringList();
  }
  const auto fits = [&tracks](Mref track, const QString& name) {
    return tracks.IsTrack(track) && tracks.TrackNames[track].compare(name, Qt::CaseInsensitive) == 0;
  };
  QHash<QString, Mref> moved;
  for (const auto& [number, name] : quiz.names) {
    if (!fits(ToMref(number), name)) moved.insert(name.toUpper(), Mref::None);
  }
  if (!moved.isEmpty()) {
    Turn turn(services_.loop);
    TrackWalk walk(tracks);
    while (walk.Next()) {
      co_await turn.Yield();
      const auto found = moved.find(tracks.TrackNames[walk.Track()].toUpper());
      if (found != moved.end() && *found == Mref::None) *found = walk.Track();
    }
  }
  QStringList missing;
  std::map<int, int> numbers;
  NamesOfTracks names;
  for (const auto& [number, name] : quiz.names) {
    Mref track = ToMref(number);
    if (!fits(track, name)) track = moved.value(name.toUpper(), Mref::None);
    if (!fits(track, name)) track = Mref::None;
    numbers[number] = ToInt(track);
    if (track == Mref::None) {
      missing.append(name);
    } else {
      names[ToInt(track)] = tracks.TrackNames[track];
    }
  }
  for (QuizItem& item : quiz.items) {
    Renumber(item, [&numbers](int track) {
      const auto found = numbers.find(track);
      return found == numbers.end() ? 0 : found->second;
    });
  }
  quiz.names = std::move(names);
  co_return missing;
}

void PopQuiz::TellMissing(const QStringList& missing) {
  if (missing.isEmpty()) return;
  QString text =
      tr("These Tracks Of The Quiz Are Not In The Catalogue Any More, Their Snippets Are Passed "
         "Over :\r\n");
  text += missing.mid(0, kMostNamesTold).join(QStringLiteral("\r\n"));
  if (missing.size() > kMostNamesTold) {
    text += tr("\r\nAnd %1 More").arg(missing.size() - kMostNamesTold);
  }
  Tell(text);
}

void PopQuiz::WriteSheet() {
  if (DrawSheet && WhyNoSheet().isEmpty()) Begin(RunSheet());
}

Job<> PopQuiz::RunSheet() {
  const std::optional<QString> folder =
      co_await services_.prompter.PickFolder(tr("Write The Quiz Sheet Into Folder"), QString());
  if (!folder) co_return;
  const QString title =
      name_.isEmpty() ? tr("Pop Quiz %1").arg(services_.loop.Now().toString(QStringLiteral("yyyy-MM-dd")))
                      : name_;
  const QString path = *folder + QLatin1Char('/') + FittingName(SafeFileName(title), QStringLiteral(".pdf"));
  const auto look = [path] { return QFileInfo::exists(path); };
  const bool there = co_await services_.loop.Offload(EventLoop::Lane::Apart, look);
  if (there) {
    Prompt question;
    question.text = tr("%1 Already Exists.\r\nReplace It ?").arg(path);
    question.buttons = Buttons::YesNo;
    question.icon = PromptIcon::Question;
    const Answer answer = co_await services_.prompter.Ask(question);
    if (answer != Answer::Yes) co_return;
  }
  const auto write = [path, bytes = DrawSheet(QuizSheetHtml(title, items_))] { ReplaceFile(path, bytes); };
  co_await services_.loop.Offload(EventLoop::Lane::Apart, write);
  Tell(tr("Quiz Sheet Written To\r\n%1").arg(path));
}

void PopQuiz::KeepState() {
  if (!keeps_) return;
  QuizState state;
  state.teams = scores_.Teams().All();
  if (!loaded_ && next_ > 0) {
    state.elements = formatted_;
    for (const QuizGenre& each : plan_.Chosen().All()) state.genres.append(each.name);
    state.setup = plan_.Setup().Fields();
    state.next = next_;
    state.quiz = Whole();
    for (const AskedRow& each : asked_.All()) state.rows.append(each.words);
    for (int number = 0; number < pool_.Found(); ++number) {
      const Mref track = pool_[number].track;
      if (pool_.Used(number) && track != Mref::None) state.used.append(services_.catalogue.TrackNames[track]);
    }
  }
  keeper_.Keep(std::move(state));
}

Job<> PopQuiz::OfferToGoOn() {
  const auto read = [path = QuizKeeper::PathIn(store_.Folder())] { return QuizKeeper::Read(path); };
  std::optional<QuizState> state = co_await services_.loop.Offload(EventLoop::Lane::Files, read);
  if (state && !services_.goOn) {
    const Answer answer = co_await services_.prompter.Ask(QuizKeeper::Question(services_.title));
    if (answer != Answer::Yes) {
      keeper_.Keep({});
      state.reset();
    }
  }
  if (state) co_await GoOn(*std::move(state));
  keeps_ = true;
}

Job<> PopQuiz::GoOn(QuizState state) {
  scores_.Set(std::move(state.teams));
  if (state.next == 0) co_return;
  QuizSetup setup;
  setup.Take(state.setup);
  plan_.SetSetup(setup);
  plan_.SetChosen(state.genres);
  plan_.SetElements(state.elements);
  const QStringList missing = co_await FitToCatalogue(state.quiz);
  Lock();
  co_await Collect();
  Release();
  const QSet<QString> used(state.used.begin(), state.used.end());
  for (int number = 0; number < pool_.Found(); ++number) {
    if (used.contains(services_.catalogue.TrackNames[pool_[number].track])) pool_.Use(number);
  }
  items_ = std::move(state.quiz.items);
  names_ = std::move(state.quiz.names);
  std::vector<AskedRow> rows;
  for (const QString& each : state.rows) rows.push_back({each});
  asked_.Replace(std::move(rows));
  selected_ = asked_.Count() - 1;
  formatted_ = std::move(state.elements);
  next_ = state.next;
  canStart_ = true;
  ShowNextElement();
  Say(items_.empty() ? QStringLiteral("Pop Quiz Ready") : items_.back().Shown());
  TellMissing(missing);
}

void PopQuiz::FollowCatalogue() {
  const auto refreshNames = [this] {
    for (auto& [track, name] : names_) name = services_.catalogue.TrackNames[ToMref(track)];
  };
  services_.catalogue.Listen(
      this, [this](const TrackRemoved& removed) { TrackWasRemoved(removed); },
      [refreshNames](const TrackRenamed&) { refreshNames(); },
      [this](const CatalogueReplaced&) {
        pool_.Clear();
        canStart_ = false;
        Q_EMIT Changed();
      });
}

void PopQuiz::TrackWasRemoved(const TrackRemoved& removed) {
  pool_.Follow(removed);
  const auto numberOf = [&removed](int track) { return ToInt(removed.Renumbered(ToMref(track))); };
  for (QuizItem& item : items_) Renumber(item, numberOf);
  NamesOfTracks names;
  for (const auto& [track, name] : names_) {
    if (const int number = numberOf(track); number > 0) names.emplace(number, name);
  }
  names_ = std::move(names);
  // They show the numbers; they come anew with the next look.
  ResetAnswers();
  KeepState();
  Q_EMIT Changed();
}

}  // namespace kelvo
