#pragma once

#include <QString>

namespace kelvo {

class Prompter;

/// Whether a folder can hold a file of this name, with the ending that it gets; tells the operator in words
/// when it can't.
[[nodiscard]] bool CheckFileName(Prompter& prompter, const QString& name, const QString& ending = {});

}  // namespace kelvo
