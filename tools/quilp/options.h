#pragma once

#include <CLI/CLI.hpp>
#include <string>
#include <vector>

namespace quilp {

/// A decimal number, whatever zeros stand in front: a release name's "08" is eight.
CLI::Option* addNumber(CLI::App* command, const std::string& name, int& number,
                       const std::string& description);

/// How results are printed.
enum class Format { kXml, kJson, kTable };

/// "--format", with the formats that a command knows; the first is what `format` starts with.
void addFormat(CLI::App* command, Format& format,
               const std::vector<Format>& known = {Format::kXml, Format::kJson, Format::kTable});

/// "-n N", how many results are wanted.
void addCount(CLI::App* command, int& count);

}  // namespace quilp
