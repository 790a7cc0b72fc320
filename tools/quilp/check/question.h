#pragma once

#include <string>
#include <vector>

namespace quilp {

/// An element that the library reads.
struct Element {
  std::string name;
  bool repeated;  // one element for each value
  bool actors;    // with a name and a role inside
};

/// A document as the library reads it.
struct Layout {
  const char* root;
  const char* entry;  // the element of one result; null where the root is the one result
  std::vector<Element> elements;  // none where the entry itself is the value
  std::vector<std::string> required;
  bool needsRoles = false;  // a missing role is an error, and not an empty one
  bool plainText = false;   // karaoke: values outside CDATA
};

Layout movieList();
Layout movie();
Layout showList();
Layout show();
Layout episode();
Layout albumList();
Layout artistAlbumList();
Layout artwork();
Layout song();

/// One request, as the library makes it: verb, option, a text that may be anybody's, and the rest.
struct Question {
  std::string name;
  std::vector<std::string> arguments;  // behind the program, in front of "-o FILE"
  Layout layout;
  std::string hint;      // the option that names something that has an answer
  bool guessed = false;  // nobody has named anything
  bool keyword = false;  // the text is cleaned before the add-on gets it
  std::string id{};      // that is asked for, where the document may tell it
};

inline constexpr std::size_t kTextArgument = 2;

}  // namespace quilp
