#pragma once

#include "database/Catalogue.h"
#include "database/Paths.h"
#include "discs/RipRun.h"
#include "platform/Setting.h"

#include <QObject>

namespace kelvo {

namespace setting {

/// 1: the artist is put in front of the title in the name of a ripped file.
inline constexpr NumberSetting RipFFormat{{kStartup, QLatin1StringView("CDRFFormat")}, 0, 0, 1};

}  // namespace setting

/// The encoder's settings in words: preset, bit rate, sample rate, quality, VBR.
[[nodiscard]] QString RipPresetWords(const EncodingPresets& presets);

/// The CD ripper: a disc's tracks in a grid, named by the operator, ripped into the utility folder. Owned by
/// its window's line; logic thread.
class Ripper : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    Catalogue& catalogue;
    Paths paths;
    ProgramSettings settings;
    QString title;    ///< the program's
    QString iniPath;  ///< of `cdrip.ini`
    std::shared_ptr<DriveShelf> shelf;
    std::map<QString, WriterKind> writers;
  };
  explicit Ripper(Services services);

  [[nodiscard]] RipRows& Rows() { return rows_; }
  [[nodiscard]] RipRun& Progress() { return run_; }
  [[nodiscard]] DriveShelf& Shelf() { return *services_.shelf; }
  [[nodiscard]] const QStringList& Artists() const { return services_.catalogue.ArtistList; }
  [[nodiscard]] const QStringList& Albums() const { return services_.catalogue.AlbumList; }

  /// The window opens: reads `cdrip.ini`, lists the drives and reads the disc of the chosen one.
  void Open();
  /// Takes the drive or image and reads its disc.
  void Choose(const QString& place);
  [[nodiscard]] const QString& Place() const { return place_; }
  /// Reads the disc anew: names that were typed are lost.
  void Reload();

  [[nodiscard]] const QString& Album() const { return album_; }
  void SetAlbum(const QString& album);
  /// 1: the artist is put in front of the title.
  [[nodiscard]] int FFormat() const { return services_.settings.Get(setting::RipFFormat); }
  void SetFFormat(int fFormat);
  [[nodiscard]] EncodingPresets Presets() const;
  /// The present year, for dates.
  [[nodiscard]] QString Year() const { return services_.loop.Now().toString(QStringLiteral("yyyy")); }

  /// `Command1`: asks what is to be asked, and rips the ticked rows.
  void Start();
  [[nodiscard]] QString WhyNoStart() const;
  /// `Command4`: opens the tray, or closes the one that it has opened.
  void EjectOrClose();
  [[nodiscard]] bool TrayOpen() const { return trayOpen_; }
  [[nodiscard]] QString WhyNoTray() const;

  /// The window's: the program's title and a warning.
  [[nodiscard]] QString Title() const;
  /// The window was to be closed during a rip: tells that it stays.
  void RefuseClose();

  [[nodiscard]] bool Reading() const { return load_.Running(); }
  [[nodiscard]] bool Busy() const { return run_.Running(); }
  /// What is in the drive, or why nothing can be ripped.
  [[nodiscard]] const QString& Words() const { return words_; }
  /// What is to be known of a row: its file, what was found, what is odd about it.
  [[nodiscard]] QString WordsOf(int row) const;

 Q_SIGNALS:
  void Changed();

 private:
  [[nodiscard]] Job<> RunOpen();
  [[nodiscard]] Job<> RunLoad();
  [[nodiscard]] Job<> RunStart();
  [[nodiscard]] Job<bool> Ask(QString text, Buttons buttons, QString title = {});
  [[nodiscard]] Job<bool> CheckDatabase();
  [[nodiscard]] Job<> RunTray();
  void TellEnd(bool completed);
  [[nodiscard]] RipOrder Order();
  void FollowShelf();
  void Show(const QString& words);
  /// The writer that `cdrip.ini` names, MP3 where it names none that there is.
  void LoadWriter();

  Services services_;
  RipRows rows_;
  RipRun run_;
  CdripIni ini_;
  WriterKind writer_;
  QString place_;
  DiscToc toc_;
  QString album_;
  QString words_;
  bool opened_ = false;
  bool trayOpen_ = false;
  Job<> open_;
  Job<> load_;
  Job<> start_;
  Job<> tray_;
};

}  // namespace kelvo
