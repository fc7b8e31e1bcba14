#include "app/CommandLine.h"
#include "app/windows/Program.h"
#include "app/windows/RenderCommand.h"
#include "ui/Theme.h"

#include <QApplication>

#include <cstdio>
#include <cstdlib>
#include <exception>
#include <optional>

namespace {

constexpr int kNotUnderstood = 2;

/// Answers what needs neither a display nor a desk. The exit code; none when the desk is wanted.
std::optional<int> Answered(int& argc, char** argv) {
  QStringList arguments;
  for (int index = 1; index < argc; ++index) arguments.append(QString::fromLocal8Bit(argv[index]));
  const kelvo::CommandLine line = kelvo::ReadCommandLine(arguments);
  switch (line.wish) {
    case kelvo::CommandLine::Wish::Help:
      std::fputs(qPrintable(kelvo::HelpText()), stdout);
      return EXIT_SUCCESS;
    case kelvo::CommandLine::Wish::Version:
      std::puts("kelvo " KELVO_VERSION);
      return EXIT_SUCCESS;
    case kelvo::CommandLine::Wish::Refused:
      std::fprintf(stderr, "kelvo: not understood: %s (kelvo --help tells what is)\n",
                   qPrintable(line.refused));
      return kNotUnderstood;
    case kelvo::CommandLine::Wish::Render: {
      const QCoreApplication application(argc, argv);
      return kelvo::RenderFromCommandLine(line.list, line.file);
    }
    case kelvo::CommandLine::Wish::Run:
      break;
  }
  return std::nullopt;
}

}  // namespace

int main(int argc, char** argv) {
  if (const std::optional<int> code = Answered(argc, argv)) return *code;
  QApplication application(argc, argv);
  QApplication::setApplicationName(QStringLiteral("kelvo"));
  QApplication::setApplicationVersion(QStringLiteral(KELVO_VERSION));
  QApplication::setDesktopFileName(QStringLiteral("kelvo"));
  QApplication::setQuitOnLastWindowClosed(false);
  kelvo::Theme::Apply(application);
  try {
    kelvo::Program program;
    program.Start();
    return QApplication::exec();
  } catch (const std::exception& failure) {
    std::fprintf(stderr, "kelvo: cannot start: %s\n", failure.what());
    return EXIT_FAILURE;
  }
}
