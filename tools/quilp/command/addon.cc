#include "command/commands.h"

namespace quilp {

void addAddonCommands(CLI::App& app, int& status) {
  CLI::App* addon = app.add_subcommand("addon", "Add-on scrapers")->require_subcommand(1);
  addAddonCheck(addon, status);
  addAddonList(addon, status);
}

}  // namespace quilp
