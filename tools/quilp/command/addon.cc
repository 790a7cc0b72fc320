#include "command/commands.h"

namespace quilp {

void addAddonCommands(Command& program) {
  Command& addon = program.add("addon", "Add-ons");
  addAddonCheck(addon);
  addAddonList(addon);
  addAddonEnable(addon);
  addAddonDisable(addon);
  addAddonTest(addon);
}

}  // namespace quilp
