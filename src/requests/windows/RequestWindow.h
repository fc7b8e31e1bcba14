#pragma once

#include "requests/Requests.h"
#include "ui/ListPanel.h"
#include "ui/ToolWindow.h"

#include <array>
#include <memory>

class QLabel;
class QLineEdit;
class QPlainTextEdit;
class QPushButton;

namespace kelvo {

class Form;

/// "Request": who asks, for whom and what to say, with lists of names and messages to pick from. It stays
/// open for the next request. GUI thread.
class RequestWindow : public ToolWindow {
  Q_OBJECT
 public:
  explicit RequestWindow(Requests& requests);

  void TakeKeys() override;
  void TakeFiles(const QStringList& places) override;

 protected:
  void Refresh() override { requests_.ReadLists(); }
  void Leave() override { requests_.Lists().WriteOpenChanges(); }
  bool eventFilter(QObject* watched, QEvent* event) override;

 private:
  enum class Field { From, To, Message };
  /// A list of words with the panel that shows it.
  struct Shown {
    explicit Shown(WordList list, Requests& requests, QWidget* parent);
    RowModel<QString> model;
    ListPanel panel;
  };

  void BuildFields();
  void BuildCommands();
  void BuildLayout();
  [[nodiscard]] Shown& At(WordList list) { return *lists_[static_cast<std::size_t>(list)]; }
  [[nodiscard]] QString TextOf(Field field) const;
  void SetTextOf(Field field, const QString& text);
  /// The list whose picks go into the field: that in view, where it does.
  [[nodiscard]] WordList ListFor(Field field) const;
  /// The picked row of the list goes into the field.
  void Take(Field field);
  /// A row of a list goes into the field of its kind that was typed in last.
  void TakeRow(WordList list);
  void LimitMessage();
  void Add();
  void Clear();
  void Show();

  Requests& requests_;
  QLabel* track_;
  Form* names_;
  QLineEdit* from_ = nullptr;
  QLineEdit* to_ = nullptr;
  QPlainTextEdit* message_;
  std::array<std::unique_ptr<Shown>, kWordLists.size()> lists_;
  QPushButton* add_ = nullptr;
  QPushButton* exit_ = nullptr;
  QPushButton* takeFrom_ = nullptr;
  QPushButton* takeTo_ = nullptr;
  QPushButton* takeMessage_ = nullptr;
  QPushButton* addEntry_ = nullptr;
  QPushButton* removeEntry_ = nullptr;
  QLabel* outcome_;
  WordList inView_ = WordList::Males;
  WordList namesInView_ = WordList::Males;
  Field nameField_ = Field::From;  ///< that was typed in last
};

}  // namespace kelvo
