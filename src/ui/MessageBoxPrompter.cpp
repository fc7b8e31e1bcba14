#include "ui/MessageBoxPrompter.h"

#include "ui/PromptBox.h"
#include "ui/ToldList.h"

#include <QApplication>
#include <QFileDialog>
#include <QKeyEvent>
#include <QPushButton>
#include <QScreen>
#include <QWindow>

#include <algorithm>

namespace kelvo {
namespace {

constexpr std::size_t mostBoxes = 3;

QWindow* WindowOf(QWidget* widget) {
  return widget ? widget->window()->windowHandle() : nullptr;
}

/// In the middle of `above`, a step further for each box that is up, and whole on the screen.
void Place(QWidget& box, QWidget* above, int step) {
  if (!box.testAttribute(Qt::WA_Resized)) box.adjustSize();
  const QScreen* screen = above ? above->screen() : QGuiApplication::primaryScreen();
  const QRect room = screen->availableGeometry();
  const QPoint middle = above ? above->frameGeometry().center() : room.center();
  QRect place(QPoint(), box.size());
  place.moveCenter(middle + QPoint(step, step));
  place.moveRight(std::min(place.right(), room.right()));
  place.moveBottom(std::min(place.bottom(), room.bottom()));
  place.moveTopLeft({std::max(place.left(), room.left()), std::max(place.top(), room.top())});
  box.move(place.topLeft());
}

/// The window of the program that an event was sent to.
QWidget* WindowAt(QObject* watched) {
  if (auto* widget = qobject_cast<QWidget*>(watched)) return widget->window();
  if (!watched->isWindowType()) return nullptr;
  for (QWidget* each : QApplication::topLevelWidgets()) {
    if (each->windowHandle() == watched) return each;
  }
  return nullptr;
}

/// Whether the window system keeps `window` in front of `box`, as it does with the help that was asked for
/// there: it takes hands and keys of its own.
bool IsInFrontOf(const QWidget& window, const QWidget& box) {
  const QWindow* each = window.windowHandle();
  while (each != nullptr && each != box.windowHandle()) each = each->transientParent();
  return each != nullptr && &window != &box;
}

bool Answers(const QKeyEvent& key) {
  const bool answer =
      key.key() == Qt::Key_Return || key.key() == Qt::Key_Enter || key.key() == Qt::Key_Escape;
  return answer && !(key.modifiers() & ~Qt::KeypadModifier);
}

void AnswerBox(QDialog& box, int key) {
  if (key == Qt::Key_Escape) {
    box.reject();
    return;
  }
  auto* chosen = qobject_cast<QPushButton*>(box.focusWidget());
  for (QPushButton* each : box.findChildren<QPushButton*>()) {
    if (!chosen && each->isDefault()) chosen = each;
  }
  if (chosen) chosen->click();
}

}  // namespace

/// A box's time on the screen: when it ends, by an answer or because the job was cancelled, the boxes above
/// it belong to the window behind it again.
class MessageBoxPrompter::Lease {
 public:
  Lease(MessageBoxPrompter& prompter, QDialog& box) : prompter_(prompter), box_(box) {}
  ~Lease() { prompter_.Leave(box_); }
  Lease(const Lease&) = delete;
  Lease& operator=(const Lease&) = delete;

