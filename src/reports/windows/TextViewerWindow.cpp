#include "reports/windows/TextViewerWindow.h"

#include "ui/Command.h"
#include "ui/ElidedLabel.h"
#include "ui/Line.h"
#include "ui/Naming.h"
#include "ui/SpokenText.h"

#include <QFileInfo>
#include <QFontDatabase>
#include <QPlainTextEdit>
#include <QVBoxLayout>

namespace kelvo {

TextViewerWindow::TextViewerWindow(TextView& view)
    : ToolWindow({.name = QStringLiteral("TextViewerWindow"),
                  .fixedName = QStringLiteral("TextViewer"),
                  .title = tr("Text Viewer"),
                  .letters = 104,
                  .lines = 34}),
      view_(view),
      file_(new ElidedLabel(this)),
      text_(new QPlainTextEdit(this)),
      close_(AddCommand(*this, {.name = QStringLiteral("CmdCloseViewer"),
                                .fixedName = QStringLiteral("Command1"),
                                .words = QStringLiteral("Close"),
                                .tooltip = tr("Closes the window, or ends the load that runs"),
                                .keyWords = tr("Escape"),
                                .icon = Icon::Close,
                                .run =
                                    [this] {
                                      if (view_.Loading()) {
                                        view_.Cancel();
                                      } else {
                                        close();
                                      }
                                    }})),
      print_(AddCommand(*this, {.name = QStringLiteral("CmdPrintText"),
                                .fixedName = QStringLiteral("Command2"),
                                .words = tr("Print..."),
                                .tooltip = tr("Tells how the file gets on paper"),
                                .key = QKeySequence(Qt::ALT | Qt::Key_P),
                                .run = [this] { view_.TellPrint(); }})) {
  SetNames(*file_, QStringLiteral("LblFile"));
  SetNames(*text_, QStringLiteral("TxtFile"));
  text_->setAccessibleName(tr("The text of the file"));
  text_->setToolTip(tr("The text can be picked and copied"));
  text_->setReadOnly(true);
  text_->setAcceptDrops(false);
  text_->setTabChangesFocus(true);
  text_->setLineWrapMode(QPlainTextEdit::NoWrap);
  // Its columns are made of blanks: they stand one below the other only where all letters are as wide.
  text_->setFont(QFontDatabase::systemFont(QFontDatabase::FixedFont));
  auto* layout = new QVBoxLayout(this);
  layout->addWidget(file_);
  layout->addWidget(text_, 1);
  layout->addLayout(Line({kRoom, print_, close_}));
  connect(&view_, &TextView::Changed, this, [this] { Show(); });
  Show();
}

void TextViewerWindow::TakeKeys() {
  text_->setFocus();
}

void TextViewerWindow::Show() {
  SetSpokenText(*file_, tr("File"), view_.Path());
  close_->setText(view_.Loading() ? QStringLiteral("Cancel") : QStringLiteral("Close"));
  Offer(*print_, view_.Path().isEmpty() ? tr("No file was opened") : QString());
  const QString shown = view_.Words().isEmpty() ? view_.Text() : view_.Words();
  if (text_->toPlainText() != shown) text_->setPlainText(shown);
}

}  // namespace kelvo
