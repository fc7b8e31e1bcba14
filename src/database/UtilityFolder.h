#pragma once

#include "audio/AudioSystem.h"
#include "database/Catalogue.h"
#include "database/Paths.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/RowStore.h"
#include "platform/Setting.h"

#include <QString>

#include <memory>

namespace kelvo {

struct WaitingFile {
  QString fileName;
  QString artist;
  QString path;
};

/// The files that wait in the utility folder, and a player to hear them. Owned beside its window; logic
/// thread.
class UtilityFolder : public QObject {
  Q_OBJECT

 public:
  /// The volume slider: a loss, 0 loudest, the lower end silent enough not to be heard.
  static constexpr int kMostLoss = 3000;

  struct Services {
    EventLoop& loop;
    ProgramSettings settings;
    AudioSystem& audio;
    Catalogue& catalogue;
    Paths paths;
  };

  explicit UtilityFolder(Services services);
  ~UtilityFolder() override;

  [[nodiscard]] const RowStore<WaitingFile>& Rows() const { return rows_; }
  /// Lists the folder anew. The rows follow by themselves what the program stages and takes away.
  void List();
  [[nodiscard]] bool Listing() const { return listing_; }

  /// Plays the file of the row from its start.
  void Play(int row);
  void Stop();
  [[nodiscard]] bool Playing() const { return !playing_.isEmpty(); }
  /// What plays, in words; empty while nothing does.
  [[nodiscard]] const QString& PlayingWords() const { return playing_; }

  [[nodiscard]] int Volume() const { return volume_; }
  /// Takes effect at once, and is kept a moment later.
  void SetVolume(int loss);

 Q_SIGNALS:
  /// Listing or what plays changed.
  void Changed();

 private:
  [[nodiscard]] static WaitingFile FileAt(const QString& path);
  void Follow(const StagedFileChanged& change);
  [[nodiscard]] Job<> RunList();
  [[nodiscard]] Job<> Start(WaitingFile file);
  void Say(const QString& playing);
  void KeepVolume();

  Services services_;
  RowStore<WaitingFile> rows_;
  std::unique_ptr<MediaPlayer> player_;
  QString playing_;
  int volume_ = 0;
  bool listing_ = false;
  Timer keep_;
  Job<> list_;
  Job<> start_;
};

}  // namespace kelvo
