#pragma once

#include "console/windows/ScopeView.h"
#include "ui/ToolWindow.h"

namespace kelvo {

/// The scope of the desk, for its window. Owned with it; GUI thread.
struct ScopeOfDesk {
  struct Services {
    Scope& scope;
  };
  explicit ScopeOfDesk(Services services) : scope(services.scope) {}
  Scope& scope;
};

/// "Scope": the scope in any size, also beside a console that has no room for it. GUI thread.
class ScopeWindow : public ToolWindow {
  Q_OBJECT
 public:
  explicit ScopeWindow(ScopeOfDesk& desk);

  void TakeKeys() override { view_.setFocus(); }

 private:
  ScopeView view_;
};

}  // namespace kelvo
