#pragma once

#include "console/SoakScene.h"

#include <QHash>
#include <QSet>

namespace kelvo::testing {

/// Which tracks could not be played lately, and why not.
class SoakBadFiles {
 public:
  void Begin(const QString& path) { since_.insert(path); }
  void End(const QString& path, double now);
  /// For a moment: it broke while it played.
  void Note(const QString& path, double now) { until_[path] = now; }
  /// Nothing could be read until then.
  void NoteAll(double now) { all_ = now; }
  [[nodiscard]] bool Bad(const QString& path) const { return since_.contains(path); }
  /// It is bad, or was so short a while ago that the desk may still leave it alone.
  [[nodiscard]] bool Lately(const QString& path, double now) const;
  [[nodiscard]] int Count() const { return static_cast<int>(since_.size()); }

 private:
  QSet<QString> since_;
  QHash<QString, double> until_;
  double all_ = -1000;
};

/// Watches that the rows of the queue come in their order and that none is left out: in random order within
/// so many loads that one in a million evenings would fail; in preview that no track comes a second
/// time before all have been heard.
class SoakRounds {
 public:
  SoakRounds(SoakScene& scene, const SoakBadFiles& bad) : scene_(scene), bad_(bad) {}

  /// The operator has changed the queue or its selection: the next load begins there.
  void OnEdit() { edited_ = true; }
  /// The desk was switched on.
  void OnSwitch();
  /// A deck was loaded with a track that can be heard, in place of `before`, beside what the other one holds.
  void OnLoaded(const QString& path, const QString& before, const QString& other);
  /// A deck was started: where the desk was switched on, it has taken its first rows.
  void OnStarted(const QString& path) {
    // It may have been in the deck before, or have been chosen anew.
    if (std::exchange(switched_, false)) failedBefore_.insert(path);
  }
  /// Ten times a second: takes the selection over once an edit is done.
  void Look(const DeskSight& now);

 private:
  void CheckOrder(const QString& path, const QString& before, const QString& other, const QStringList& rows);
  void CheckRandom(const QString& path, const QString& other, const QStringList& rows);
  void CheckPreview(const QString& path);
  void CountMissed(const QString& path, const QString& other, const QStringList& rows, int most);

  SoakScene& scene_;
  const SoakBadFiles& bad_;
  bool edited_ = true;
  bool switched_ = true;  ///< on, and nothing was started since
  bool unknown_ = true;   ///< which row comes next
  int cursor_ = 0;
  QHash<QString, int> missed_;  ///< loads since the row was heard, while it could have been
  QSet<QString> heard_;         ///< in this round of a preview
  QSet<QString> failed_;        ///< in this round
  QSet<QString> failedBefore_;  ///< in the one before: a round begins unseen with those
};

}  // namespace kelvo::testing
