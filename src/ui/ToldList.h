#pragma once

#include "ui/PromptBox.h"

#include <QListWidget>
#include <QPushButton>

#include <deque>

namespace kelvo {

/// Many messages in one window, the latest at the end, equal ones counted: shown for a storm of
/// errors instead of a desk full of boxes. It keeps the last 500 and says how many went before. Made and
/// owned by MessageBoxPrompter. GUI thread.
class ToldList : public QDialog {
  Q_OBJECT
 public:
  explicit ToldList(const QString& title);

  void Add(const Prompt& prompt, int times);
  [[nodiscard]] int Count() const { return static_cast<int>(rows_.size()); }
  [[nodiscard]] const QLabel& Head() const { return head_; }

 private:
  struct Row {
    QString text;
    int times;
  };
  void Describe(int row);

  std::deque<Row> rows_;
  int dropped_ = 0;
  QVBoxLayout column_{this};
  QLabel head_{this};
  QListWidget list_{this};
  QDialogButtonBox buttonBox_{this};
};

}  // namespace kelvo
