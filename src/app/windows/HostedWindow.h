#pragma once

#include "app/WindowLine.h"
#include "ui/ToolWindow.h"

#include <type_traits>

namespace kelvo {

class EventLoop;
class SettingsStore;

/// What every window beside the console needs. All outlive the windows.
struct WindowHost {
  QWidget& console;  ///< they come up in front of it
  EventLoop& loop;
  SettingsStore& settings;                      ///< keeps their places
  QString title;                                ///< of the program, for the settings
  QString section = QStringLiteral("Startup");  ///< of the settings, for their places
};

/// A window of the table on the screen: it comes up in front of the console, in its middle unless it has a
/// place of its own. Owned by the WindowTable; GUI thread.
class HostedWindow : public QObject, public BesideWindow {
  Q_OBJECT
 public:
  [[nodiscard]] QString Name() const override;
  [[nodiscard]] bool Is(const QObject* window) const override { return window == window_; }
  void Show() override;
  void Hide() override { window_->hide(); }
  void TakeFiles(const QStringList& places) override { window_->TakeFiles(places); }
  void SetLocked(bool locked) override { window_->setEnabled(!locked); }
  [[nodiscard]] Job<bool> MayClose() override { return window_->MayClose(); }

 protected:
  explicit HostedWindow(QWidget& console) : console_(console) {}
  /// Takes the window of the heir, once it is made.
  void Take(ToolWindow& window, const WindowHost& host, const QString& place);

 private:
  QWidget& console_;
  ToolWindow* window_ = nullptr;
};

/// A piece of work and the window that shows it. The window goes first.
template <typename Window, typename Work>
class Hosted final : public HostedWindow {
 public:
  Hosted(const WindowHost& host, const QString& place, typename Work::Services services)
      : HostedWindow(host.console), work(std::move(services)), window(MakeWindow(host.loop, work)) {
    Take(window, host, place);
  }

  [[nodiscard]] bool Busy() override {
    if constexpr (requires { work.Busy(); }) return work.Busy();
    return false;
  }

  Work work;
  Window window;

 private:
  static Window MakeWindow(EventLoop& loop, Work& work) {
    if constexpr (std::is_constructible_v<Window, EventLoop&, Work&>) {
      return Window(loop, work);
    } else {
      return Window(work);
    }
  }
};

}  // namespace kelvo
