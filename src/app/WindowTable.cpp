#include "app/WindowTable.h"

#include "console/DataManagerAccess.h"
#include "console/desk/DeskMenu.h"

#include <QPointer>
#include <QStringList>

#include <algorithm>

namespace kelvo {

WindowTable::WindowTable(Services services, std::vector<WindowLine> lines)
    : services_(std::move(services)),
      lines_(std::move(lines)),
      children_(services_.loop),
      windows_(lines_.size()) {}

WindowTable::~WindowTable() {
  Close();
}

QString WindowTable::WhyClosed(const WindowLine& line) const {
  const DeskFacts facts = services_.facts();
  if (facts.locked) return tr("The screen is locked");
  if (line.guard.catalogue && !facts.catalogueLoaded) return tr("The catalogue is not loaded yet");
  if (line.guard.idleDesk && !facts.whyBusy.isEmpty()) return facts.whyBusy;
  return line.whyClosed ? line.whyClosed() : QString();
}

void WindowTable::Open(const QString& id, const QStringList& files) {
  const auto line =
      std::find_if(lines_.begin(), lines_.end(), [&id](const WindowLine& each) { return each.id == id; });
  if (line == lines_.end()) return;
  const auto index = static_cast<std::size_t>(line - lines_.begin());
  if (!line->guard.password || !WhyClosed(*line).isEmpty()) {
    OpenGuarded(index, files);
    return;
  }
  services_.access.Enter([self = QPointer(this), index, files] {
    if (self) self->OpenGuarded(index, files);
  });
}

void WindowTable::OpenGuarded(std::size_t index, const QStringList& files) {
  const WindowLine& line = lines_[index];
  if (services_.facts().locked) return;
  // The desk may have gone on air while the password was typed.
  if (const QString refusal = WhyClosed(line); !refusal.isEmpty()) {
    Prompt message;
    message.text = refusal;
    message.icon = PromptIcon::Information;
    services_.prompter.Tell(message);
    return;
  }
  std::unique_ptr<BesideWindow>& window = windows_[index];
  if (!window) {
    window = line.make();
    window->OnHelp = [this, asked = line.id] { Open(WindowId::kHelp, {asked}); };
    window->OnLeft = [this, form = window.get()] { children_.Closed(*form); };
  }
  if (line.childForm) {
    TellPutAway(line, *window);
    children_.ShowChild(*window);
  } else {
    window->Show();
  }
  if (!files.isEmpty()) window->TakeFiles(files);
}

void WindowTable::TellPutAway(const WindowLine& line, const BesideWindow& window) {
  const ChildForm* other = children_.CurrentChild();
  if (!line.putsAway || other == nullptr || other == &window) return;
  for (std::size_t index = 0; index < lines_.size(); ++index) {
    if (windows_[index].get() != other) continue;
    QString words = lines_[index].words.section(QLatin1Char('\t'), 0, 0);
    words.remove(QLatin1Char('&')).remove(QStringLiteral("..."));
    const QString told = line.putsAway(other->Name(), words);
    if (!told.isEmpty()) services_.prompter.Tell({told, {}});
  }
}

void WindowTable::TakeDrop(const QStringList& files, const QString& otherwise) {
  for (const WindowLine& line : lines_) {
    if (line.takesDrop && line.takesDrop(files)) return;
  }
  Open(otherwise, files);
}

void WindowTable::SetLocked(bool locked) {
  for (const auto& window : windows_) {
    if (window) window->SetLocked(locked);
  }
}

Job<bool> WindowTable::MayClose() {
  QStringList asked;
  for (std::size_t index = 0; index < lines_.size(); ++index) {
    Prompt question;
    question.text = lines_[index].busyQuestion;
    // What was asked for one window holds for all that ask the same.
    if (!windows_[index] || !windows_[index]->Busy() || asked.contains(question.text)) continue;
    asked.append(question.text);
    question.buttons = Buttons::YesNo;
    question.icon = PromptIcon::Exclamation;
    const Answer answer = co_await services_.prompter.Ask(question);
    if (answer != Answer::Yes) co_return false;
  }
  for (const auto& window : windows_) {
    if (!window) continue;
    const bool may = co_await window->MayClose();
    if (!may) co_return false;
  }
  co_return true;
}

void WindowTable::Close() {
  for (const auto& window : windows_) {
    if (window) window->Hide();
  }
}

bool WindowTable::Owns(const QObject* window) const {
  return window != nullptr && std::any_of(windows_.begin(), windows_.end(),
                                          [window](const auto& each) { return each && each->Is(window); });
}

}  // namespace kelvo
