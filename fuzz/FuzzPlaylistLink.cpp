#include "database/PlaylistEntry.h"
#include "platform/ErrorLog.h"

#include <cstdint>
#include <cstdlib>

using kelvo::EntryFileName;
using kelvo::PlaylistLink;

namespace {

/// What a save makes of a name must be read back as an entry of that number.
void TryAsName(const QByteArray& bytes) {
  const EntryFileName read = EntryFileName::Parse(QString::fromUtf8(bytes));
  if (read.number < 0 || read.number > EntryFileName::kMostNumber) std::abort();
  if (read.number == 0) return;
  for (const QString& written : {read.Saved(), read.Renumbered()}) {
    if (EntryFileName::Parse(written).number != read.number || written.contains(QLatin1Char('/')))
      std::abort();
    if (written.toUtf8().size() > 255) std::abort();
  }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  try {
    (void)PlaylistLink::FromBytes(bytes);
  } catch (const kelvo::Failure&) {
    // Refusing is right; anything else that is thrown is a fault.
  }
  TryAsName(bytes);
  return 0;
}
