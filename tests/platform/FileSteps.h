#pragma once

#include <functional>
#include <string>
#include <vector>

namespace kelvo::testing {

/// While one lives, `before` is called before each call of the system that writes, flushes, renames or
/// removes a file, with the call's name, on the thread that makes it. Calls that `before` makes itself don't
/// count. A write takes half of what it is given, as on a disk that is nearly full, so that there are steps
/// within it.
class FileSteps {
 public:
  explicit FileSteps(std::function<void(const char* call)> before);
  ~FileSteps();
  FileSteps(const FileSteps&) = delete;
  FileSteps& operator=(const FileSteps&) = delete;
};

/// While one lives, nothing is flushed to the disk: for tests that write thousands of files, or kill a process
/// hundreds of times, which what is in memory survives.
class NoFlushes {
 public:
  NoFlushes();
  ~NoFlushes();
  NoFlushes(const NoFlushes&) = delete;
  NoFlushes& operator=(const NoFlushes&) = delete;
};

/// How the writes of a file are counted: each, or those in a row as one, where it is known that a half written
/// file is nobody's and a process of its own for each would take too long.
enum class Writes { Each, InARow };

/// Does `work` in a process of its own, which is killed before its step number `step`, counted from 0.
/// Returns false when it came to its end before.
[[nodiscard]] bool KilledBefore(int step, const std::function<void()>& work, Writes writes = Writes::Each);

/// The steps of `work`, writes in a row as one.
[[nodiscard]] std::vector<std::string> StepsOf(const std::function<void()>& work);

}  // namespace kelvo::testing
