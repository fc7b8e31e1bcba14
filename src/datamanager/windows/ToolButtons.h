#pragma once

#include "datamanager/DataManager.h"

#include <QString>

#include <initializer_list>
#include <vector>

class QHBoxLayout;
class QPushButton;
class QWidget;

namespace kelvo {

/// The buttons of the tools that the join handed in, each at its place in the window. Owned by the window, in
/// front of whose parts it goes; GUI thread.
class ToolButtons {
 public:
  explicit ToolButtons(DataManager& manager) : manager_(manager) {}
  ToolButtons(const ToolButtons&) = delete;
  ToolButtons& operator=(const ToolButtons&) = delete;

  /// The button of a tool, made as a child of `owner`; none when the tool wasn't handed in.
  QPushButton* Make(QWidget& owner, const QString& id);
  /// A line with the buttons of these tools, as far as they were handed in.
  [[nodiscard]] QHBoxLayout* MakeLine(QWidget& owner, std::initializer_list<const char*> ids);
  /// Those that have no button yet.
  [[nodiscard]] std::vector<QString> Left() const;

  /// Offers what can be done now.
  void Show();

 private:
  struct Entry {
    QString id;
    QPushButton* button;
  };
  DataManager& manager_;
  std::vector<Entry> entries_;
};

}  // namespace kelvo
