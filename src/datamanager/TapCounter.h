#pragma once

#include "audio/FileTempo.h"
#include "audio/cDshow.h"
#include "database/Catalogue.h"
#include "database/Paths.h"
#include "datamanager/BeatCount.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"

#include <QObject>

#include <memory>
#include <optional>

namespace kelvo {

/// The device on which a track is listened to beside the programme. The join implements it.
struct TapDevice {
  /// Why nothing can be played beside the programme, in words; empty when it can.
  std::function<QString()> whyNot;
  /// The device, as players take it; empty: the default one.
  std::function<QString()> output;
};

/// Counts the beats of a track that the operator taps with the space bar, and stores the figure with the
/// track. Beside it, to compare: the median of the taps, and what a program hears in the file; neither is
/// stored by itself. Owned beside its window; logic thread.
class TapCounter : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    AudioSystem& audio;
    Catalogue& catalogue;
    Paths paths;
    TapDevice device;
  };
  explicit TapCounter(Services services);
  ~TapCounter() override;

  /// The track or sound bite that is counted. The taps of the one before stay until a new count begins.
  void Take(const QString& path);
  [[nodiscard]] const QString& Path() const { return path_; }
  /// The window went off the screen: it is silent, and nothing is counted.
  void Leave();

  // The player.
  [[nodiscard]] QString WhyNoPlay() const;
  void Play();
  void Stop();
  [[nodiscard]] bool Playing() const { return graph_.GraphPlayState() == cDshow::State::Running; }
  [[nodiscard]] double Position() const { return graph_.GraphPosition(); }
  [[nodiscard]] double Duration() const { return graph_.GraphDuration(); }
  void SetPosition(double seconds) { graph_.SetGraphPosition(seconds); }

  // The count.
  /// "Count Bpm" begins a count; "See Result" ends it.
  void CountOrEnd();
  [[nodiscard]] QString Caption() const;
  [[nodiscard]] bool Armed() const { return armed_; }
  /// The space bar.
  void Tap();
  [[nodiscard]] int Taps() const { return beats_.Count(); }
  [[nodiscard]] bool Lamp() const { return lamp_; }
  /// The instructions are shown.
  [[nodiscard]] bool Instructing() const { return armed_ && !hideInstructions_; }
  [[nodiscard]] bool HidesInstructions() const { return hideInstructions_; }
  void HideInstructions(bool hide);

  /// What the box holds: "Waiting !", "Beat= 7", a result, or what was typed.
  [[nodiscard]] const QString& Text() const { return text_; }
  void SetText(const QString& text);
  /// Half or twice the number in the box.
  void Scale(double factor);
  [[nodiscard]] QString WhyNoScale() const;
  /// Stores the number in the box with the track, after a question.
  void Save() { SaveTo(path_); }
  /// The same with another track; empty: none is selected.
  void SaveTo(const QString& path);
  [[nodiscard]] QString WhyNoSave() const;

  // To compare with.
  [[nodiscard]] std::optional<double> Median() const { return beats_.Median(); }
  [[nodiscard]] const std::optional<FileTempo>& Heard() const { return heard_; }
  /// How far the listening is, what it found, or why there is nothing.
  [[nodiscard]] QString HeardWords() const;
  /// Takes a figure into the box.
  void Use(double bpm);

 Q_SIGNALS:
  void Changed();
  /// Each 100 ms: position and lamp.
  void Beat();

 private:
  struct Listening;
  void FollowCatalogue();
  void Tick();
  void EndCount();
  void ShowText(const QString& text);
  void Tell(const QString& text);
  [[nodiscard]] bool IsSoundBite(const QString& path) const;
  [[nodiscard]] Job<> RunPlay();
  [[nodiscard]] Job<> RunSave(QString path, double bpm);
  void Listen();
  void EndListening();

  Services services_;
  cDshow graph_;
  QString path_;
  QString opened_;  ///< in the player
  BeatCount beats_;
  BeatFlash flash_;
  bool armed_ = false;
  bool lamp_ = false;
  bool hideInstructions_ = false;
  QString text_ = QStringLiteral("0");
  std::shared_ptr<Listening> listening_;
  std::optional<FileTempo> heard_;
  QString heardWords_;
  Timer beatTimer_;
  Job<> play_;
  Job<> save_;
};

}  // namespace kelvo
