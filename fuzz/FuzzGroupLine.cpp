#include "database/GroupElement.h"

#include <cstdint>
#include <cstdlib>

using namespace kelvo;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QString line = QString::fromLatin1(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  const auto elements = ParseGroupLine(line);
  if (!elements) return 0;
  // What was read is written so that it is read again as the same, in whatever order it was.
  const QString written = PrintGroupLine(*elements);
  const auto again = ParseGroupLine(written);
  if (!again || PrintGroupLine(*again) != written) std::abort();
  std::vector<GroupElement> sorted = *again;
  Sort(sorted, ElementOrder::Run);
  if (sorted.size() != elements->size()) std::abort();
  return 0;
}
