#pragma once

#include "app/windows/DeskWindows.h"
#include "audio/AudioEngine.h"
#include "audio/TestSounds.h"
#include "audio/engine/SimulatedBackend.h"
#include "console/Console.h"
#include "console/windows/ConsoleWindow.h"
#include "database/TestDatabase.h"
#include "platform/ErrorLog.h"
#include "platform/SettingsStore.h"
#include "platform/SimulatedEventLoop.h"
#include "support/Lookup.h"
#include "support/ScriptedPrompter.h"
#include "support/TurnUntil.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QTest>
#include <QUrl>

#include <gtest/gtest.h>

#include <optional>

namespace kelvo::testing {

using namespace Qt::StringLiterals;
using namespace std::chrono_literals;

/// In the place of the desktop's file manager.
class UrlCatcher : public QObject {
  Q_OBJECT
 public:
  QUrl url;
 public Q_SLOTS:
  void Take(const QUrl& place) { url = place; }
};

/// A simulated device that a test pulls and plugs in again.
class PluggedBackend : public SimulatedBackend {
 public:
  using SimulatedBackend::SimulatedBackend;

  [[nodiscard]] QStringList Names() const override {
    return plugged ? SimulatedBackend::Names() : QStringList();
  }
  void Open(std::shared_ptr<DeviceLink> link) override {
    device = link;
    if (plugged) {
      SimulatedBackend::Open(std::move(link));
    } else {
      link->SetState(DeviceLink::State::Gone);
    }
  }
  void Pull() {
    plugged = false;
    device->SetState(DeviceLink::State::Gone);
  }

  bool plugged = true;
  std::shared_ptr<DeviceLink> device;  ///< the last that was opened
};

/// The console on an offscreen screen with the windows beside it, over decks that sound in simulated time.
/// The tracks are added before OpenDesk.
class SoundingDesk : public ::testing::Test {
 protected:
  void AddTrack(const QString& base, const Samples& sound) {
    database_.Add(Paths::Info, base + u".kif"_s, InfoBytes(QByteArray::number(sound.size() / 2 / 44100)));
    database_.Add(Paths::Music, base + u".wav"_s, WaveFile(sound));
  }
  void OpenDesk() {
    Theme::Apply(*qApp);
    auto backend = std::make_unique<PluggedBackend>(loop_);
    backend_ = backend.get();
    engine_.emplace(loop_, std::move(backend));
    desk_.emplace(Console::Services{.loop = loop_,
                                    .prompter = prompter_,
                                    .audio = *engine_,
                                    .settings = settings_,
                                    .catalogue = catalogue_,
                                    .paths = database_.paths,
                                    .title = u"Kelvo"_s,
                                    .aboutLine = u"About Kelvo"_s,
                                    .programFolder = database_.tree.Path(),
                                    .documents = database_.tree.Path(u"documents"_s)});
    window_.emplace(*desk_);
    beside_.emplace(*desk_, *window_);
    window_->show();
    window_->activateWindow();
    ASSERT_TRUE(TurnUntil([this] { return window_->isActiveWindow(); }));
    ASSERT_TRUE(loop_.RunUntil([this] { return desk_->CatalogueLoaded(); }));
    std::vector<Mref> tracks;
    for (int row = 1; row <= catalogue_.LastTrack(); ++row) tracks.push_back(ToMref(row));
    const Job<> add = desk_->Queue().AddTracks(tracks);
    ASSERT_TRUE(loop_.RunUntil([&add] { return !add.Running(); }, 1s));
  }
  /// Loads the queue's row as the operator does.
  void Load(Deck deck, int row) {
    desk_->Queue().Click(row);
    desk_->Decks().LoadCommand(deck);
    ASSERT_TRUE(loop_.RunUntil([&] { return desk_->Decks().Record(deck).State == DeckState::Loaded; }, 10s));
  }
  template <typename Widget>
  Widget& Find(const QString& name) {
    return *FindNamed<Widget>(*window_, name);
  }

  TestDatabase database_;
  SimulatedEventLoop loop_;
  ScriptedPrompter prompter_;
  ErrorLog log_{loop_, prompter_, database_.tree.Path(u"kelvo.log"_s)};
  SettingsStore settings_{loop_, database_.tree.Path(u"settings.ini"_s)};
  Catalogue catalogue_;
  PluggedBackend* backend_ = nullptr;
  std::optional<AudioEngine> engine_;
  std::optional<Console> desk_;
  std::optional<ConsoleWindow> window_;
  std::optional<DeskWindows> beside_;
};

}  // namespace kelvo::testing
