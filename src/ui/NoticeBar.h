#pragma once

#include <QFrame>

#include <vector>

namespace kelvo {

/// One calm line of the console for facts that last ("Sound device lost: Main - playing on a silent clock").
/// Each fact has a key; the gravest and latest is shown, with the number of the others, and all of them in
/// the tooltip. Without a fact the line is empty but keeps its place: nothing on the desk moves under the
/// operator's hand. GUI thread.
class NoticeBar : public QFrame {
  Q_OBJECT
 public:
  enum class Severity { Information, Good, Warning, Critical };

  explicit NoticeBar(QWidget* parent = nullptr);

  /// Shows a fact, in place of the one of that key.
  void Show(const QString& key, Severity severity, const QString& text);
  /// The fact is over.
  void Clear(const QString& key);
  [[nodiscard]] QString Text() const;

  [[nodiscard]] QSize sizeHint() const override;
  [[nodiscard]] QSize minimumSizeHint() const override;

 protected:
  void paintEvent(QPaintEvent* event) override;

 private:
  struct Fact {
    QString key;
    Severity severity;
    QString text;
  };
  [[nodiscard]] const Fact* Foremost() const;
  void Changed();

  std::vector<Fact> facts_;
};

}  // namespace kelvo
