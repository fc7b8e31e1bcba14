#include "encoding/cWavReader.h"

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

using kelvo::cWavReader;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const int file = ::memfd_create("fuzz", 0);
  if (file < 0 || ::write(file, data, size) != static_cast<ssize_t>(size)) std::abort();
  cWavReader reader;
  reader.SetFileName(QStringLiteral("/proc/self/fd/%1").arg(file));
  std::int64_t read = 0;
  if (reader.OpenFile()) {
    if (reader.AudioLength() > static_cast<std::int64_t>(size)) std::abort();
    while (reader.Read()) read += reader.ReadSize() * cWavReader::kBytesPerFrame;
    // All that the reader promised is there, and nothing more.
    if (read != reader.AudioLength() || reader.cWaveError() != cWavReader::NoError) std::abort();
  }
  ::close(file);
  return 0;
}
