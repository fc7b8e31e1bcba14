#pragma once

#include "platform/Prompter.h"
#include "ui/Form.h"
#include "ui/ToolWindow.h"

class QPushButton;

namespace kelvo {

/// A window to fill in: a form over OK and Cancel. OK saves and closes, and is off while a field has a
/// message; Cancel gives up what was typed; any other way to close asks first when something was. GUI thread.
class FormWindow : public ToolWindow {
  Q_OBJECT
 public:
  FormWindow(const Look& look, Prompter& prompter);

  /// "Save Changes ?": Yes saves, No gives up, Cancel keeps it open.
  [[nodiscard]] Job<bool> MayClose() override;

 protected:
  [[nodiscard]] Form& Fields() { return *form_; }
  /// Sets the fields' messages. Called at each change, and after the fields were added by ShowState.
  virtual void Check() {}
  /// Keeps what is in the fields; false when that failed, which it has reported.
  [[nodiscard]] virtual bool Save() = 0;
  void ShowState();
  void Enter() override;

 private:
  [[nodiscard]] bool Keep();

  Prompter& prompter_;
  Form* form_;
  QPushButton* ok_;
};

}  // namespace kelvo
