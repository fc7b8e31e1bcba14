#pragma once

#include "platform/RowStore.h"
#include "ui/KeyList.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

namespace kelvo {

/// The keys of the console, read from its menus and controls. Owned with its window; GUI thread.
class KeysOfDesk {
 public:
  struct Services {
    const QWidget& console;
  };
  explicit KeysOfDesk(Services services) : console_(services.console) {}

  [[nodiscard]] const RowStore<KeyLine>& Rows() const { return rows_; }
  void Read();

 private:
  const QWidget& console_;
  RowStore<KeyLine> rows_;
};

/// "Keys": what the console's keys do. GUI thread.
class KeysWindow : public ToolWindow {
  Q_OBJECT
 public:
  explicit KeysWindow(KeysOfDesk& keys);

  void TakeKeys() override { list_.Table().setFocus(); }

 protected:
  void Refresh() override { keys_.Read(); }

 private:
  KeysOfDesk& keys_;
  RowModel<KeyLine> model_;
  ListPanel list_;
};

}  // namespace kelvo