 private:
  MessageBoxPrompter& prompter_;
  QDialog& box_;
};

MessageBoxPrompter::MessageBoxPrompter(std::function<QWidget*()> parent, QString programTitle)
    : parent_(std::move(parent)), programTitle_(std::move(programTitle)) {
  // Of the whole application: where a key arrives is the window system's choice, and not always the box.
  qApp->installEventFilter(this);
}

MessageBoxPrompter::~MessageBoxPrompter() = default;

const QString& MessageBoxPrompter::TitleOf(const Prompt& prompt) const {
  return prompt.title.isEmpty() ? programTitle_ : prompt.title;
}

// A box has no parent widget: its life is its owner's here, even when the window behind it goes first. It is
// only tied to that window for the window system, which keeps it in front and, when modal, holds the window's
// input.
void MessageBoxPrompter::Stand(QDialog& box) {
  QWidget* above = QApplication::activeModalWidget();
  if (!above && parent_) above = parent_();
  box.winId();
  box.windowHandle()->setTransientParent(WindowOf(above));
  const bool message = box.testAttribute(Qt::WA_ShowWithoutActivating);
  Place(box, above ? above->window() : nullptr, message ? static_cast<int>(told_.size()) * 24 : 0);
  std::erase_if(boxes_, [&box](const auto& each) { return !each || each == &box; });
  boxes_.emplace_back(&box);
}

void MessageBoxPrompter::Leave(QDialog& box) {
  std::erase(questions_, &box);
  const QWindow* leaving = box.windowHandle();
  QWindow* window = parent_ ? WindowOf(parent_()) : nullptr;
  const auto move = [&](QWidget* each) {
    QWindow* own = each ? each->windowHandle() : nullptr;
    if (own && leaving && own->transientParent() == leaving) own->setTransientParent(window);
  };
  for (const Told& each : told_) move(each.box.get());
  move(gathered_.get());
}

Job<int> MessageBoxPrompter::Run(QDialog& box, bool onLockedScreen) {
  const Lease lease(*this, box);
  // Queued, so that the job goes on, and deletes the box, outside of the box's own event. The click may still
  // be in the queue when the job is cancelled: it must find nothing then.
  const auto answer = std::make_shared<OneShot<int>>();
  connect(
      &box, &QDialog::finished, this,
      [waiting = std::weak_ptr(answer)](int result) {
        if (const auto shot = waiting.lock()) shot->Set(result);
      },
      Qt::QueuedConnection);
  if (!onLockedScreen) questions_.push_back(&box);
  if (onLockedScreen || !held_) Open(box);
  const int result = co_await answer->Wait();
  co_return result;
}

void MessageBoxPrompter::GiveHelp(PromptBox& box) {
  connect(&box, &PromptBox::HelpWanted, this, [this](int topic) {
    if (OnHelp) OnHelp(topic);
  });
}

Job<Answer> MessageBoxPrompter::Ask(Prompt prompt) {
  PromptBox box(prompt, TitleOf(prompt));
  GiveHelp(box);
  const int result = co_await Run(box, prompt.onLockedScreen);
  co_return static_cast<Answer>(result);
}

Job<AnswerForFiles> MessageBoxPrompter::AskForFiles(Prompt prompt) {
  PromptBox box(prompt, TitleOf(prompt));
  box.OfferForAll();
  AnswerForFiles answer;
  const int result = co_await Run(box);
  answer.answer = static_cast<Answer>(result);
  answer.forAll = box.ForAll();
  co_return answer;
}

Job<QString> MessageBoxPrompter::AskText(QString title, QString prompt, QString initial) {
  Prompt words;
  words.text = prompt;
  words.title = title;
  return AskLine(words, initial, false);
}

Job<QString> MessageBoxPrompter::AskSecret(QString title, QString prompt) {
  Prompt words;
  words.text = prompt;
  words.title = title;
  return AskLine(words, QString(), true);
}

Job<QString> MessageBoxPrompter::AskLine(Prompt words, QString initial, bool secret) {
  words.buttons = Buttons::OkCancel;
  PromptBox box(words, TitleOf(words));
  box.AskForLine(initial);
  if (secret) box.HideLetters();
  const int result = co_await Run(box, secret);
  co_return static_cast<Answer>(result) == Answer::Ok ? box.Line() : QString();
}

Job<std::optional<QString>> MessageBoxPrompter::PickFolder(QString title, QString initial) {
  QFileDialog box(nullptr, title.isEmpty() ? programTitle_ : title, initial);
  box.setFileMode(QFileDialog::Directory);
  box.setOption(QFileDialog::ShowDirsOnly);
  const int result = co_await Run(box);
  std::optional<QString> picked;
  if (result == QDialog::Accepted && !box.selectedFiles().isEmpty()) picked = box.selectedFiles().front();
  co_return picked;
}

Job<std::optional<QString>> MessageBoxPrompter::PickFile(QString title, QString initial, QString filter) {
  QFileDialog box(nullptr, title.isEmpty() ? programTitle_ : title, initial, filter);
  box.setFileMode(QFileDialog::ExistingFile);
  const int result = co_await Run(box);
  std::optional<QString> picked;
  if (result == QDialog::Accepted && !box.selectedFiles().isEmpty()) picked = box.selectedFiles().front();
  co_return picked;
}

void MessageBoxPrompter::Tell(Prompt prompt) {
  // A box that was just closed is still waiting to be dropped: a message must not be counted on it and lost.
  DropClosed();
  if (gathered_) {
    gathered_->Add(prompt, 1);
    return;
  }
  const auto same = std::find_if(told_.begin(), told_.end(),
                                 [&prompt](const Told& each) { return each.prompt.text == prompt.text; });
  if (same != told_.end()) {
    same->box->SetTimes(++same->times);
    return;
  }
  if (told_.size() == mostBoxes) {
    Gather();
    gathered_->Add(prompt, 1);
    return;
  }
  prompt.buttons = Buttons::Ok;
  auto box = std::make_unique<PromptBox>(prompt, TitleOf(prompt));
  GiveHelp(*box);
  box->setAttribute(Qt::WA_ShowWithoutActivating);
  connect(
      box.get(), &QDialog::finished, this, [this] { DropClosed(); }, Qt::QueuedConnection);
  ShowMessage(*box);
  told_.push_back({prompt, 1, std::move(box)});
}

void MessageBoxPrompter::DropClosed() {
  if (held_) return;
  std::erase_if(told_, [](const Told& each) { return !each.box->isVisible(); });
  if (gathered_ && !gathered_->isVisible()) gathered_.reset();
}

void MessageBoxPrompter::Gather() {
  gathered_ = std::make_unique<ToldList>(programTitle_);
  gathered_->setAttribute(Qt::WA_ShowWithoutActivating);
  connect(
      gathered_.get(), &QDialog::finished, this, [this] { DropClosed(); }, Qt::QueuedConnection);
  for (const Told& each : std::exchange(told_, {})) gathered_->Add(each.prompt, each.times);
  ShowMessage(*gathered_);
}

void MessageBoxPrompter::Open(QDialog& box) {
  Stand(box);
  box.open();
  box.raise();
  box.activateWindow();
}

void MessageBoxPrompter::ShowMessage(QDialog& box) {
  if (held_) return;
  Stand(box);
  box.show();
}

void MessageBoxPrompter::HoldBack(bool held) {
  if (!held_) DropClosed();
  held_ = held;
  if (held) {
    for (QDialog* box : questions_) box->hide();
    for (const Told& each : told_) each.box->hide();
    if (gathered_) gathered_->hide();
    return;
  }
  for (QDialog* box : questions_) Open(*box);
  for (const Told& each : told_) ShowMessage(*each.box);
  if (gathered_) ShowMessage(*gathered_);
}

QDialog* MessageBoxPrompter::Front() const {
  const auto front = std::find_if(boxes_.rbegin(), boxes_.rend(),
                                  [](const auto& each) { return each && each->isVisible(); });
  return front == boxes_.rend() ? nullptr : front->data();
}

void MessageBoxPrompter::TellActive(QObject* window) {
  const auto box = std::find_if(boxes_.begin(), boxes_.end(),
                                [window](const auto& each) { return each.data() == window; });
  if (box != boxes_.end()) {
    std::rotate(box, box + 1, boxes_.end());
    return;
  }
  // Not every window manager knows that a window behind a question takes no keys. A menu is no such window.
  QWidget* const question = QApplication::activeModalWidget();
  if (!question || question == window || QApplication::activePopupWidget()) return;
  if (!IsInFrontOf(*static_cast<QWidget*>(window), *question)) question->activateWindow();
}

bool MessageBoxPrompter::GiveToFront(const QWidget& window, QKeyEvent& key) {
  QDialog* const front = Front();
  const bool other = front && front != &window;
  // An open menu or list of choices has the keys, and so has a dialog of another kind that holds its window.
  const bool ours = std::any_of(boxes_.begin(), boxes_.end(),
                                [&window](const auto& each) { return each.data() == &window; });
  const bool holds = QApplication::activePopupWidget() || (window.isModal() && !ours) ||
                     (front && !ours && IsInFrontOf(window, *front));
  if (!other || holds || !Answers(key)) return false;
  // Accepted, it comes as a key, and is no shortcut of the window behind.
  key.accept();
  // Done here: sent on, the key would be looked up among those shortcuts again.
  if (key.type() == QEvent::KeyPress && !key.isAutoRepeat()) AnswerBox(*front, key.key());
  return true;
}

bool MessageBoxPrompter::eventFilter(QObject* watched, QEvent* event) {
  switch (event->type()) {
    case QEvent::WindowActivate:
      if (watched->isWidgetType() && static_cast<QWidget*>(watched)->isWindow()) TellActive(watched);
      return false;
    case QEvent::ShortcutOverride:
    case QEvent::KeyPress:
    case QEvent::KeyRelease:
      break;
    default:
      return false;
  }
  const QWidget* window = WindowAt(watched);
  return window && GiveToFront(*window, *static_cast<QKeyEvent*>(event));
}

}  // namespace kelvo
