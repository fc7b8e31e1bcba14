#pragma once

#include "ui/CommandButton.h"
#include "ui/ScalableIcon.h"

#include <QKeySequence>
#include <QString>

#include <functional>
#include <optional>

class QAction;

namespace kelvo {

/// A command of a window: all that its button is made of. A value.
struct Command {
  QString name;            ///< its object name
  QString fixedName = {};  ///< see SetNames
  QString words = {};      ///< on the button
  QString tooltip = {};    ///< the key is put behind it
  QKeySequence key = {};   ///< works wherever the focus is in the window; empty: none
  QString keyWords = {};   ///< shown in place of `key` where the key is handled elsewhere
  std::optional<Icon> icon = {};
  QString role = {};  ///< see Theme::SetRole
  std::function<void()> run = {};
};

/// Makes the button of a command, owned by `owner`, in whose window its key works.
CommandButton* AddCommand(QWidget& owner, const Command& command);

/// Offers a command, or takes it off: then the end of its tooltip says `whyOff`, in words for the operator. A
/// control that had the keyboard gets it back when it is offered again; until then the keyboard is nowhere,
/// so that no key works the control beside it.
void Offer(QWidget& control, const QString& whyOff);
/// The same for the entry of a menu.
void Offer(QAction& entry, const QString& whyOff);

}  // namespace kelvo
