#pragma once

#include <CLI/CLI.hpp>

// Each adds its commands to the program; a command's callback stores the exit status.

namespace quilp {

void addMovieCommands(CLI::App& app, int& status);
void addTVCommands(CLI::App& app, int& status);
void addKaraokeCommand(CLI::App& app, int& status);
void addMusicCommands(CLI::App& app, int& status);
void addKeywordCommand(CLI::App& app, int& status);
void addScanCommand(CLI::App& app, int& status);
void addExplainCommands(CLI::App& app, int& status);
void addAddonCommands(CLI::App& app, int& status);

// Parts of the "addon" command.
void addAddonCheck(CLI::App* addon, int& status);
void addAddonList(CLI::App* addon, int& status);

}  // namespace quilp
