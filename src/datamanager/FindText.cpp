#include "datamanager/FindText.h"

#include "platform/ErrorLog.h"

namespace kelvo {

FindText::FindText(Prompter& prompter, const TrackList& list) : prompter_(prompter), list_(list) {
  for (const auto signal : {&RowFeed::RowsRemoved, &RowFeed::RowsReplaced})
    connect(&list_, signal, this, &FindText::Begin);
  connect(&list_, &TrackList::RowsSorted, this, &FindText::Begin);
}

QString FindText::Caption() const {
  if (hits_.empty()) return QStringLiteral("Find");
  return QStringLiteral("Show ") + QString::number(hit_ + 1) + QStringLiteral(" Of ") +
         QString::number(hits_.size());
}

void FindText::Begin() {
  if (hits_.empty()) return;
  hits_.clear();
  Q_EMIT Changed();
}

void FindText::Press() {
  if (search_.Running()) return;
  if (hits_.empty()) {
    search_ = Search();
  } else if (hit_ + 1 < hits_.size()) {
    Reach(hit_ + 1);
  } else {
    Begin();
  }
}

void FindText::Reach(std::size_t hit) {
  hit_ = hit;
  const int row = hits_[hit];
  // The last one is the end of the way: the next press asks anew.
  if (hit > 0 && hit + 1 == hits_.size()) hits_.clear();
  Q_EMIT Reached(row);
  Q_EMIT Changed();
}

Job<> FindText::Search() {
  try {
    Q_EMIT ClearSelections();
    const QString text = co_await prompter_.AskText(QStringLiteral("Find Text"),
                                                    QStringLiteral("Enter Search Text"), QString());
    if (text.isEmpty()) co_return;
    std::vector<int> rows = co_await list_.RowsHolding(text);
    if (rows.empty()) {
      Prompt message;
      message.text = QStringLiteral("No Matches Found");
      message.icon = PromptIcon::Information;
      prompter_.Tell(message);
      co_return;
    }
    hits_ = std::move(rows);
    Q_EMIT Found(hits_);
    Reach(0);
  } catch (...) {
    basHandleError(QStringLiteral(" dman find"), tr("The search could not go on."));
  }
}

}  // namespace kelvo
