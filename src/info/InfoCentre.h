#pragma once

#include "info/InfoBank.h"
#include "info/InfoPage.h"
#include "platform/EventLoop.h"
#include "platform/Prompter.h"
#include "platform/RowStore.h"

#include <QObject>

#include <array>

namespace kelvo {

/// A category, a topic or a title.
struct InfoName {
  QString name;
  bool operator==(const InfoName&) const = default;
};

/// "Info Centre", the operator's note book: categories hold topics, topics hold titles, a title is a text
/// with a picture. It asks before a changed text is left, and does one thing at a time: while it asks or
/// changes files a command does nothing. Owned beside its window; logic thread.
class InfoCentre : public QObject {
  Q_OBJECT

 public:
  struct Services {
    EventLoop& loop;
    Disks& disks;
    Prompter& prompter;
    QString root;                                           ///< of the tree
    QString pictures;                                       ///< where the operator looks for pictures
    std::function<bool()> readOnly = [] { return false; };  ///< asked each time that the window comes up
    Trash trash = DesktopTrash();
  };

  explicit InfoCentre(Services services);
  ~InfoCentre() override;

  [[nodiscard]] static int MostLetters(InfoLevel level);

  [[nodiscard]] const RowStore<InfoName>& Names(InfoLevel level) const;
  [[nodiscard]] const InfoPath& Chosen() const { return chosen_; }
  [[nodiscard]] InfoPage& Page() { return page_; }
  [[nodiscard]] bool ReadOnly() const { return readOnly_; }
  /// It asks the operator or changes files.
  [[nodiscard]] bool AtWork() const { return work_.Running() && !reading_; }
  /// What can't be listed, and why; empty: nothing.
  [[nodiscard]] const QString& Trouble() const { return trouble_; }

  /// The window came up.
  void Enter();
  /// Reads the lists anew, and the text unless it was changed.
  void List();
  void Choose(InfoLevel level, const QString& name);
  void New(InfoLevel level);
  void Rename(InfoLevel level);
  void Delete(InfoLevel level);
  void SaveAndClose();
  void PickPicture();
  void DropPicture(const QStringList& files);
  void RemovePicture();

  /// Looks for titles with these words, a moment after the last of several calls; empty: for none.
  void Find(const QString& words);
  /// What is looked for.
  [[nodiscard]] const QString& Words() const { return words_; }
  [[nodiscard]] bool Finding() const { return finding_.Running(); }
  [[nodiscard]] const RowStore<InfoHit>& Hits() const { return hits_; }
  void ChooseHit(int row);

  /// Asks for what is not saved.
  [[nodiscard]] Job<bool> MayClose();

 Q_SIGNALS:
  void Changed();
  /// The text is saved: the window is done.
  void Done();

 private:
  void Begin(Job<> job);
  [[nodiscard]] Job<> Guard(Job<> job);
  void TellChanged();
  [[nodiscard]] Job<> Show(InfoPath wanted);
  [[nodiscard]] Job<bool> MayLeave(QString question);
  [[nodiscard]] Job<> ListAll();
  [[nodiscard]] Job<QStringList> NamesAt(InfoPath path, InfoLevel level);
  [[nodiscard]] Job<> RunNew(InfoLevel level);
  [[nodiscard]] Job<> RunRename(InfoLevel level);
  [[nodiscard]] Job<> RunDelete(InfoLevel level);
  [[nodiscard]] Job<> RunSave();
  [[nodiscard]] Job<> RunFind(QString words);
  [[nodiscard]] Job<Answer> Ask(QString text, Buttons buttons, QString title = {});
  void Refuse(const QString& text);
  [[nodiscard]] RowStore<InfoName>& Rows(InfoLevel level);
  [[nodiscard]] InfoPlace PlaceOf(const InfoPath& path) const;

  Services services_;
  InfoPage page_;
  std::array<RowStore<InfoName>, kInfoLevels.size()> names_;
  InfoPath chosen_;
  QString trouble_;
  QString words_;
  RowStore<InfoHit> hits_;
  bool readOnly_ = false;
  bool reading_ = false;
  std::shared_ptr<std::atomic<bool>> stopFinding_;
  Job<> finding_;
  Job<> work_;
};

}  // namespace kelvo
