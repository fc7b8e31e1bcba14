#pragma once

#include <QString>

#include <sys/mman.h>
#include <unistd.h>

#include <cstdint>
#include <cstdlib>

/// A file that only this process sees, for readers that want a path.
class FileInMemory {
 public:
  FileInMemory(const std::uint8_t* data, std::size_t size) : descriptor_(::memfd_create("fuzz", 0)) {
    if (descriptor_ < 0 || ::write(descriptor_, data, size) != static_cast<ssize_t>(size)) std::abort();
  }
  ~FileInMemory() { ::close(descriptor_); }
  FileInMemory(const FileInMemory&) = delete;
  FileInMemory& operator=(const FileInMemory&) = delete;

  [[nodiscard]] QString Path() const { return QStringLiteral("/proc/self/fd/%1").arg(descriptor_); }

 private:
  int descriptor_;
};
