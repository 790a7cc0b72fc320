#pragma once

#include <CLI/CLI.hpp>
#include <string>

namespace quilp {

/// A decimal number, whatever zeros stand in front: a release name's "08" is eight.
CLI::Option* addNumber(CLI::App* command, const std::string& name, int& number,
                       const std::string& description);

/// "-n N", how many results are wanted.
void addCount(CLI::App* command, int& count);

}  // namespace quilp
