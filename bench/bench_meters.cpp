#include "audio/AudioEngine.h"
#include "audio/TestSounds.h"
#include "audio/engine/NoDeviceBackend.h"
#include "console/Console.h"
#include "console/desk/ScopeSettings.h"
#include "console/windows/ConsoleWindow.h"
#include "platform/QtEventLoop.h"
#include "platform/SettingsStore.h"
#include "support/NobodyThere.h"
#include "ui/Theme.h"

#include <QApplication>
#include <QDir>
#include <QTemporaryDir>

#include <algorithm>
#include <ctime>
#include <iostream>

/// What meters and scope cost: the processor time of the whole program with them on the screen, above that of
/// the same desk with them hidden, in real time while noise plays. An argument is the seconds of each look.
namespace kelvo {
namespace {

using namespace std::chrono_literals;
using namespace Qt::StringLiterals;

double ProcessorSeconds() {
  std::timespec now{};
  clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
  return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) * 1e-9;
}

/// Counts how often a widget is painted.
class Paintings : public QObject {
 public:
  int count = 0;
  bool eventFilter(QObject* /*watched*/, QEvent* event) override {
    if (event->type() == QEvent::Paint) ++count;
    return false;
  }
};

class Measure {
 public:
  explicit Measure(double seconds) : seconds_(seconds) {
    // Hidden from the beginning: then nobody has asked for the tap either.
    Show(false, false);
    window_.resize(1366, 768);
    window_.show();
    const QString file = folder_.filePath(u"noise.wav"_s);
    testing::Save(file,
                  testing::WaveFile(testing::Noise(static_cast<std::size_t>(44100 * (4 * seconds_ + 10)))));
    play_ = Play(*player_, file);
    RunFor(2);
    for (const char* const name : {"TracePicture0", "SpectrumPicture", "LevelMeter"}) {
      auto& counter = paintings_.emplace_back(std::make_unique<Paintings>());
      window_.findChild<QWidget*>(QLatin1StringView(name))->installEventFilter(counter.get());
    }
  }

  void Run() {
    const double hiddenBefore = Look(false, false);
    const double traces = Look(true, false);
    const double tracesShown = Fps(0);
    const double hiddenBetween = Look(false, false);
    const double spectrum = Look(true, true);
    const double fps = std::min(tracesShown, Fps(1));
    const double hidden = (hiddenBefore + hiddenBetween) / 2;
    std::cout << "meters.hidden_percent: " << hidden << '\n'
              << "meters.traces_percent: " << traces - hidden << '\n'
              << "meters.spectrum_percent: " << spectrum - hidden << '\n'
              << "meters.fps: " << fps << '\n'
              << "meters.core_percent: " << std::max(traces, spectrum) - hidden << std::endl;
  }

 private:
  static Paths MakeDatabase(const QString& folder) {
    const Paths paths = Paths::Below(folder);
    for (int slot = Paths::kFirst; slot <= Paths::kLast; ++slot) QDir().mkpath(paths(slot));
    return paths;
  }
  static Job<> Play(MediaPlayer& player, QString file) {
    const OpenResult opened = co_await player.Open(file);
    if (!opened.Ok()) std::cerr << "the noise can't be opened\n";
    player.Play();
  }
  void RunFor(double seconds) {
    const Nanoseconds until = loop_.Elapsed() + Nanoseconds(static_cast<std::int64_t>(seconds * 1e9));
    while (loop_.Elapsed() < until) QCoreApplication::processEvents(QEventLoop::WaitForMoreEvents);
  }
  void Show(bool shown, bool spectrum) const {
    settings_.Set(setting::MetersShown, shown);
    settings_.Set(setting::ScopeShown, shown);
    settings_.Set(setting::ScopeSpectrum, spectrum);
  }
  /// Per cent of a core.
  double Look(bool shown, bool spectrum) {
    Show(shown, spectrum);
    RunFor(0.5);
    for (const auto& each : paintings_) each->count = 0;
    const Nanoseconds began = loop_.Elapsed();
    const double before = ProcessorSeconds();
    RunFor(seconds_);
    const double used = ProcessorSeconds() - before;
    took_ = static_cast<double>((loop_.Elapsed() - began).count()) * 1e-9;
    return 100 * used / took_;
  }
  /// Pictures a second in the last look, of the scope's picture or of the meter, whichever moved less.
  [[nodiscard]] double Fps(std::size_t picture) const {
    return std::min(paintings_[picture]->count, paintings_.back()->count) / took_;
  }

  const double seconds_;
  QTemporaryDir folder_;
  Paths paths_ = MakeDatabase(folder_.path());
  QtEventLoop loop_;
  testing::NobodyThere nobody_;
  SettingsStore store_{loop_, folder_.filePath(u"settings.ini"_s)};
  ProgramSettings settings_{store_, u"Kelvo"_s};
  AudioEngine audio_{loop_, std::make_unique<NoDeviceBackend>(QStringList{u"Silent Device"_s})};
  Catalogue catalogue_;
  Console desk_{{.loop = loop_,
                 .prompter = nobody_,
                 .audio = audio_,
                 .settings = store_,
                 .catalogue = catalogue_,
                 .paths = paths_,
                 .title = u"Kelvo"_s,
                 .aboutLine = {},
                 .programFolder = folder_.path()}};
  ConsoleWindow window_{desk_};
  std::unique_ptr<MediaPlayer> player_ = audio_.MakePlayer();
  std::vector<std::unique_ptr<Paintings>> paintings_;
  Job<> play_;
  double took_ = 1;
};

}  // namespace
}  // namespace kelvo

int main(int argc, char** argv) {
  if (!qEnvironmentVariableIsSet("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
  QApplication application(argc, argv);
  kelvo::Theme::Apply(application);
  kelvo::Measure(argc > 1 ? std::atof(argv[1]) : 5).Run();
  return 0;
}
