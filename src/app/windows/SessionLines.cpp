#include "app/windows/SessionLines.h"

#include "console/Console.h"
#include "console/windows/SessionWindow.h"
#include "database/GroupElement.h"
#include "playlists/windows/PlaylistWindow.h"

#include <QCoreApplication>

namespace kelvo {
namespace {

struct Text {
  Q_DECLARE_TR_FUNCTIONS(WindowLines)
};

/// What is saved of a session, and the form that saves it.
class SavedSession {
 public:
  SavedSession(Console& desk, PlaylistMode mode)
      : desk_(desk), mode_(mode), tracks_(std::make_shared<SessionRows>(desk.Tracks())) {}

  void Take(std::vector<SessionEvent> tracks) const { tracks_->Replace(std::move(tracks)); }
  [[nodiscard]] QString Id() const {
    return mode_ == PlaylistMode::SaveGroupSession ? QStringLiteral("PlaylistSaveGroupSession")
                                                   : QStringLiteral("PlaylistSaveSession");
  }

  [[nodiscard]] WindowLine Line(const WindowHost& host,
                                const std::function<PlaylistServices()>& forPlaylists) const {
    WindowLine line{.id = Id(),
                    .childForm = true,
                    .busyQuestion = Text::tr("Playlists Are Still Being Worked On !\r\nStop That And Quit ?"),
                    .place = QStringLiteral("PlaySave")};
    line.make = [self = *this, host, forPlaylists, place = line.place] {
      return std::make_unique<Hosted<PlaylistWindow, PlaylistManager>>(
          host, place,
          PlaylistManager::Services{.playlists = forPlaylists(),
                                    .mode = self.mode_,
                                    .rows = [self] { return self.Rows(); },
                                    .name = [self] { return self.Name(); }});
    };
    return line;
  }

 private:
  [[nodiscard]] std::vector<SaveRow> Rows() const {
    std::vector<SaveRow> rows;
    for (const SessionEvent& track : tracks_->Events()) {
      if (track.Track == Mref::None) continue;
      rows.push_back({track.Description, desk_.Tracks().TrackPaths(track.Track),
                      RenumberedLine(track.Arguments, track.Track)});
    }
    return rows;
  }
  [[nodiscard]] QString Name() const {
    return QStringLiteral("Session ") +
           desk_.GetServices().loop.Now().toString(QStringLiteral("dd-MM-yyyy HH-mm-ss"));
  }

  Console& desk_;
  PlaylistMode mode_;
  std::shared_ptr<SessionRows> tracks_;
};

}  // namespace

std::vector<WindowLine> SessionLines(Console& desk, const WindowHost& host,
                                     const std::function<PlaylistServices()>& forPlaylists,
                                     const std::function<void(const QString& id)>& open) {
  const SavedSession group(desk, PlaylistMode::SaveGroupSession);
  const SavedSession standard(desk, PlaylistMode::SaveSession);
  WindowLine line{.id = WindowId::kSession,
                  .menu = DeskMenu::Desk,
                  .startsGroup = true,
                  .words = Text::tr("&Session List..."),
                  .key = QStringLiteral("Ctrl+H"),
                  .whyClosed = [&desk] { return desk.WhyNoSession(); },
                  .childForm = true,
                  .place = QStringLiteral("Session")};
  WindowHost ownSection = host;
  ownSection.section = QStringLiteral("SesionStartup");
  line.make = [&desk, host = ownSection, place = line.place, group, standard, open] {
    const Console::Services& have = desk.GetServices();
    SessionReview::Services services{.loop = have.loop,
                                     .disks = desk.SlowDisks(),
                                     .prompter = have.prompter,
                                     .catalogue = have.catalogue,
                                     .session = desk.Session(),
                                     .archive = desk.Archive(),
                                     .began = desk.SessionStart().date(),
                                     .settings = desk.Settings(),
                                     .openSave = {}};
    services.openSave = [group, standard, open](SessionSave save, std::vector<SessionEvent> tracks) {
      const SavedSession& form = save == SessionSave::Group ? group : standard;
      form.Take(std::move(tracks));
      open(form.Id());
    };
    return std::make_unique<Hosted<SessionWindow, SessionReview>>(host, place, std::move(services));
  };
  return {std::move(line), group.Line(host, forPlaylists), standard.Line(host, forPlaylists)};
}

}  // namespace kelvo
