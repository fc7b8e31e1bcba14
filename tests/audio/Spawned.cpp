#include "audio/Spawned.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <csignal>
#include <vector>

namespace kelvo::testing {

namespace {

std::vector<char*> Pointers(QByteArrayList& words) {
  std::vector<char*> pointers;
  for (QByteArray& word : words) pointers.push_back(word.data());
  pointers.push_back(nullptr);
  return pointers;
}

}  // namespace

Spawned::Spawned(const QByteArrayList& command, const QByteArrayList& environment, const QByteArray& output) {
  // The last of a name that is named twice counts for none, so ours are left out where they are set anew.
  QByteArrayList variables = environment;
  for (char** each = environ; *each != nullptr; ++each) {
    const QByteArray variable(*each);
    const QByteArray name = variable.left(variable.indexOf('=') + 1);
    const auto sets = [&](const QByteArray& other) { return other.startsWith(name); };
    if (std::none_of(environment.begin(), environment.end(), sets)) variables << variable;
  }
  QByteArrayList words = QByteArrayList{"setpriv", "--pdeathsig", "KILL"} + command;
  posix_spawn_file_actions_t files;
  posix_spawn_file_actions_init(&files);
  posix_spawn_file_actions_addopen(&files, STDOUT_FILENO, output.isEmpty() ? "/dev/null" : output.constData(),
                                   O_WRONLY | O_CREAT | O_TRUNC, 0600);
  if (::posix_spawnp(&id_, "setpriv", &files, nullptr, Pointers(words).data(), Pointers(variables).data()) !=
      0)
    id_ = -1;
  posix_spawn_file_actions_destroy(&files);
}

Spawned::~Spawned() {
  Signal(SIGKILL);
  ExitCode();
}

void Spawned::Signal(int number) const {
  if (id_ > 0) ::kill(id_, number);
}

bool Spawned::HasEnded() {
  if (id_ > 0 && ::waitpid(id_, &status_, WNOHANG) == id_) id_ = -1;
  return id_ < 0;
}

int Spawned::ExitCode() {
  if (id_ > 0) ::waitpid(id_, &status_, 0);
  id_ = -1;
  return WIFEXITED(status_) ? WEXITSTATUS(status_) : -1;
}

}  // namespace kelvo::testing
