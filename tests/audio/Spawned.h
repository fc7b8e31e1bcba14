#pragma once

#include <QByteArrayList>

#include <sys/types.h>

namespace kelvo::testing {

/// A program that a test runs beside itself; it ends with this, and with the test program. Started by
/// posix_spawn, for the thread sanitizer loses count of locks in a process that has forked.
class Spawned {
 public:
  /// `command`: the program, found on the PATH, and its arguments. `environment`: "NAME=value" to set on top
  /// of ours. `output`: the file that takes its standard output; empty: dropped.
  explicit Spawned(const QByteArrayList& command, const QByteArrayList& environment = {},
                   const QByteArray& output = {});
  ~Spawned();
  Spawned(const Spawned&) = delete;
  Spawned& operator=(const Spawned&) = delete;

  void Signal(int number) const;
  [[nodiscard]] bool HasEnded();
  /// Waits for its end; returns its exit code, -1 where it has none.
  int ExitCode();

 private:
  pid_t id_ = -1;
  int status_ = -1;
};

}  // namespace kelvo::testing
