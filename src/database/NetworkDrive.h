#pragma once

#include "platform/Job.h"

#include <QString>

#include <optional>

namespace kelvo {

class EventLoop;
class Prompter;

/// The address that the system's mounting command takes for what a person types: "\\server\share" and
/// "//server/share" are shares of a Windows network, anything with "://" is an address already. Empty for
/// what is neither.
[[nodiscard]] QString NetworkAddress(const QString& typed);

/// "Map Network Drive": asks for the network path and its password, and mounts it. Gives the folder where it
/// can be looked through; none after a cancel or a failure, which was reported. A folder of this system that
/// is typed is taken as it is. `title` is the program's.
[[nodiscard]] Job<std::optional<QString>> MapNetworkDrive(EventLoop& loop, Prompter& prompter, QString title);

}  // namespace kelvo
