#pragma once

namespace quilp {

/// How results are printed.
enum class Format { kXml, kJson, kTable, kCsv, kHtml };

}  // namespace quilp
