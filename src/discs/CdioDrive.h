#pragma once

#include "discs/DiscDrive.h"

#include <memory>

typedef struct _CdIo CdIo_t;
struct cdrom_drive_s;

namespace kelvo {

/// A drive or an image, read through libcdio; careful reading is that of libcdio-paranoia.
class CdioDrive final : public DiscDrive {
 public:
  CdioDrive(const QString& place, DriveBeatPtr beat);
  ~CdioDrive() override;

  [[nodiscard]] DiscToc ReadToc() override;
  void Read(int first, std::span<std::int16_t> target) override;
  [[nodiscard]] int ReadCarefully(int first, std::span<std::int16_t> target) override;
  void SetSpeed(int times) override;

  /// Makes every read faulty as the library's own tests do (its `paranoia_jitter_t`). For tests.
  void InjectFaults(int flags);

 private:
  struct Closer {
    void operator()(CdIo_t* disc) const;
    void operator()(cdrom_drive_s* sound) const;
  };
  [[nodiscard]] int EndOf(int number, bool audio) const;
  void TakeText(DiscToc& toc) const;
  /// Opened with the first read: a disc of data has none.
  [[nodiscard]] cdrom_drive_s& Sound();
  void Count() const;
  [[noreturn]] void FailUnread(int sector) const;

  QString place_;
  DriveBeatPtr beat_;
  std::unique_ptr<CdIo_t, Closer> disc_;
  std::unique_ptr<cdrom_drive_s, Closer> sound_;  ///< over `disc_`, goes first
  DiscToc toc_;
};

/// What is in a drive, asked of the system; what is in an image, of its file. Throws nothing.
[[nodiscard]] DiscState LookAtDisc(const QString& place);

}  // namespace kelvo
