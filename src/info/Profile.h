#pragma once

#include "info/InfoPage.h"
#include "info/ProfileKind.h"
#include "platform/EventLoop.h"
#include "platform/Prompter.h"

#include <QObject>

namespace kelvo {

class Catalogue;

/// The text about one artist, album or genre, with its picture. It follows the name when that is renamed or
/// deleted (ProfileKeeper does so with the files). One thing at a time: while it asks or changes files a
/// command does nothing. Owned beside its window; logic thread.
class Profile : public QObject {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    Disks& disks;
    Prompter& prompter;
    const Catalogue& catalogue;
    Paths paths;
    QString pictures;  ///< where the operator looks for pictures
    ProfileKind kind = ProfileKind::Artist;
    std::function<bool()> readOnly = [] { return false; };  ///< asked each time that a name is opened
    Trash trash = DesktopTrash();
  };
  /// The most lines that are saved.
  static constexpr int kMostLines = 100;

  explicit Profile(Services services);

  [[nodiscard]] const ProfileWords& Words() const { return words_; }
  /// Whose it is; empty: nobody's yet.
  [[nodiscard]] const QString& Name() const { return name_; }
  /// The name was deleted while it was open.
  [[nodiscard]] bool Gone() const { return gone_; }
  [[nodiscard]] InfoPage& Page() { return page_; }
  [[nodiscard]] bool ReadOnly() const { return readOnly_; }
  [[nodiscard]] bool AtWork() const { return work_.Running(); }

  /// Shows the profile of this name, which is found in whatever case; asks first for what was changed in the
  /// one that is open.
  void Open(const QString& name);
  /// Reads it again, unless it was changed.
  void Reread();
  void SaveAndClose();
  void Delete();
  /// A file was dropped on the text.
  void DropText(const QStringList& files);
  void PickPicture();
  void DropPicture(const QStringList& files);
  void RemovePicture();
  [[nodiscard]] Job<bool> MayClose();

 Q_SIGNALS:
  void Changed();
  /// The window is done.
  void Done();

 private:
  void Begin(Job<> job);
  [[nodiscard]] Job<> Guard(Job<> job);
  [[nodiscard]] bool MayWork() const { return !AtWork() && !readOnly_ && !name_.isEmpty(); }
  void Follow(const ReferenceChanged& change);
  /// As the catalogue writes it.
  [[nodiscard]] QString InCatalogue(const QString& name) const;
  [[nodiscard]] Job<> RunOpen(QString name);
  [[nodiscard]] Job<> Load();
  [[nodiscard]] Job<> RunSave();
  [[nodiscard]] Job<bool> Save();
  [[nodiscard]] Job<> RunDelete();
  [[nodiscard]] Job<> RunDropText(QStringList files);
  [[nodiscard]] Job<Answer> Ask(QString text, Buttons buttons);
  void Tell(const QString& text, const QString& title = {});
  void TellDone();

  Services services_;
  ProfileWords words_;
  InfoPage page_;
  QString name_;
  bool gone_ = false;
  bool readOnly_ = false;
  Job<> work_;
};

}  // namespace kelvo
