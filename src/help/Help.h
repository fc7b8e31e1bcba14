#pragma once

#include "help/Manual.h"
#include "platform/RowStore.h"

#include <QObject>

namespace kelvo {

/// A line of the contents, or of what was found.
struct HelpRow {
  int page = 0;
  QString title;
  QString excerpt = {};
  bool operator==(const HelpRow&) const = default;
};

/// "Help": the place in the manual that is open, the way there and back, and what is listed beside it: the
/// contents, or the pages in which words were found. Owned beside its window; logic thread.
class Help : public QObject {
  Q_OBJECT

 public:
  struct Services {
    Manual manual;
    /// Opens a window of the program by its id.
    std::function<void(const QString& id)> open = [](const QString&) {};
  };
  explicit Help(Services services);

  [[nodiscard]] const Manual& Book() const { return services_.manual; }
  [[nodiscard]] const ManualPlace& Place() const { return place_; }
  /// The page that is open; none where there is no manual.
  [[nodiscard]] const ManualPage* Page() const;
  [[nodiscard]] const RowStore<HelpRow>& Rows() const { return rows_; }
  [[nodiscard]] const QString& Words() const { return words_; }

  void Open(const ManualPlace& place);
  /// A link of the present page, as it is written: to a page, a heading, or a window ("window:Import").
  /// Others lead nowhere.
  void Follow(const QString& link);
  /// What was asked for from outside: the id of a window, or "topic:" and its number.
  void OpenFor(const QString& wish);
  [[nodiscard]] bool CanGoBack() const { return !back_.empty(); }
  [[nodiscard]] bool CanGoForward() const { return !forward_.empty(); }
  void Back();
  void Forward();
  void Contents() { Open({QStringLiteral("index")}); }
  /// Lists the pages with these words; empty: all.
  void Find(const QString& words);

 Q_SIGNALS:
  /// Another place is open.
  void Moved();

 private:
  void ListRows();

  Services services_;
  ManualPlace place_{QStringLiteral("index")};
  std::vector<ManualPlace> back_;
  std::vector<ManualPlace> forward_;
  QString words_;
  RowStore<HelpRow> rows_;
};

}  // namespace kelvo
