#pragma once

#include "libquilp.h"
#include "xml/xml_node.h"

namespace libquilp {

/// Fills the record from an add-on's document. Fields missing in the document stay unchanged; lists
/// are appended to.
void readSong(const XMLNode& document, KTV_ExtraData_t& info);

}  // namespace libquilp
