#include "help/windows/ManualView.h"

#include "help/Manual.h"
#include "ui/Theme.h"

#include <QImage>
#include <QScrollBar>
#include <QTextBlock>
#include <QTextDocument>

#include <algorithm>

namespace kelvo {

ManualView::ManualView(const QString& folder, QWidget* parent) : QTextBrowser(parent), folder_(folder) {
  setOpenLinks(false);
  // A bar that comes and goes would lay the page out twice.
  setVerticalScrollBarPolicy(Qt::ScrollBarAlwaysOn);
  verticalScrollBar()->setObjectName(QStringLiteral("ManualScroll"));
  verticalScrollBar()->setAccessibleName(tr("Place in the page"));
  document()->setDocumentMargin(fontMetrics().height());
  connect(this, &QTextBrowser::anchorClicked, this,
          [this](const QUrl& link) { Q_EMIT LinkFollowed(link.toString()); });
}

int ManualView::RoomForPictures() const {
  return std::max(viewport()->width() - static_cast<int>(2 * document()->documentMargin()) - 2, 100);
}

QVariant ManualView::loadResource(int type, const QUrl& name) {
  return type == QTextDocument::ImageResource ? QVariant(Picture(name.path())) : QVariant();
}

QImage ManualView::Picture(const QString& name) {
  const QImage picture(folder_ + QLatin1Char('/') + name);
  const int room = RoomForPictures();
  if (picture.width() <= room) return picture;
  narrow_ = true;
  QImage fitted =
      picture.scaledToWidth(static_cast<int>(room * devicePixelRatioF()), Qt::SmoothTransformation);
  fitted.setDevicePixelRatio(devicePixelRatioF());
  return fitted;
}

void ManualView::Lay() {
  narrow_ = false;
  laidFor_ = RoomForPictures();
  document()->setMarkdown(text_);
  // A document that is filled again keeps the pictures that it has loaded, in the size of before.
  for (const QString& name : pictures_) {
    document()->addResource(QTextDocument::ImageResource, QUrl(name), Picture(name));
  }
  document()->markContentsDirty(0, document()->characterCount());
  for (QTextBlock block = document()->begin(); block.isValid(); block = block.next()) {
    QTextCursor cursor(block);
    // Markdown packs its paragraphs: a reader wants air between them.
    QTextBlockFormat air;
    const bool heading = block.blockFormat().headingLevel() > 0;
    const bool picture = block.text().contains(QChar::ObjectReplacementCharacter);
    const double line = fontMetrics().height();
    air.setBottomMargin(block.textList() == nullptr ? line * 0.6 : line * 0.2);
    if (heading) air.setTopMargin(line * 0.8);
    if (!picture) air.setLineHeight(125, QTextBlockFormat::ProportionalHeight);
    cursor.mergeBlockFormat(air);
    if (!heading) continue;
    cursor.movePosition(QTextCursor::NextCharacter, QTextCursor::KeepAnchor);
    QTextCharFormat anchor;
    anchor.setAnchor(true);
    anchor.setAnchorNames({Manual::SlugOf(block.text())});
    cursor.mergeCharFormat(anchor);
  }
  Mark(words_);
}

void ManualView::ShowPage(const ManualPage& page, const QString& heading) {
  if (text_ != page.text) {
    text_ = page.text;
    pictures_ = Manual::LinksOf(page);
    pictures_.removeIf([](const QString& link) { return !link.endsWith(QLatin1StringView(".png")); });
    Lay();
  }
  if (heading.isEmpty()) {
    verticalScrollBar()->setValue(0);
  } else {
    scrollToAnchor(heading);
  }
}

void ManualView::Mark(const QString& words) {
  words_ = words;
  QList<QTextEdit::ExtraSelection> marks;
  QTextCharFormat format;
  format.setBackground(Theme::Palette().amber);
  format.setForeground(Qt::black);
  for (const QString& word : words.split(QLatin1Char(' '), Qt::SkipEmptyParts)) {
    for (QTextCursor at = document()->find(word); !at.isNull(); at = document()->find(word, at)) {
      QTextEdit::ExtraSelection mark;
      mark.cursor = at;
      mark.format = format;
      marks.append(mark);
    }
  }
  setExtraSelections(marks);
}

void ManualView::resizeEvent(QResizeEvent* event) {
  QTextBrowser::resizeEvent(event);
  const int room = RoomForPictures();
  if (text_.isEmpty() || room == laidFor_ || (!narrow_ && room > laidFor_)) return;
  const int place = verticalScrollBar()->value();
  Lay();
  verticalScrollBar()->setValue(place);
}

}  // namespace kelvo
