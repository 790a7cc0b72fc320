#include "scan/report.h"

#include <json/writer.h>

#include <cerrno>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <system_error>

#include "ascii.h"
#include "scan/report_page.h"

namespace quilp {
namespace {

namespace fs = std::filesystem;

/// A path as a relative address: the browser must take every byte of it as it is.
std::string addressOf(const fs::path& path) {
  static constexpr char kDigits[] = "0123456789ABCDEF";
  std::string address;
  for (const char c : path.native()) {
    const auto byte = static_cast<unsigned char>(c);
    if (libquilp::isAlnum(byte) || c == '/' || c == '.' || c == '-' || c == '_') {
      address += c;
    } else {
      address += {'%', kDigits[byte >> 4], kDigits[byte & 15]};
    }
  }
  return address;
}

/// JSON inside a page: a title must not end the script that holds it.
std::string escaped(const std::string& json) {
  std::string text;
  for (const char c : json) {
    if (c == '<') {
      text += "\\u003c";
    } else {
      text += c;
    }
  }
  return text;
}

}  // namespace

ReportPage::ReportPage(std::string path) : path_(std::move(path)) {}

std::string ReportPage::pictureOf(const ScanRow& row) const {
  const fs::path file = row.file;
  const fs::path folder = fs::is_directory(file) ? file : file.parent_path();
  const std::string stem = fs::path(file).replace_extension().native();
  for (const fs::path& place :
       {fs::path(stem + "-poster.jpg"), fs::path(stem + "-thumb.jpg"), folder / "poster.jpg",
        folder / "folder.jpg", folder / "cover.jpg", folder.parent_path() / "poster.jpg"}) {
    std::error_code ignored;
    if (fs::is_regular_file(place, ignored)) {
      const fs::path from = fs::absolute(path_.empty() ? "page" : path_).parent_path();
      return addressOf(fs::absolute(place).lexically_relative(from));
    }
  }
  return {};
}

void ReportPage::add(const ScanRow& row) {
  Json::Value object = jsonOf(row);
  object["picture"] = pictureOf(row);
  Json::StreamWriterBuilder writer;
  writer["emitUTF8"] = true;
  writer["indentation"] = "";
  rows_ += (rows_.empty() ? "" : ",\n") + escaped(Json::writeString(writer, object));
}

void ReportPage::write() const {
  if (path_.empty()) {
    std::cout << kPageStart << rows_ << kPageEnd << std::flush;
    return;  // what comes after it tells whether that could be written
  }
  std::ofstream page(path_, std::ios::binary | std::ios::trunc);
  page << kPageStart << rows_ << kPageEnd;
  if (!page.flush()) {
    throw std::system_error(errno, std::generic_category(), "cannot write " + path_);
  }
}

}  // namespace quilp
