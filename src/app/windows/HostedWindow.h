#pragma once

#include "app/WindowLine.h"

#include <QObject>
#include <QWidget>

namespace kelvo {

/// A window of the table on the screen: it comes up in front of the console, in its middle unless it has a
/// place of its own. Owned by the WindowTable; GUI thread.
class HostedWindow : public QObject, public BesideWindow {
  Q_OBJECT
 public:
  explicit HostedWindow(QWidget& console) : console_(console) {}

  [[nodiscard]] QString Name() const override { return name_; }
  [[nodiscard]] bool Is(const QObject* window) const override { return window == widget_; }
  void Show() override;
  void Hide() override { widget_->hide(); }
  void SetLocked(bool locked) override { widget_->setEnabled(!locked); }

  bool eventFilter(QObject* watched, QEvent* event) override;

 protected:
  /// Takes the window of the heir. Called once it is made.
  void Take(QWidget& widget);

 private:
  QWidget& console_;
  QWidget* widget_ = nullptr;
  QString name_;
};

/// Holds a window of the given type. Its work is busy when the window's Work() says so.
template <typename Window>
class Hosted final : public HostedWindow {
 public:
  template <typename... Arguments>
  explicit Hosted(QWidget& console, Arguments&&... arguments)
      : HostedWindow(console), window(std::forward<Arguments>(arguments)...) {
    Take(window);
  }

  void Show() override {
    HostedWindow::Show();
    if constexpr (requires { window.BeginTyping(); }) window.BeginTyping();
  }
  [[nodiscard]] bool Busy() override {
    if constexpr (requires { window.Work().Busy(); }) return window.Work().Busy();
    return false;
  }

  Window window;
};

}  // namespace kelvo
