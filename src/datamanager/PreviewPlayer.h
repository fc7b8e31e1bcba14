#pragma once

#include "audio/AudioSystem.h"
#include "audio/cDshow.h"
#include "datamanager/ManagerDesk.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"

#include <QObject>

#include <memory>

namespace kelvo {

/// Plays one file of the Data Manager beside the programme, on the device of the desk's monitor; never on
/// air. Owned by the DataManager; logic thread.
class PreviewPlayer : public QObject {
  Q_OBJECT

 public:
  PreviewPlayer(EventLoop& loop, AudioSystem& audio, std::shared_ptr<ManagerDesk> desk);
  ~PreviewPlayer() override;

  /// Why nothing can be played, in words; empty when it can.
  [[nodiscard]] QString WhyNot() const { return desk_->WhyNoPreview(); }
  /// Plays the file from its start.
  void Play(const QString& path);
  void Stop();
  [[nodiscard]] bool Playing() const { return graph_.GraphPlayState() == cDshow::State::Running; }
  /// What is open; empty when nothing is.
  [[nodiscard]] QString File() const { return graph_.GraphFile(); }
  /// Seconds: the `CurrentPosition` of the player.
  [[nodiscard]] double Position() const { return graph_.GraphPosition(); }
  [[nodiscard]] double Duration() const { return graph_.GraphDuration(); }
  void Seek(double seconds);
  /// What plays, "Stopped", or why a file could not be played.
  [[nodiscard]] const QString& Words() const { return words_; }

 Q_SIGNALS:
  /// It plays or stopped, or `PlayTimer` came by.
  void Changed();

 private:
  [[nodiscard]] Job<> RunPlay(QString path);
  void ApplyLevels();
  void Tick();
  void Say(const QString& words);

  EventLoop& loop_;
  std::shared_ptr<ManagerDesk> desk_;
  cDshow graph_;
  QString words_;
  Timer playTimer_;
  Job<> play_;
};

}  // namespace kelvo
