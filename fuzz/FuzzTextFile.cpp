#include "platform/TextFile.h"

#include <cstdint>
#include <cstdlib>

using kelvo::TextFile;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  const TextFile file = TextFile::FromBytes(bytes);
  if (file.ToBytes() != bytes) std::abort();

  // A new file of the same lines says the same, in whatever encoding it must be.
  const TextFile again = TextFile::FromBytes(TextFile(file.Lines()).ToBytes());
  if (again.Lines() != file.Lines()) std::abort();

  // So does one in which a line was emptied and another added.
  TextFile changed = file;
  changed.SetLine(file.Count() / 2, QString());
  changed.Append(QStringLiteral("last"));
  if (TextFile::FromBytes(changed.ToBytes()).Lines() != changed.Lines()) std::abort();
  return 0;
}
