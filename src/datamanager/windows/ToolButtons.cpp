#include "datamanager/windows/ToolButtons.h"

#include "ui/Command.h"

#include <QHBoxLayout>
#include <QPushButton>

#include <algorithm>
#include <array>

namespace kelvo {
namespace {

/// How a tool's button looks, by the fixed name of the tool.
struct ToolLook {
  const char* id;
  const char* name;  ///< object name of the button
  std::optional<Icon> icon = {};
};
constexpr std::array kLooks{
    ToolLook{"Command13", "CmdAddFiles", Icon::Add},
    ToolLook{"Command5", "CmdEditTrack", Icon::Edit},
    ToolLook{"Command8", "CmdUnify", Icon::Volume},
    ToolLook{"Command25", "CmdCountBpm"},
    ToolLook{"Command26", "CmdSaveBpm", Icon::Save},
    ToolLook{"Command10", "CmdNewReference"},
    ToolLook{"Command9", "CmdRenameReference"},
    ToolLook{"Command2", "CmdDeleteReference"},
    ToolLook{"Command12", "CmdAddMultiple"},
    ToolLook{"Command15", "CmdDeleteMultiple"},
    ToolLook{"Command16", "CmdDeleteFromTracks"},
    ToolLook{"Command21", "CmdDeleteTrackGenre"},
    ToolLook{"Command23", "CmdDeleteTrackAlbum"},
    ToolLook{"Command24", "CmdDeleteTrackArtist"},
    ToolLook{"Command20", "CmdReports", Icon::Information},
    ToolLook{"Command29", "CmdShowInfo", Icon::Information},
    ToolLook{"Command30", "CmdPlaylistManager", Icon::Queue},
    ToolLook{"Command4", "CmdRipper", Icon::Disc},
    ToolLook{"Cmdimport", "CmdImport", Icon::Folder},
    ToolLook{"Command11", "CmdBurn", Icon::Disc},
};

ToolLook LookOf(const QString& id) {
  const auto found = std::find_if(kLooks.begin(), kLooks.end(),
                                  [&id](const ToolLook& look) { return id == QLatin1StringView(look.id); });
  return found == kLooks.end() ? ToolLook{"", "Cmd"} : *found;
}

}  // namespace

QPushButton* ToolButtons::Make(QWidget& owner, const QString& id) {
  const ManagerTool* tool = manager_.Tool(id);
  if (tool == nullptr) return nullptr;
  const ToolLook look = LookOf(id);
  const bool known = *look.id != '\0';
  QPushButton* button = AddCommand(owner, {.name = QString::fromLatin1(look.name) + (known ? QString() : id),
                                           .fixedName = id,
                                           .words = tool->words,
                                           .tooltip = tool->tooltip,
                                           .icon = look.icon,
                                           .run = [&manager = manager_, id] { manager.Run(id); }});
  entries_.push_back({id, button});
  return button;
}

QHBoxLayout* ToolButtons::MakeLine(QWidget& owner, std::initializer_list<const char*> ids) {
  auto* line = new QHBoxLayout;
  line->setSpacing(4);
  for (const char* id : ids) {
    if (QPushButton* button = Make(owner, QString::fromLatin1(id))) line->addWidget(button, 1);
  }
  return line;
}

std::vector<QString> ToolButtons::Left() const {
  std::vector<QString> left;
  for (const ManagerTool& tool : manager_.Tools()) {
    const bool made = std::any_of(entries_.begin(), entries_.end(),
                                  [&tool](const Entry& entry) { return entry.id == tool.id; });
    if (!made) left.push_back(tool.id);
  }
  return left;
}

void ToolButtons::Show() {
  const std::vector<Mref> picked = manager_.PickedTracks();
  for (const auto& [id, button] : entries_) {
    const ManagerTool& tool = *manager_.Tool(id);
    const QString words = id == QLatin1StringView("Command13") ? manager_.AddWords() : tool.words;
    if (button->text() != words) button->setText(words);
    Offer(*button, tool.whyOff ? tool.whyOff(picked) : QString());
  }
}

}  // namespace kelvo
