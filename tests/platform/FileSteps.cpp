#include "platform/FileSteps.h"

#include <fcntl.h>
#include <gtest/gtest.h>
#include <sys/stat.h>
#include <sys/syscall.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <utility>

namespace kelvo::testing {

namespace {

std::function<void(const char*)> listener;
bool flushes = true;

void Tell(const char* call) {
  static thread_local bool inside = false;
  if (!listener || inside) return;
  inside = true;
  listener(call);
  inside = false;
}

bool IsFile(int number) {
  struct stat facts {};
  return ::fstat(number, &facts) == 0 && (S_ISREG(facts.st_mode) || S_ISDIR(facts.st_mode));
}

}  // namespace

FileSteps::FileSteps(std::function<void(const char*)> before) {
  listener = std::move(before);
}

FileSteps::~FileSteps() {
  listener = nullptr;
}

NoFlushes::NoFlushes() {
  flushes = false;
}

NoFlushes::~NoFlushes() {
  flushes = true;
}

bool KilledBefore(int step, const std::function<void()>& work, Writes writes) {
  const pid_t child = ::fork();
  if (child == 0) {
    std::string last;
    const FileSteps steps([&step, &last, writes](const char* call) {
      const bool counted = writes == Writes::Each || last != "write" || last != call;
      last = call;
      if (counted && step-- == 0) ::raise(SIGKILL);
    });
    work();
    ::_exit(EXIT_SUCCESS);
  }
  int status = 0;
  EXPECT_EQ(::waitpid(child, &status, 0), child);
  EXPECT_TRUE(WIFSIGNALED(status) || WEXITSTATUS(status) == EXIT_SUCCESS);
  return WIFSIGNALED(status);
}

std::vector<std::string> StepsOf(const std::function<void()>& work) {
  std::vector<std::string> steps;
  const FileSteps watch([&steps](const char* call) {
    if (steps.empty() || steps.back() != call) steps.emplace_back(call);
  });
  work();
  return steps;
}

}  // namespace kelvo::testing

using kelvo::testing::flushes;
using kelvo::testing::IsFile;
using kelvo::testing::listener;
using kelvo::testing::Tell;

// These take the places of the system's own in this program.
extern "C" {

ssize_t write(int file, const void* bytes, size_t count) {
  if (!listener || !IsFile(file)) return ::syscall(SYS_write, file, bytes, count);
  Tell("write");
  return ::syscall(SYS_write, file, bytes, (count + 1) / 2);
}

int fsync(int file) {
  if (IsFile(file)) Tell("fsync");
  return flushes ? static_cast<int>(::syscall(SYS_fsync, file)) : 0;
}

int rename(const char* from, const char* to) noexcept {
  Tell("rename");
  return static_cast<int>(::syscall(SYS_rename, from, to));
}

int renameat2(int fromFolder, const char* from, int toFolder, const char* to, unsigned flags) noexcept {
  Tell("rename");
  return static_cast<int>(::syscall(SYS_renameat2, fromFolder, from, toFolder, to, flags));
}

int unlink(const char* path) noexcept {
  Tell("unlink");
  return static_cast<int>(::syscall(SYS_unlink, path));
}
}
