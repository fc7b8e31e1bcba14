#pragma once

#include "audio/AudioSystem.h"
#include "database/Catalogue.h"
#include "database/Paths.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/SettingsStore.h"

#include <QAbstractTableModel>

#include <memory>
#include <vector>

namespace kelvo {

/// The files that wait in the utility folder, as a table, and a player to hear them. Owned by its window;
/// logic thread.
class UtilityFolder : public QAbstractTableModel {
  Q_OBJECT

 public:
  enum Column : int { FileName, Artist, Path, ColumnCount };
  /// The volume slider: a loss, 0 loudest, the lower end silent enough not to be heard.
  static constexpr int kMostLoss = 3000;

  struct Services {
    EventLoop& loop;
    SettingsStore& settings;
    AudioSystem& audio;
    Catalogue& catalogue;
    Paths paths;
    QString title;
  };

  explicit UtilityFolder(Services services);
  ~UtilityFolder() override;

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

  [[nodiscard]] int rowCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] int columnCount(const QModelIndex& parent = {}) const override;
  [[nodiscard]] QVariant data(const QModelIndex& index, int role = Qt::DisplayRole) const override;
  [[nodiscard]] QVariant headerData(int section, Qt::Orientation orientation, int role) const override;

 Q_SIGNALS:
  /// Listing or what plays changed.
  void Changed();

 private:
  struct Row {
    QString fileName;
    QString artist;
    QString path;
  };
  [[nodiscard]] static Row RowOf(const QString& path);
  void Follow(const StagedFileChanged& change);
  [[nodiscard]] Job<> RunList();
  [[nodiscard]] Job<> Start(Row row);
  void Say(const QString& playing);
  void KeepVolume();

  Services services_;
  std::vector<Row> rows_;
  std::unique_ptr<MediaPlayer> player_;
  QString playing_;
  int volume_ = 0;
  bool listing_ = false;
  Timer keep_;
  Job<> list_;
  Job<> start_;
};

}  // namespace kelvo
