#include "info/windows/NoteEdit.h"

#include "ui/DroppedFiles.h"

#include <QScrollBar>
#include <QSignalBlocker>

namespace kelvo {

NoteEdit::NoteEdit(qsizetype mostLetters, QWidget* parent)
    : QPlainTextEdit(parent), mostLetters_(mostLetters) {
  setTabChangesFocus(true);
  verticalScrollBar()->setObjectName(QStringLiteral("NoteScroll"));
  verticalScrollBar()->setAccessibleName(tr("Place in the text"));
  setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  connect(this, &QPlainTextEdit::textChanged, this, &NoteEdit::Edited);
}

void NoteEdit::ShowText(const QString& text) {
  const QSignalBlocker shown(this);
  setPlainText(text);
}

bool NoteEdit::TakesFiles(const QDropEvent& event) const {
  return !isReadOnly() && !DroppedFiles(*event.mimeData()).isEmpty();
}

void NoteEdit::dragEnterEvent(QDragEnterEvent* event) {
  if (event->mimeData()->hasUrls()) {
    TakeAsCopy(*event, TakesFiles(*event));
  } else {
    QPlainTextEdit::dragEnterEvent(event);
  }
}

void NoteEdit::dragMoveEvent(QDragMoveEvent* event) {
  if (event->mimeData()->hasUrls()) {
    TakeAsCopy(*event, TakesFiles(*event));
  } else {
    QPlainTextEdit::dragMoveEvent(event);
  }
}

void NoteEdit::dropEvent(QDropEvent* event) {
  if (!event->mimeData()->hasUrls()) {
    QPlainTextEdit::dropEvent(event);
    return;
  }
  const bool takes = TakesFiles(*event);
  TakeAsCopy(*event, takes);
  if (takes) Q_EMIT FilesDropped(DroppedFiles(*event->mimeData()));
}

void NoteEdit::insertFromMimeData(const QMimeData* source) {
  // Counted before it is laid out: a line of ten million letters would take a minute.
  const qsizetype there = document()->characterCount() - textCursor().selectedText().size();
  if (source->text().size() + there > mostLetters_) {
    Q_EMIT TooLong();
  } else {
    QPlainTextEdit::insertFromMimeData(source);
  }
}

}  // namespace kelvo
