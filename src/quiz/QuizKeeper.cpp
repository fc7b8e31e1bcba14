#include "quiz/QuizKeeper.h"

#include "platform/AtomicFile.h"
#include "platform/ErrorLog.h"

#include <QCoreApplication>
#include <QDir>
#include <QFile>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>

#include <algorithm>
#include <utility>

namespace kelvo {
namespace {

const QString kForm = QStringLiteral("kelvo-running-quiz-1");
constexpr qint64 kMostBytes = qint64{16} << 20;

QStringList TextsIn(const QJsonValue& value) {
  QStringList texts;
  for (const QJsonValue each : value.toArray()) texts.append(each.toString());
  return texts;
}

}  // namespace

bool QuizState::Empty() const {
  const bool points =
      std::any_of(teams.begin(), teams.end(), [](const QuizTeam& team) { return team.points != 0; });
  return quiz.items.empty() && !points;
}

QByteArray QuizState::ToBytes() const {
  QJsonArray kinds;
  for (const QuizElement& each : elements) kinds.append(static_cast<int>(each.kind));
  QJsonArray items;
  for (const QuizItem& each : quiz.items) {
    items.append(QJsonArray{each.heading, each.question, each.answers, each.snippets});
  }
  QJsonObject names;
  for (const auto& [track, name] : quiz.names) names.insert(QString::number(track), name);
  QJsonArray scores;
  for (const QuizTeam& each : teams) scores.append(QJsonArray{each.name, each.points});
  const QJsonObject all{{QStringLiteral("form"), kForm},
                        {QStringLiteral("elements"), kinds},
                        {QStringLiteral("genres"), QJsonArray::fromStringList(genres)},
                        {QStringLiteral("setup"), QJsonArray::fromStringList(setup)},
                        {QStringLiteral("next"), next},
                        {QStringLiteral("items"), items},
                        {QStringLiteral("rows"), QJsonArray::fromStringList(rows)},
                        {QStringLiteral("names"), names},
                        {QStringLiteral("used"), QJsonArray::fromStringList(used)},
                        {QStringLiteral("teams"), scores}};
  return QJsonDocument(all).toJson(QJsonDocument::Compact);
}

std::optional<QuizState> QuizState::FromBytes(const QByteArray& bytes) {
  const QJsonObject all = QJsonDocument::fromJson(bytes).object();
  if (all.value(QStringLiteral("form")).toString() != kForm) return std::nullopt;
  QuizState state;
  for (const QJsonValue each : all.value(QStringLiteral("elements")).toArray()) {
    const int kind = each.toInt(-1);
    if (kind < 0 || kind > static_cast<int>(ElementKind::Question)) return std::nullopt;
    state.elements.push_back({static_cast<ElementKind>(kind)});
  }
  state.genres = TextsIn(all.value(QStringLiteral("genres")));
  state.setup = TextsIn(all.value(QStringLiteral("setup")));
  for (const QJsonValue each : all.value(QStringLiteral("items")).toArray()) {
    const QJsonArray item = each.toArray();
    state.quiz.items.push_back(
        {item.at(0).toString(), item.at(1).toString(), item.at(2).toString(), item.at(3).toString()});
  }
  state.rows = TextsIn(all.value(QStringLiteral("rows")));
  const QJsonObject names = all.value(QStringLiteral("names")).toObject();
  for (auto each = names.begin(); each != names.end(); ++each) {
    state.quiz.names.emplace(each.key().toInt(), each.value().toString());
  }
  state.used = TextsIn(all.value(QStringLiteral("used")));
  for (const QJsonValue each : all.value(QStringLiteral("teams")).toArray()) {
    state.teams.push_back({each.toArray().at(0).toString(), each.toArray().at(1).toInt()});
  }
  const int last = static_cast<int>(state.elements.size());
  state.next = all.value(QStringLiteral("next")).toInt();
  const auto asked = static_cast<int>(state.quiz.items.size());
  // Each element that was done has left one item and one row.
  const bool whole = state.rows.size() == asked && (state.next == 0 || state.next == asked + 1);
  if (!whole || state.next > last + 1) return std::nullopt;
  return state;
}

QString QuizKeeper::PathIn(const QString& quizFolder) {
  return QDir(quizFolder).filePath(QStringLiteral(".running-quiz"));
}

std::optional<QuizState> QuizKeeper::Read(const QString& path) {
  if (!QFile::exists(path)) return std::nullopt;
  try {
    std::optional<QuizState> state = QuizState::FromBytes(ReadWholeFile(path, kMostBytes));
    if (state && !state->Empty()) return state;
  } catch (const Failure&) {
    // What can't be read can't be gone on with; the next quiz takes its place.
  }
  return std::nullopt;
}

void QuizKeeper::Keep(QuizState state) {
  waiting_ = std::move(state);
  if (!writing_.Running()) writing_ = Write();
}

Prompt QuizKeeper::Question(const QString& title) {
  Prompt question;
  question.text =
      QCoreApplication::translate("QuizKeeper", "A Pop Quiz Was Under Way When %1 Ended.\r\nGo On With It ?")
          .arg(title);
  question.buttons = Buttons::YesNo;
  question.icon = PromptIcon::Question;
  return question;
}

QuizKeeper::~QuizKeeper() {
  if (!waiting_) return;
  loop_.RunOffThread(
      EventLoop::Lane::Files,
      [write = WriteOf(*waiting_)] {
        try {
          write();
        } catch (const Failure&) {
          // Nobody is left to hear of it.
        }
      },
      [] {});
}

std::function<void()> QuizKeeper::WriteOf(const QuizState& state) const {
  return [path = path_, bytes = state.Empty() ? QByteArray() : state.ToBytes()] {
    if (bytes.isEmpty()) {
      QFile::remove(path);
    } else {
      (void)QDir().mkpath(QFileInfo(path).path());
      ReplaceFile(path, bytes);
    }
  };
}

Job<> QuizKeeper::Write() {
  // Changes of one turn are one write.
  co_await loop_.Yield();
  while (waiting_) {
    const std::function<void()> write = WriteOf(*std::exchange(waiting_, std::nullopt));
    try {
      co_await loop_.Offload(EventLoop::Lane::Files, write);
      toldTrouble_ = false;
    } catch (...) {
      // One message, however many changes follow.
      if (!std::exchange(toldTrouble_, true)) {
        basHandleError(QStringLiteral(" quizkp"),
                       QCoreApplication::translate("QuizKeeper",
                                                   "The running quiz could not be kept. It goes on, but a "
                                                   "crash would lose it."));
      }
    }
  }
}

}  // namespace kelvo
