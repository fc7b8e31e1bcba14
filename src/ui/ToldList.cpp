#include "ui/ToldList.h"

#include "ui/ScalableIcon.h"
#include "ui/Theme.h"

#include <algorithm>

namespace kelvo {
namespace {

constexpr int most = 500;

QIcon SignOf(PromptIcon icon) {
  const Theme::Colours& colours = Theme::Palette();
  switch (icon) {
    case PromptIcon::Exclamation:
      return ScalableIcon(Icon::Warning, colours.amber);
    case PromptIcon::Critical:
      return ScalableIcon(Icon::Critical, Theme::Mix(colours.onAir, Qt::white, 0.2));
    case PromptIcon::Question:
      return ScalableIcon(Icon::Question, colours.accent);
    case PromptIcon::None:
    case PromptIcon::Information:
      break;
  }
  return ScalableIcon(Icon::Information, colours.accent);
}

}  // namespace

ToldList::ToldList(const QString& title) {
  setWindowTitle(title);
  setAccessibleName(title);
  setObjectName(QStringLiteral("ToldList"));
  list_.setObjectName(QStringLiteral("LstMessages"));
  head_.setFont(Theme::Font(1.1, QFont::DemiBold));
  list_.setAccessibleName(tr("Messages"));
  list_.setWordWrap(true);
  list_.setTextElideMode(Qt::ElideNone);
  list_.setSelectionMode(QAbstractItemView::NoSelection);
  list_.setVerticalScrollMode(QAbstractItemView::ScrollPerPixel);
  list_.setResizeMode(QListView::Adjust);
  list_.setSpacing(2);
  const int em = fontMetrics().height();
  list_.setIconSize(QSize(em * 5 / 4, em * 5 / 4));
  column_.setContentsMargins(em, em, em, em);
  column_.setSpacing(em * 3 / 4);
  column_.addWidget(&head_);
  column_.addWidget(&list_, 1);
  column_.addWidget(&buttonBox_);
  QPushButton* close = buttonBox_.addButton(tr("&Close All"), QDialogButtonBox::AcceptRole);
  close->setObjectName(QStringLiteral("CmdCloseAll"));
  close->setDefault(true);
  close->setFocus();
  connect(close, &QPushButton::clicked, this, &QDialog::accept);
  resize(em * 32, em * 18);
}

void ToldList::Add(const Prompt& prompt, int times) {
  const auto known =
      std::find_if(rows_.begin(), rows_.end(), [&](const Row& row) { return row.text == prompt.text; });
  if (known != rows_.end()) {
    known->times += times;
    Describe(static_cast<int>(known - rows_.begin()));
    return;
  }
  if (Count() == most) {
    rows_.pop_front();
    const std::unique_ptr<QListWidgetItem> oldest(list_.takeItem(0));
    ++dropped_;
  }
  rows_.push_back({prompt.text, times});
  auto item = std::make_unique<QListWidgetItem>(SignOf(prompt.icon), QString());
  item->setFlags(Qt::ItemIsEnabled);
  list_.addItem(item.release());
  Describe(Count() - 1);
  // It lays out every row: once for all the messages that come in this turn.
  QMetaObject::invokeMethod(&list_, &QListWidget::scrollToBottom, Qt::QueuedConnection);
  head_.setText(dropped_ == 0
                    ? tr("%1 messages").arg(Count())
                    : tr("%1 messages, the last %2 are shown").arg(Count() + dropped_).arg(Count()));
}

void ToldList::Describe(int row) {
  const Row& told = rows_.at(static_cast<std::size_t>(row));
  list_.item(row)->setText(told.times > 1 ? tr("%1  (%2 times)").arg(told.text).arg(told.times) : told.text);
}

}  // namespace kelvo
