#pragma once

#include "console/browser/LibraryBrowser.h"
#include "ui/Panel.h"

#include <array>

class QLabel;

namespace kelvo {

/// What is being listed, and the button that stops it: shown over the library when a listing lasts. Owned by
/// the library's panel; GUI thread.
class ListingPanel : public Panel {
  Q_OBJECT
 public:
  ListingPanel(LibraryBrowser& browser, QWidget* parent);

  /// Shows the choices of the moment in the middle of the parent.
  void ShowChoices();

 private:
  LibraryBrowser& browser_;
  std::array<QLabel*, kStages.size()> names_;
};

}  // namespace kelvo
