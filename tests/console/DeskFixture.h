#pragma once

#include "console/Console.h"
#include "console/FaultyAudio.h"
#include "console/Microphone.h"
#include "database/TestDatabase.h"
#include "platform/ErrorLog.h"
#include "platform/SettingsStore.h"
#include "platform/SimulatedEventLoop.h"
#include "support/ScriptedPrompter.h"

#include <gmock/gmock.h>

#include <chrono>
#include <optional>

namespace kelvo::testing {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// A desk over a database in a temporary folder, in simulated time. Tracks are added before Open, which makes
/// the desk and loads the catalogue.
class DeskTest : public ::testing::Test {
 protected:
  /// A track whose stored duration and true length are given in seconds.
  QString AddTrack(const QString& base, double stored, double true_) {
    const QString path = database_.AddTrack(base, InfoBytes(QByteArray::number(stored)));
    audio_.SetDuration(path, true_);
    return path;
  }
  /// Three tracks, "alpha" and "beta" of 60 seconds and "gamma" of 90.
  void AddThreeTracks() {
    AddTrack(u"alpha"_s, 60, 60);
    AddTrack(u"beta"_s, 60, 60);
    AddTrack(u"gamma"_s, 90, 90);
  }
  void Set(const QString& key, const QString& value) {
    settings_.SaveSetting(u"Kelvo"_s, u"Startup"_s, key, value);
  }

  void Make() {
    audio_.Hangs = [this](const QString& path) { return loop_.Hangs(path); };
    desk_.emplace(Console::Services{.loop = loop_,
                                    .prompter = prompter_,
                                    .audio = audio_,
                                    .settings = settings_,
                                    .catalogue = catalogue_,
                                    .paths = database_.paths,
                                    .title = u"Kelvo"_s,
                                    .aboutLine = u"About Kelvo"_s,
                                    .programFolder = database_.tree.Path(),
                                    .documents = database_.tree.Path(u"documents"_s),
                                    .soundInput = &microphone_});
  }
  void Open() {
    Make();
    desk_->Activate();
    ASSERT_TRUE(loop_.RunUntil([this] { return desk_->CatalogueLoaded(); }));
  }

  [[nodiscard]] PlayQueue& Queue() { return desk_->Queue(); }
  [[nodiscard]] DeckEngine& Decks() { return desk_->Decks(); }
  [[nodiscard]] const DeckRecord& Record(Deck deck) { return desk_->Decks().Record(deck); }
  [[nodiscard]] MediaPlayer& Player(Deck deck) { return desk_->Decks().Player(deck); }
  [[nodiscard]] FaultyPlayer& Disk(Deck deck) { return FaultyAudio::Of(Player(deck)); }
  [[nodiscard]] ConfirmationPanel& Panel() { return desk_->Panel(); }

  /// Lets a job of the desk run to its end.
  void Finish(Job<> job) {
    EXPECT_TRUE(loop_.RunUntil([&job] { return !job.Running(); }, 1s));
  }
  void Enqueue(const std::vector<Mref>& tracks) { Finish(Queue().AddTracks(tracks)); }
  void EnqueueAll() {
    std::vector<Mref> tracks;
    for (int row = 1; row <= catalogue_.LastTrack(); ++row) tracks.push_back(ToMref(row));
    Enqueue(tracks);
  }
  [[nodiscard]] QStringList Column(QueueColumn column) {
    QStringList texts;
    for (int index = 1; index <= Queue().Count(); ++index) texts.append(Queue().Row(index).Text(column));
    return texts;
  }
  [[nodiscard]] std::vector<int> Tags() {
    std::vector<int> tags;
    for (int index = 1; index <= Queue().Count(); ++index) tags.push_back(Queue().Row(index).Tag);
    return tags;
  }
  /// Loads the queue's row `index` into a deck as the operator does.
  void Load(Deck deck, int index) {
    Queue().Click(index);
    Decks().LoadCommand(deck);
    EXPECT_TRUE(loop_.RunUntil([&] { return !Record(deck).Loading; }, 30s));
  }
  [[nodiscard]] std::vector<int> SessionCodes() {
    std::vector<int> codes;
    for (const SessionEvent& event : desk_->Session().Events()) codes.push_back(static_cast<int>(event.Code));
    return codes;
  }
  [[nodiscard]] QString Log() const {
    return database_.tree.Exists(u"kelvo.log"_s) ? QString::fromUtf8(database_.tree.Read(u"kelvo.log"_s))
                                                 : QString();
  }

  TestDatabase database_;
  SimulatedEventLoop loop_{QDateTime(QDate(2007, 6, 1), QTime(9, 0))};
  ScriptedPrompter prompter_;
  ErrorLog log_{loop_, prompter_, database_.tree.Path(u"kelvo.log"_s)};
  FaultyAudio audio_{loop_};
  Microphone microphone_;
  SettingsStore settings_{loop_, database_.tree.Path(u"settings.ini"_s)};
  Catalogue catalogue_;
  std::optional<Console> desk_;
};

}  // namespace kelvo::testing
