#pragma once

#include "audio/Spawned.h"

#include <QByteArray>
#include <QTemporaryDir>

#include <optional>

namespace kelvo::testing {

/// A sound server of this program's own, with the devices "Main" (the default one) and "Headphones", which
/// lead nowhere. While it lives, this process and those that it starts use no other.
class PrivateServer {
 public:
  PrivateServer();
  ~PrivateServer();
  PrivateServer(const PrivateServer&) = delete;
  PrivateServer& operator=(const PrivateServer&) = delete;

  /// Starts it, also after a Stop; it takes orders once it Answers.
  void Start();
  [[nodiscard]] bool Answers() const;
  [[nodiscard]] bool HasEnded() { return !server_ || server_->HasEnded(); }
  void Stop() { server_.reset(); }
  void Signal(int number) const { server_->Signal(number); }

  /// Gives `arguments` to the server's control program; returns whether it took them.
  bool Tell(const QByteArrayList& arguments) const;
  /// What the control program said last.
  [[nodiscard]] QByteArray Told() const;
  /// The words that load a device.
  [[nodiscard]] static QByteArrayList Device(const char* name);

 private:
  [[nodiscard]] QByteArray Place(const char* name) const;

  QTemporaryDir folder_;
  std::optional<Spawned> server_;
};

}  // namespace kelvo::testing
