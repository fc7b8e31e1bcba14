#pragma once

#include "app/ProgramFacts.h"
#include "database/Paths.h"
#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"

#include <QObject>
#include <QStringList>

#include <array>
#include <optional>

namespace kelvo {

class SettingsStore;

/// Sets up a media database where the operator wants it: makes the folders that are missing, seeds the
/// reference folders, writes the first settings. What is there already stays as it is. Nothing is saved
/// before all is made: an installation that was stopped is completed by the next. Owned by the program's
/// entry; logic thread, disks off it.
class Installer : public QObject {
  Q_OBJECT
 public:
  /// A row for each folder that has a place of its own, in the order of the path table.
  static constexpr int kRows = 7;
  using Locations = std::array<QString, kRows>;

  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    SettingsStore& settings;
    ProgramFacts facts;
    QString programFolder;
    QString demoGenerator = {};  ///< the program that makes the demo library; empty when there is none
  };
  struct Progress {
    int value = 0;
    int maximum = 0;
    QString words;
  };

  /// `present` holds the folders of an earlier installation that are there; its other slots are empty.
  explicit Installer(Services services, const Paths& present = {});

  /// Ends when all is installed, with the path table, or with none when the operator gave up.
  [[nodiscard]] Job<std::optional<Paths>> Run();

  [[nodiscard]] QString Title() const;
  [[nodiscard]] QString Head() const;
  /// The name of the row's folder.
  [[nodiscard]] static QString RowName(int row) { return Paths::FolderName(row + 1); }
  /// Where the row's folder is to be: the place that it goes in, or the folder itself.
  [[nodiscard]] const QString& Location(int row) const { return locations_[static_cast<std::size_t>(row)]; }
  void SetLocation(int row, const QString& path);
  void SetAllLocations(const QString& path);
  /// Free space at the row's place, empty until it is known.
  [[nodiscard]] QString FreeSpace(int row) const { return freeSpace_.value(row); }

  [[nodiscard]] bool OffersDemo() const { return !services_.demoGenerator.isEmpty(); }
  /// Where the demo library goes.
  [[nodiscard]] QString DemoFolder() const;
  void SetDemoLocation(const QString& path);

  void Install();
  /// Makes the demo library, unless it is there, and takes it as the database.
  void InstallDemo();
  /// Stops what is being made; when nothing is, the operator has given up.
  void GiveUp();
  [[nodiscard]] bool Busy() const { return stage_ != Stage::Waiting; }
  [[nodiscard]] const Progress& GetProgress() const { return progress_; }

 Q_SIGNALS:
  void Changed();

 private:
  enum class Stage { Waiting, Making, Ending };
  [[nodiscard]] Job<> Work(bool demo);
  [[nodiscard]] Job<bool> MakeTree(Paths paths);
  [[nodiscard]] Job<bool> MakeDemo(QString folder);
  /// So that a quiz can run at once; an installation is whole without them.
  [[nodiscard]] Job<> MakeQuizSounds();
  [[nodiscard]] Job<> Finish(Paths paths);
  [[nodiscard]] Job<> Refuse(QString why);
  [[nodiscard]] Job<> ReadFreeSpace();
  void Save(const Paths& paths);
  /// The demo library brings a sound for the audio warning along.
  void KeepDemoWarning(const QString& folder);
  void ReadDemoProgress(const QByteArray& output);
  void Show(int value, int maximum, const QString& words);

  Services services_;
  Paths present_;
  Locations locations_;
  QString demoLocation_;
  QStringList freeSpace_;
  Stage stage_ = Stage::Waiting;
  Progress progress_;
  std::optional<Paths> made_;
  OneShot<bool> ended_;
  Job<> work_;
  Job<> reading_;
};

/// The path table that the rows make. A location that ends in its folder's name is that folder, and so
/// is one that `present` holds; any other gets the folder in it.
[[nodiscard]] Paths ApplyLocations(const Installer::Locations& locations, const QString& programFolder,
                                   const Paths& present);

/// The folders that a new database begins with, in the order in which they are made.
[[nodiscard]] QStringList SeedFolders(const Paths& paths);

/// Why a database can't be made on these paths, in words; empty when it can. Blocks for the disk; any thread.
[[nodiscard]] QString WhyNotOn(const Paths& paths);

}  // namespace kelvo
