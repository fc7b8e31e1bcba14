#pragma once

#include <QString>

namespace kelvo {

/// The menus of the console, from left to right.
enum class DeskMenu { File, View, Library, Desk, Help };

/// Windows that a button of another window opens, by their id in the table of windows.
namespace WindowId {
inline const QString kImport = QStringLiteral("Import");
inline const QString kTransfer = QStringLiteral("Transfer");
inline const QString kJingles = QStringLiteral("Jingles");
inline const QString kTrackSearch = QStringLiteral("TrackSearch");
inline const QString kReports = QStringLiteral("Reports");
inline const QString kRequest = QStringLiteral("Request");
inline const QString kPlayEdit = QStringLiteral("PlayEdit");
inline const QString kTrackEditor = QStringLiteral("TrackEditor");
inline const QString kGroupEdit = QStringLiteral("GroupEdit");
inline const QString kPlaylistLoad = QStringLiteral("PlaylistLoad");
inline const QString kGeneratePlaylist = QStringLiteral("GeneratePlaylist");
inline const QString kSession = QStringLiteral("Session");
inline const QString kUnifyVolume = QStringLiteral("UnifyVolume");
inline const QString kCountBeats = QStringLiteral("CountBeats");
inline const QString kHelp = QStringLiteral("Help");
inline const QString kPlaylistSave = QStringLiteral("PlaylistSave");
}  // namespace WindowId

/// Opens the request of the track that the operator points at: a listener's wish.
inline const QString kRequestKey = QStringLiteral("Ctrl+W");

}  // namespace kelvo
