#pragma once

#include "database/LibraryChange.h"
#include "database/Paths.h"
#include "platform/NewFile.h"
#include "platform/TrashBin.h"

#include <QString>

#include <optional>

namespace kelvo {

/// The change of the library that is under way, kept in the utility folder until its end, so that the next
/// start brings to an end what a crash broke off; beside it the last change, as long as it can be undone.
/// While the object lives no other program works on a change of this library. Its calls block for the disk:
/// off the logic's thread, one at a time. They throw Failure.
class ChangeJournal {
 public:
  /// Throws when a change is under way in another program, or waits for the next start to end it.
  explicit ChangeJournal(const Paths& paths);

  void Write(const LibraryChange& change) const;
  /// `done` can be undone from now on; the one before can't be any more.
  void EndWith(const LibraryChange& done) const;
  /// Nothing new can be undone.
  void End() const;
  /// The last change was undone.
  void EndUndone() const;

  /// The change that can be undone; none when there is none.
  [[nodiscard]] static std::optional<LibraryChange> Last(const Paths& paths);

 private:
  friend QString MendLibrary(const Paths& paths, TrashBin& trash);
  struct Locked {
    Descriptor folder;
    bool busy = false;
  };
  [[nodiscard]] static Locked LockOf(const Paths& paths);
  ChangeJournal(const Paths& paths, Descriptor lock);

  QString running_;
  QString last_;
  Descriptor lock_;
};

/// Brings to an end the change that a crash broke off: one that was being done is done, one that was being
/// taken back is taken back. Returns what became of it, in words for the operator; empty when there was none.
/// Before the catalogue is read. Blocks; any thread. Throws nothing.
[[nodiscard]] QString MendLibrary(const Paths& paths, TrashBin& trash);

}  // namespace kelvo
