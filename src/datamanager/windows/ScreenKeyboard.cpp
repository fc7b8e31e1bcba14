#include "datamanager/windows/ScreenKeyboard.h"

#include "ui/Naming.h"

#include <QApplication>
#include <QGridLayout>
#include <QLineEdit>
#include <QPlainTextEdit>
#include <QPushButton>

namespace kelvo {
namespace {

const QStringList kRows{QStringLiteral("1234567890"), QStringLiteral("QWERTYUIOP"),
                        QStringLiteral("ASDFGHJKL'"), QStringLiteral("ZXCVBNM-&.")};

}  // namespace

ScreenKeyboard::ScreenKeyboard(QWidget& first, const QString& backName, QWidget* parent)
    : QWidget(parent), box_(&first) {
  setObjectName(QStringLiteral("ScreenKeyboard"));
  auto* layout = new QGridLayout(this);
  layout->setContentsMargins(0, 0, 0, 0);
  layout->setSpacing(3);
  const auto add = [this](const QString& name, const QString& fixedName, const QString& text,
                          const QString& accessible) {
    auto* key = new QPushButton(text, this);
    SetNames(*key, name, fixedName);
    key->setAccessibleName(accessible);
    key->setAutoRepeat(true);
    // The box that is typed into keeps the focus.
    key->setFocusPolicy(Qt::NoFocus);
    key->setSizePolicy(QSizePolicy::Ignored, QSizePolicy::Fixed);
    return key;
  };
  int number = 0;
  for (int row = 0; row < kRows.size(); ++row) {
    for (int column = 0; column < kRows[row].size(); ++column) {
      const QString letter = kRows[row].mid(column, 1);
      // Doubled, or it would be a mnemonic.
      const QString shown = letter == QStringLiteral("&") ? QStringLiteral("&&") : letter;
      QPushButton* key =
          add(QStringLiteral("Key") + letter, QStringLiteral("Command1_%1").arg(number++), shown, letter);
      connect(key, &QPushButton::clicked, this, [this, letter] { Type(letter); });
      layout->addWidget(key, row, column);
    }
  }
  const auto below = static_cast<int>(kRows.size());
  QPushButton* blank =
      add(QStringLiteral("KeySpace"), QStringLiteral("Command1_%1").arg(number), tr("Space"), tr("Space"));
  connect(blank, &QPushButton::clicked, this, [this] { Type(QStringLiteral(" ")); });
  layout->addWidget(blank, below, 0, 1, 7);
  QPushButton* back =
      add(QStringLiteral("KeyBackSpace"), backName, tr("Back Space"), tr("Back Space"));
  connect(back, &QPushButton::clicked, this, [this] { Back(); });
  layout->addWidget(back, below, 7, 1, 3);
  connect(qApp, &QApplication::focusChanged, this, [this](QWidget*, QWidget* now) {
    const bool text = qobject_cast<QLineEdit*>(now) != nullptr || qobject_cast<QPlainTextEdit*>(now) != nullptr;
    if (text && now->window() == window()) box_ = now;
  });
}

void ScreenKeyboard::Type(const QString& letter) {
  if (!box_ || !box_->isEnabled()) return;
  if (auto* line = qobject_cast<QLineEdit*>(box_)) line->insert(letter);
  if (auto* text = qobject_cast<QPlainTextEdit*>(box_)) text->insertPlainText(letter);
}

void ScreenKeyboard::Back() {
  if (!box_ || !box_->isEnabled()) return;
  if (auto* line = qobject_cast<QLineEdit*>(box_)) line->backspace();
  if (auto* text = qobject_cast<QPlainTextEdit*>(box_)) text->textCursor().deletePreviousChar();
}

}  // namespace kelvo
