#include "database/TrackInfo.h"

#include <cstdint>
#include <cstdlib>

using kelvo::TrackInfo;
namespace InfoFields = kelvo::InfoFields;

namespace {

/// What was read of a field and set is read again, and no other line moves.
template <typename Value>
void CheckField(const TrackInfo& info, const kelvo::InfoField<Value>& field) {
  TrackInfo changed = info;
  changed.Set(field, info.Get(field));
  const Value once = changed.Get(field);
  changed.Set(field, once);
  if (!(changed.Get(field) == once)) std::abort();
  for (int line = 0; line < kelvo::kFixedInfoLines; ++line) {
    const auto each = static_cast<kelvo::InfoLine::Line>(line);
    if (each != field.line && changed.Text(each) != info.Text(each)) std::abort();
  }
  if (changed.Comments() != info.Comments()) std::abort();
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
  const QByteArray bytes(reinterpret_cast<const char*>(data), static_cast<qsizetype>(size));
  const TrackInfo info(kelvo::TextFile::FromBytes(bytes));
  if (info.ToBytes() != bytes) std::abort();
  if (info.Get(InfoFields::Artists).Text() != info.Text(kelvo::InfoLine::Artists)) std::abort();

  CheckField(info, InfoFields::Categories);
  CheckField(info, InfoFields::ReleaseDate);
  CheckField(info, InfoFields::Bpm);
  CheckField(info, InfoFields::PlayMode);
  CheckField(info, InfoFields::FadePosition);
  CheckField(info, InfoFields::FadeSpeed);
  CheckField(info, InfoFields::EndStyle);
  CheckField(info, InfoFields::GainRecord);
  CheckField(info, InfoFields::DurationSeconds);

  TrackInfo commented = info;
  commented.SetComments(QString::fromUtf8(bytes));
  commented.AddComment(QStringLiteral("last"));
  if (commented.Comments().last() != QStringLiteral("last")) std::abort();
  return 0;
}
