#pragma once

#include "audio/AudioSystem.h"
#include "discs/DiscDecoder.h"
#include "discs/DriveShelf.h"

#include <QObject>

#include <memory>

namespace kelvo {

/// An audio disc, played by commands of text ("play cd from 3"), of which the CD player and the console send
/// those that they need. The sound is read digitally and goes through a MediaPlayer, to the programme or to
/// another output. Logic thread; one command at a time.
///
/// Places are told in the time format that is set: "tmsf" is track:minutes:seconds:frames (a number alone is
/// the beginning of a track), "milliseconds" is the time since the beginning of the disc.
class CdAudio : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    AudioSystem& audio;
    std::shared_ptr<DriveShelf> shelf;
  };
  explicit CdAudio(Services services);
  ~CdAudio() override;

  /// The drive or image of the next open.
  void SetPlace(const QString& place) { place_ = place; }
  [[nodiscard]] const QString& Place() const { return place_; }
  /// Where it is heard, by name or id; empty is the programme. What plays there stops and keeps its place.
  void SetOutput(const QString& output);
  [[nodiscard]] const QString& Output() const { return output_; }

  /// Carries out a command and gives its answer, which only "status" has. Throws Failure with words for the
  /// operator.
  [[nodiscard]] Job<QString> Send(QString command);

  [[nodiscard]] const DiscToc& Toc() const { return toc_; }
  [[nodiscard]] bool Playing() const;
  /// How long the drive has owed sound that is needed next.
  [[nodiscard]] Nanoseconds LateFor() const { return player_ ? player_->DataLateFor() : Nanoseconds(0); }

 private:
  [[nodiscard]] Job<> OpenDrive();
  /// Whether a disc of sound is in the drive; takes its table of contents when it is a new one.
  [[nodiscard]] Job<bool> LookForDisc();
  [[nodiscard]] Job<> Play();
  [[nodiscard]] Job<> OpenPlayer();
  void Rest();
  void CloseAll();
  [[nodiscard]] QString Status(const QString& what) const;
  void NeedDisc() const;
  void GoTo(int sector);
  [[nodiscard]] int Sector() const;
  [[nodiscard]] int SectorOf(const QString& place) const;
  [[nodiscard]] QString PlaceText(int sector) const;
  [[nodiscard]] QString LengthText(int sectors) const;

  Services services_;
  std::unique_ptr<SourceScheme> scheme_;
  QString place_;
  QString output_;
  bool open_ = false;
  bool milliseconds_ = false;
  bool present_ = false;
  bool paused_ = false;
  DiscToc toc_;
  std::unique_ptr<MediaPlayer> player_;  ///< with the disc; none until it is first played
  int sector_ = 0;                       ///< where it begins once it is played
};

}  // namespace kelvo
