#include "console/session/SessionToPlaylist.h"

#include "database/GroupElement.h"
#include "platform/Words.h"

#include <QCoreApplication>

#include <algorithm>

namespace kelvo {
namespace {

constexpr std::size_t kFewest = 3;

GroupElement ElementOf(const SessionEvent& event, int number) {
  return {.index = number,
          .seconds = static_cast<int>(Int(event.Time)),
          .track = event.Track,
          .deck = PlayerNumber(event.OnDeck),
          .fade = event.FadeType,
          .speed = event.Speed,
          .code = event.Code,
          .position = event.Pos,
          .length = event.Length};
}

/// Tracks that have left the catalogue have no number: their files tell them apart.
bool SameTrack(const SessionEvent& one, const SessionEvent& other) {
  return one.Track == other.Track && (one.Track != Mref::None || one.Path == other.Path);
}

}  // namespace

QString GapsRefusal() {
  return QStringLiteral(
      "Group Playlists Can Only Be Saved In Consecutive Blocks\r\n"
      " Please Reselect, Ensuring There are No Gaps in your Selections !");
}

PromptHelp GapsHelp() {
  constexpr int kTopic = 23100;
  return {kTopic, QCoreApplication::translate(
                      "SessionToPlaylist",
                      "A group playlist plays a stretch of the session again as it was, so no row of it may "
                      "be missing. Click the row at which the first track was loaded, then hold Shift and "
                      "click the last row of the stretch.")};
}

QString WhyNotSaved(const std::vector<SessionEvent>& rows, const std::vector<int>& picked, SessionSave save) {
  if (picked.size() < kFewest)
    return QStringLiteral("A Minimum Of 3 Tracks Are Required to Create A Playlist !");
  if (save == SessionSave::Standard) return {};
  if (rows[static_cast<std::size_t>(picked.front())].Code != SessionCode::Loaded)
    return QStringLiteral("The First Element of Your Selections Must be LOAD Track !");
  const auto gap =
      std::adjacent_find(picked.begin(), picked.end(), [](int one, int next) { return next != one + 1; });
  return gap == picked.end() ? QString() : GapsRefusal();
}

std::vector<SessionArguments> ArgumentsOf(const std::vector<SessionEvent>& rows,
                                          const std::vector<int>& picked, SessionSave save, int delta) {
  const auto event = [&rows](int row) -> const SessionEvent& { return rows[static_cast<std::size_t>(row)]; };
  std::vector<SessionArguments> all;
  int number = 1;
  for (auto load = picked.begin(); load != picked.end(); ++load) {
    if (event(*load).Code != SessionCode::Loaded) continue;
    std::vector<GroupElement> elements{ElementOf(event(*load), number++)};
    QString fade;
    for (auto each = load + 1; each != picked.end(); ++each) {
      const SessionEvent& later = event(*each);
      if (!SameTrack(later, event(*load))) continue;
      if (save == SessionSave::Group) {
        if (later.Code == SessionCode::Loaded) break;
        elements.push_back(ElementOf(later, number++));
      } else if (later.Code == SessionCode::FadeStarted) {
        fade = later.FadeNumber() + QLatin1Char(',') + later.SpeedWords() + QLatin1Char(',') +
               QString::number(delta);
        break;
      }
    }
    all.push_back({*load, save == SessionSave::Group ? PrintGroupLine(elements) : fade});
  }
  return all;
}

}  // namespace kelvo
