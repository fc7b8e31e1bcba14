#include "platform/ErrorLog.h"
#include "platform/ShellLink.h"

#include <cstdint>
#include <cstdlib>

using kelvo::ShellLink;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  try {
    const ShellLink link = ShellLink::FromBytes(bytes);
    const ShellLink again = ShellLink::FromBytes(link.ToBytes());
    if (again.targetPath != link.targetPath || again.arguments != link.arguments) std::abort();
  } catch (const kelvo::Failure&) {
    // Refusing is right; anything else that is thrown is a fault.
  }
  return 0;
}
