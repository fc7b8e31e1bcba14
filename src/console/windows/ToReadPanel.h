#pragma once

#include "console/decks/RequestsToRead.h"
#include "ui/Panel.h"

class QPlainTextEdit;
class QPushButton;

namespace kelvo {

/// "REQUESTS TO READ": the words of the requests on air, large, beside the decks; it takes no room while
/// there are none. Owned by the console window; GUI thread.
class ToReadPanel : public Panel {
  Q_OBJECT
 public:
  explicit ToReadPanel(RequestsToRead& requests, QWidget* parent = nullptr);

 private:
  void Show();

  RequestsToRead& requests_;
  QPlainTextEdit* words_;
  QPushButton* done_;
};

}  // namespace kelvo
