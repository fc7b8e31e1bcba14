#pragma once

#include <QString>
#include <QStringList>

namespace kelvo {

/// What the command line asks for.
struct CommandLine {
  enum class Wish { Run, Help, Version, Render, Refused };
  Wish wish = Wish::Run;
  QString refused = {};  ///< what is not understood
  QString list = {};     ///< what is to be rendered, and
  QString file = {};     ///< into what
};

/// Reads the arguments, without the program's name. Options of the window system, which Qt takes out of the
/// list when it starts (`-display`, `-session`...), are let through.
[[nodiscard]] CommandLine ReadCommandLine(const QStringList& arguments);

/// What `--help` prints.
[[nodiscard]] QString HelpText();

}  // namespace kelvo
