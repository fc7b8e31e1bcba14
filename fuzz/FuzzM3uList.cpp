#include "playlists/M3uList.h"

#include <cstdint>
#include <cstdlib>

using kelvo::M3uList;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  const QString folder = QStringLiteral("/lists");
  const M3uList read = M3uList::FromBytes(bytes, folder);
  // What was read from anywhere is written so that it is read again as the same.
  if (M3uList::FromBytes(read.ToBytes(folder), folder).entries != read.entries) std::abort();
  return 0;
}
