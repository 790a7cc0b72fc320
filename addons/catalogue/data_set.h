#pragma once

#include <string>

// Where a server keeps data sets. Each has a schema of its own, with the tables of layout.h; this
// table says which there are, and the one with the highest number is in use. So a new one comes
// into use at one moment, and a lookup that is under way goes on in the one before, which the next
// import removes.

namespace quilp::catalogue {

inline constexpr char kDataSets[] = "quilp_catalogue.data_set";  // number, name, value

inline std::string schemaOf(const std::string& number) { return "quilp_catalogue_" + number; }

}  // namespace quilp::catalogue
