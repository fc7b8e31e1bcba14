#include "console/session/SessionLine.h"

#include <cstdint>
#include <cstdlib>

using kelvo::SessionLine;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  const auto line = SessionLine::Parse(bytes);
  if (!line) return 0;
  const QByteArray written = line->Print();
  if (written.count('\n') != 1) std::abort();
  const auto again = SessionLine::Parse(written.chopped(1));
  if (!again || again->Print() != written) std::abort();
  return 0;
}
