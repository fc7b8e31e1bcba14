#pragma once

#include <QDropEvent>
#include <QMimeData>
#include <QStringList>
#include <QUrl>

namespace kelvo {

/// The files and folders of this machine among what is dragged.
inline QStringList DroppedFiles(const QMimeData& data) {
  QStringList paths;
  for (const QUrl& url : data.urls()) {
    if (url.isLocalFile()) paths.append(url.toLocalFile());
  }
  return paths;
}

/// Answers a drag of files. Taken ones are copied, whatever the other program proposes: after a move it would
/// delete what is only read here.
inline void TakeAsCopy(QDropEvent& event, bool taken) {
  event.setDropAction(Qt::CopyAction);
  event.setAccepted(taken && !DroppedFiles(*event.mimeData()).isEmpty());
}

}  // namespace kelvo
