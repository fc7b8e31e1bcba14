#include "platform/EndSignals.h"

#include "platform/ErrorLog.h"

#include <fcntl.h>
#include <unistd.h>

#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <system_error>

namespace kelvo {
namespace {

constexpr std::array kSignals{SIGTERM, SIGHUP, SIGINT};

/// A signal may come on any thread and in the middle of anything: all that its handler does is to write here.
std::array<int, 2> pipeEnds{-1, -1};
std::atomic<int> writeEnd{-1};
std::array<struct sigaction, kSignals.size()> before{};

void OnSignal(int /*signal*/) {
  const int error = errno;
  const char byte = 0;
  [[maybe_unused]] const ssize_t written = ::write(writeEnd.load(), &byte, 1);
  errno = error;
}

}  // namespace

EndSignals::EndSignals(std::function<void()> onAsked) {
  if (::pipe2(pipeEnds.data(), O_CLOEXEC | O_NONBLOCK) != 0) {
    throw Failure(QStringLiteral("Cannot make a pipe : ") +
                      QString::fromStdString(std::generic_category().message(errno)),
                  errno);
  }
  writeEnd = pipeEnds[1];
  notifier_.emplace(pipeEnds[0], QSocketNotifier::Read);
  connect(&*notifier_, &QSocketNotifier::activated, this, [onAsked = std::move(onAsked)] {
    char byte = 0;
    while (::read(pipeEnds[0], &byte, 1) == 1) {
    }
    onAsked();
  });
  for (std::size_t index = 0; index < kSignals.size(); ++index) {
    struct sigaction action {};
    action.sa_handler = OnSignal;
    action.sa_flags = static_cast<int>(SA_RESTART | SA_RESETHAND);
    ::sigaction(kSignals[index], nullptr, &before[index]);
    if (before[index].sa_handler != SIG_IGN) ::sigaction(kSignals[index], &action, nullptr);
  }
}

EndSignals::~EndSignals() {
  for (std::size_t index = 0; index < kSignals.size(); ++index) {
    ::sigaction(kSignals[index], &before[index], nullptr);
  }
  writeEnd = -1;
  notifier_.reset();
  for (const int end : pipeEnds) ::close(end);
}

}  // namespace kelvo
