#pragma once

#include "console/PlayQueue.h"
#include "platform/Job.h"

#include <QObject>

#include <memory>
#include <vector>

class QWidget;

namespace kelvo {

class Console;
class ConsoleWindow;
class JingleImportWindow;
class ScanWindow;
class SearchWindow;
class TransferWindow;
class UtilityWindow;

/// The windows that stand beside the console: made when they are first asked for, kept, and raised when asked
/// for again. They take no hand while the screen is locked, and go before the console does. Owned by the
/// program's entry; GUI thread.
class DeskWindows : public QObject {
  Q_OBJECT
 public:
  DeskWindows(Console& console, ConsoleWindow& window);
  /// Takes them off the screen; each writes its place.
  void Close();
  /// Closes them. What still runs in one is stopped: a file that is being copied stays where it was.
  ~DeskWindows() override;

  /// Whether `window` is one of them.
  [[nodiscard]] bool Owns(const QWidget* window) const;

 private:
  void OpenImport();
  void OpenTransfer();
  void OpenUtility();
  void OpenJingles();
  void OpenSearch();
  void ShowLock();
  [[nodiscard]] bool Busy() const;
  /// Whether the desk may close: asks when music is on its way.
  [[nodiscard]] Job<bool> MayClose();
  [[nodiscard]] std::vector<QWidget*> Windows() const;

  Console& console_;
  ConsoleWindow& window_;
  std::unique_ptr<ScanWindow> import_;
  std::unique_ptr<TransferWindow> transfer_;
  std::unique_ptr<UtilityWindow> utility_;
  std::unique_ptr<JingleImportWindow> jingles_;
  std::unique_ptr<SearchWindow> search_;
  JobList jobs_;
};

}  // namespace kelvo
