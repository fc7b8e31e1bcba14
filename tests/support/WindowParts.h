#pragma once

#include <QWidget>

namespace kelvo::testing {

/// Fails unless the parts of a window that is shown (controls, and labels with words) are inside it side by
/// side, a button has room for its words, each control has a name and something for a screen reader, and a
/// label with a mnemonic leads to its field.
void ExpectWellLaidOut(const QWidget& window);

}  // namespace kelvo::testing
