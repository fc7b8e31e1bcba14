#pragma once

#include "console/session/SessionFile.h"
#include "console/session/SessionList.h"
#include "console/session/SessionToPlaylist.h"
#include "platform/Disks.h"
#include "platform/Prompter.h"
#include "platform/Setting.h"

#include <functional>

namespace kelvo {

/// A day with sessions.
struct SessionDay {
  QDate day;
  [[nodiscard]] QString Words() const;
};

/// "Session Info": what was done to the decks, in the present session and on earlier days, and the playlists
/// that are made of it. Owned beside its window; logic thread.
class SessionReview : public QObject {
  Q_OBJECT
 public:
  struct Services {
    EventLoop& loop;
    Disks& disks;
    Prompter& prompter;
    const Catalogue& catalogue;
    SessionList& session;
    SessionArchive archive;  ///< its folder is empty: nothing is kept of earlier sessions
    QDate began;             ///< the day on which the present list began
    ProgramSettings settings;
    /// Shows the form that saves these rows: each loads a track, its Arguments are what is kept.
    std::function<void(SessionSave, std::vector<SessionEvent> tracks)> openSave;
  };
  enum class View { Current, Earlier };

  explicit SessionReview(Services services);

  [[nodiscard]] QString Title() const;
  /// What the list has to say of itself; empty: nothing.
  [[nodiscard]] QString Label() const;
  [[nodiscard]] View Shown() const { return shown_; }
  void Show(View view);

  [[nodiscard]] const RowStore<SessionDay>& Days() const { return days_; }
  /// The row of the day that is shown; -1 for none.
  [[nodiscard]] int ChosenDay() const;
  void ChooseDay(int row);
  /// The files are being read.
  [[nodiscard]] bool Listing() const { return listing_.Running(); }
  /// Reads the earlier days anew, where they are shown.
  void Refresh();

  [[nodiscard]] const SessionRows& Rows(View view) const;
  /// "Clear Entries": asks first. What is kept of the day stays.
  void ClearEntries();
  /// "Group" and "Standard", of these rows of the list that is shown.
  void Save(SessionSave save, const std::vector<int>& picked);

 Q_SIGNALS:
  void Changed();
  /// These rows of the list that is shown are to be picked, and no others.
  void RowsToPick(const std::vector<int>& rows);

 private:
  [[nodiscard]] Job<> RunClear();
  [[nodiscard]] Job<> RunList();
  [[nodiscard]] Job<> ReadDays();
  [[nodiscard]] Job<> ReadEvents();
  void Tell(const QString& words);

  Services services_;
  View shown_ = View::Current;
  RowStore<SessionDay> days_;
  SessionRows earlier_;
  QDate day_;  ///< whose events are shown
  QString trouble_;
  Job<> clearing_;
  Job<> listing_;
};

}  // namespace kelvo
