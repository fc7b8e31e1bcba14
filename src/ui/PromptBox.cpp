#include "ui/PromptBox.h"

#include "ui/ScalableIcon.h"
#include "ui/Theme.h"

#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QScrollBar>
#include <QTextDocument>

#include <algorithm>
#include <cmath>
#include <optional>

namespace kelvo {
namespace {

struct Sign {
  Icon icon;
  QColor colour;
};

std::optional<Sign> SignOf(PromptIcon icon) {
  const Theme::Colours& colours = Theme::Palette();
  switch (icon) {
    case PromptIcon::None:
      break;
    case PromptIcon::Information:
      return Sign{Icon::Information, colours.accent};
    case PromptIcon::Question:
      return Sign{Icon::Question, colours.accent};
    case PromptIcon::Exclamation:
      return Sign{Icon::Warning, colours.amber};
    case PromptIcon::Critical:
      return Sign{Icon::Critical, Theme::Mix(colours.onAir, Qt::white, 0.2)};
  }
  return std::nullopt;
}

}  // namespace

PromptBox::PromptBox(const Prompt& prompt, const QString& title)
    : buttons_(prompt.buttons), safe_(prompt.safe), icon_(prompt.icon) {
  setWindowTitle(title);
  setAccessibleName(title);
  setAccessibleDescription(prompt.text);
  setWindowFlag(Qt::WindowContextHelpButtonHint, false);

  setObjectName(QStringLiteral("PromptBox"));
  text_.setObjectName(QStringLiteral("TxtMessage"));
  line_.setObjectName(QStringLiteral("TxtAnswer"));
  times_.setObjectName(QStringLiteral("LblTimes"));

  text_.setReadOnly(true);
  text_.setPlainText(prompt.text);
  text_.setAccessibleName(prompt.text);
  text_.setFrameShape(QFrame::NoFrame);
  text_.setStyleSheet(QStringLiteral("QTextEdit { background: transparent; border: none; padding: 0; }"));
  text_.setWordWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  text_.setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
  // The buttons keep the keys; the text is there for the mouse, and for copying.
  text_.setFocusPolicy(Qt::ClickFocus);
  text_.document()->setDocumentMargin(0);
  line_.hide();
  forAll_.hide();
  times_.hide();
  times_.setForegroundRole(QPalette::PlaceholderText);

  words_.addWidget(&text_);
  words_.addWidget(&line_);
  words_.addWidget(&forAll_);
  words_.addWidget(&times_);
  words_.addStretch();
  sign_.setVisible(SignOf(icon_).has_value());
  row_.addWidget(&sign_, 0, Qt::AlignTop);
  row_.addLayout(&words_, 1);
  column_.addLayout(&row_, 1);
  column_.addWidget(&buttonBox_);
  column_.setSizeConstraint(QLayout::SetFixedSize);
  AddButtons();
  if (prompt.help.topic != 0) AddHelp(prompt.help);
  FitText();
}

void PromptBox::AddHelp(const PromptHelp& help) {
  QPushButton* button = buttonBox_.addButton(tr("&Help"), QDialogButtonBox::HelpRole);
  button->setObjectName(QStringLiteral("CmdHelp"));
  button->setIcon(QIcon());
  button->setToolTip(tr("Help %1").arg(help.topic));
  connect(button, &QPushButton::clicked, this, [this, button, help] {
    button->setEnabled(false);
    text_.setPlainText(text_.toPlainText() + QStringLiteral("\n\n") + help.words);
    text_.setAccessibleName(text_.toPlainText());
    FitText();
    Q_EMIT HelpWanted(help.topic);
  });
}

QPushButton* PromptBox::AddButton(const QString& words, Answer answer, QDialogButtonBox::ButtonRole role) {
  QPushButton* button = buttonBox_.addButton(words, role);
  button->setObjectName(QStringLiteral("Cmd") + QString(words).remove(QLatin1Char('&')));
  button->setIcon(QIcon());
  button->setMinimumWidth(fontMetrics().averageCharWidth() * 12);
  connect(button, &QPushButton::clicked, this, [this, answer] { done(static_cast<int>(answer)); });
  if (answer != safe_ && buttonBox_.buttons().size() > 1) return button;
  button->setDefault(true);
  button->setFocus();
  return button;
}

void PromptBox::AddButtons() {
  const bool yesNo = buttons_ == Buttons::YesNo || buttons_ == Buttons::YesNoCancel;
  if (yesNo) {
    AddButton(tr("&Yes"), Answer::Yes, QDialogButtonBox::YesRole);
    AddButton(tr("&No"), Answer::No, QDialogButtonBox::NoRole);
  } else {
    AddButton(tr("&OK"), Answer::Ok, QDialogButtonBox::AcceptRole);
  }
  if (buttons_ == Buttons::OkCancel || buttons_ == Buttons::YesNoCancel) {
    AddButton(tr("&Cancel"), Answer::Cancel, QDialogButtonBox::RejectRole);
  }
}

void PromptBox::OfferForAll() {
  forAll_.setObjectName(QStringLiteral("ChkForAll"));
  forAll_.show();
  AddButton(tr("&Stop"), Answer::Stop, QDialogButtonBox::ActionRole);
}

void PromptBox::FitText() {
  const int em = fontMetrics().height();
  column_.setContentsMargins(em * 5 / 4, em * 5 / 4, em * 5 / 4, em);
  column_.setSpacing(em * 5 / 4);
  row_.setSpacing(em);
  words_.setSpacing(em / 2);
  if (const std::optional<Sign> sign = SignOf(icon_)) {
    sign_.setPixmap(IconPixmap(sign->icon, sign->colour, em * 5 / 2, devicePixelRatioF()));
  }

  const QRect room = screen() ? screen()->availableGeometry() : QRect(0, 0, 1024, 768);
  QTextDocument measured;
  measured.setDefaultFont(text_.font());
  measured.setDocumentMargin(0);
  measured.setPlainText(text_.toPlainText());
  QTextOption option;
  option.setWrapMode(QTextOption::WrapAtWordBoundaryOrAnywhere);
  measured.setDefaultTextOption(option);
  const int widest = std::min(em * 30, room.width() * 6 / 10);
  const int width = std::clamp(static_cast<int>(std::ceil(measured.idealWidth())) + 4, em * 14, widest);
  measured.setTextWidth(width);
  const int height = static_cast<int>(std::ceil(measured.size().height())) + 4;
  const int highest = room.height() / 2;
  const bool scrolls = height > highest;
  text_.setVerticalScrollBarPolicy(scrolls ? Qt::ScrollBarAlwaysOn : Qt::ScrollBarAlwaysOff);
  text_.setFixedSize(width + (scrolls ? text_.verticalScrollBar()->sizeHint().width() : 0),
                     std::min(height, highest));
}

void PromptBox::AskForLine(const QString& initial) {
  line_.setText(initial);
  line_.selectAll();
  line_.setAccessibleName(text_.toPlainText());
  line_.show();
  line_.setFocus();
  setFocusProxy(&line_);
}

void PromptBox::SetTimes(int times) {
  times_.setText(tr("Shown %1 times").arg(times));
  times_.setVisible(times > 1);
}

Answer PromptBox::ClosingAnswer() const {
  switch (buttons_) {
    case Buttons::Ok:
      return Answer::Ok;
    case Buttons::YesNo:
      return Answer::No;
    case Buttons::OkCancel:
    case Buttons::YesNoCancel:
      break;
  }
  return Answer::Cancel;
}

void PromptBox::reject() {
  done(static_cast<int>(ClosingAnswer()));
}

void PromptBox::keyPressEvent(QKeyEvent* event) {
  const bool plain = !(event->modifiers() & ~(Qt::ShiftModifier | Qt::KeypadModifier));
  const QString letter = event->text().toUpper();
  if (plain && letter.size() == 1 && letter.front().isLetter()) {
    for (QAbstractButton* each : buttonBox_.buttons()) {
      if (each->text().toUpper().contains(QLatin1Char('&') + letter)) {
        each->click();
        return;
      }
    }
  }
  QDialog::keyPressEvent(event);
}

void PromptBox::changeEvent(QEvent* event) {
  QDialog::changeEvent(event);
  if (event->type() == QEvent::FontChange) FitText();
}

}  // namespace kelvo
