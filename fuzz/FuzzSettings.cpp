#include "platform/SettingsText.h"

#include <cstdint>
#include <cstdlib>

using kelvo::SettingsText;

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  SettingsText text = SettingsText::FromBytes(bytes);
  if (text.ToBytes() != bytes) std::abort();

  // The bytes as a text of UTF-16, lone surrogates and all: it must come back from any place.
  const QString value(reinterpret_cast<const QChar*>(bytes.constData()), bytes.size() / 2);
  text.SetValue(value, value, value, value);
  const SettingsText again = SettingsText::FromBytes(text.ToBytes());
  if (again.ToBytes() != text.ToBytes() || again.Value(value, value, value) != value) std::abort();
  return 0;
}
