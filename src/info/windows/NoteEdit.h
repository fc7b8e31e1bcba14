#pragma once

#include <QPlainTextEdit>
#include <QStringList>

namespace kelvo {

/// The text of a page. Files that are dropped on it are its owner's, and no more goes in than a text may
/// hold: a person who drops the wrong thing must not make the desk wait. GUI thread.
class NoteEdit : public QPlainTextEdit {
  Q_OBJECT
 public:
  /// `mostLetters`: what it may hold.
  NoteEdit(qsizetype mostLetters, QWidget* parent);

  /// Shows another text; that is no edit.
  void ShowText(const QString& text);

 Q_SIGNALS:
  void FilesDropped(const QStringList& files);
  /// The operator wants to put in more than it may hold.
  void TooLong();
  /// The operator changed the text.
  void Edited();

 protected:
  void dragEnterEvent(QDragEnterEvent* event) override;
  void dragMoveEvent(QDragMoveEvent* event) override;
  void dropEvent(QDropEvent* event) override;
  void insertFromMimeData(const QMimeData* source) override;

 private:
  [[nodiscard]] bool TakesFiles(const QDropEvent& event) const;

  qsizetype mostLetters_;
};

}  // namespace kelvo
