#pragma once

#include "platform/EventLoop.h"
#include "platform/Job.h"
#include "platform/Prompter.h"
#include "platform/RowStore.h"

#include <QObject>
#include <QString>

#include <array>

namespace kelvo {

/// The lists of words that fill a request.
enum class WordList { Males, Females, Messages };
inline constexpr std::array kWordLists{WordList::Males, WordList::Females, WordList::Messages};

/// The names and messages that the operator picks from, each list a text file with an entry a line. A change
/// is written at once; one that could not be written is tried again with the next, and when the window is
/// left. A list whose file can't be read is left alone. Owned by Requests; logic thread, the disk off it.
class WordLists : public QObject {
  Q_OBJECT

 public:
  /// No entry is longer.
  static constexpr qsizetype kLongestEntry = 1000;

  struct Services {
    EventLoop& loop;
    Prompter& prompter;
    QString folder;  ///< of the three files
  };
  explicit WordLists(Services services);

  [[nodiscard]] static QString Title(WordList list);
  [[nodiscard]] QString FilePath(WordList list) const;
  [[nodiscard]] const RowStore<QString>& Entries(WordList list) const { return At(list).entries; }

  /// Reads the files anew, but for a list with changes that are not on disk yet.
  [[nodiscard]] Job<> Read();
  /// Asks for an entry and puts it behind the others.
  [[nodiscard]] Job<> Add(WordList list);
  /// A row that is none does nothing.
  void Remove(WordList list, int row);
  /// Tries again what could not be written.
  void WriteOpenChanges();
  /// Why the list can't be changed, in words; empty when it can.
  [[nodiscard]] QString WhyNoChange(WordList list) const;

 Q_SIGNALS:
  /// What can be changed is another.
  void Changed();

 private:
  struct List {
    RowStore<QString> entries;
    bool readable = false;  ///< its file was read, or there is none
    bool open = false;      ///< changes are not on disk
    int changes = 0;
  };
  [[nodiscard]] List& At(WordList list) { return lists_[static_cast<std::size_t>(list)]; }
  [[nodiscard]] const List& At(WordList list) const { return lists_[static_cast<std::size_t>(list)]; }
  [[nodiscard]] Job<> Write(WordList list);

  Services services_;
  std::array<List, kWordLists.size()> lists_;
  JobList writing_;
};

}  // namespace kelvo
