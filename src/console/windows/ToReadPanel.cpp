#include "console/windows/ToReadPanel.h"

#include "ui/Command.h"
#include "ui/Naming.h"
#include "ui/Theme.h"

#include <QPlainTextEdit>
#include <QVBoxLayout>

#include <algorithm>

namespace kelvo {
namespace {

/// In lines of its large letters: more scrolls.
constexpr int kFewestLines = 3;
constexpr int kMostLines = 6;

}  // namespace

ToReadPanel::ToReadPanel(RequestsToRead& requests, QWidget* parent)
    : Panel(Group::Lists, tr("REQUESTS TO READ"), parent),
      requests_(requests),
      words_(new QPlainTextEdit(this)),
      done_(AddCommand(*this, {.name = QStringLiteral("CmdRequestRead"),
                               .words = tr("Read"),
                               .tooltip = tr("The words were read: they go off the desk"),
                               .key = QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_Return),
                               .icon = Icon::Check,
                               .run = [this] { requests_.Done(); }})) {
  setObjectName(QStringLiteral("RequestsToRead"));
  SetNames(*words_, QStringLiteral("TxtToRead"));
  words_->setReadOnly(true);
  words_->setAcceptDrops(false);
  words_->setTabChangesFocus(true);
  words_->setFont(Theme::Font(1.3, QFont::DemiBold));
  words_->setAccessibleName(tr("Requests to read"));
  words_->setToolTip(tr("What the listeners ask to be said with the track on air"));
  setSizePolicy(QSizePolicy::Preferred, QSizePolicy::Fixed);
  auto* layout = new QVBoxLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(4);
  layout->addWidget(words_);
  layout->addWidget(done_);
  connect(&requests_, &RequestsToRead::Changed, this, [this] { Show(); });
  Show();
}

void ToReadPanel::Show() {
  // Of two the titles tell which deck has which.
  const bool several = requests_.OnAir().size() > 1;
  QStringList texts;
  for (const RequestsToRead::Request& request : requests_.OnAir())
    texts.append(several ? request.title + QLatin1Char('\n') + request.words : request.words);
  const QString text =
      texts.join(QStringLiteral("\n\n")).replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
  if (text != words_->toPlainText()) words_->setPlainText(text);
  const int lines = std::clamp(static_cast<int>(text.count(QLatin1Char('\n'))) + 1, kFewestLines, kMostLines);
  words_->setFixedHeight(words_->fontMetrics().lineSpacing() * lines + words_->fontMetrics().height() / 2);
  setVisible(!requests_.OnAir().empty());
}

}  // namespace kelvo
