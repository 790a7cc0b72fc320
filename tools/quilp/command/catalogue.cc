#include <string>

#include "command/commands.h"

namespace quilp {

void addCatalogueCommands(Command& program) {
  Command& catalogue = program.add("catalogue", "The offline catalogue of movies and TV shows");
  addCatalogueFetch(catalogue);
  addCatalogueImport(catalogue);
  addCatalogueInfo(catalogue);
  addCatalogueSearch(catalogue);
  addCatalogueShow(catalogue);
}

}  // namespace quilp
