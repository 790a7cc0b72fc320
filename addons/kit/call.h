#pragma once

#include <stdexcept>
#include <string>

namespace quilp::kit {

/// The command line is none of an add-on's.
class WrongCall : public std::runtime_error {
 public:
  using std::runtime_error::runtime_error;
};

/// What an add-on is asked. Values that the verb does not have are empty.
struct Call {
  std::string verb{};
  std::string keyword{};    // -t
  std::string id{};         // -i
  std::string album{};      // -b
  std::string artist{};     // -a
  std::string path{};       // -f
  std::string language{};   // -l
  std::string output{};     // -o, the file of the document
  int count = 0;            // -n
  bool hasEpisode = false;  // -s and -e were given
  int season = 0;
  int episode = 0;

  /// The words that the user wrote, before the library cleaned them; empty where they are not
  /// known.
  std::string name{};
  int year = 0;  // that the user asks for; 0 for none
};

/// Reads a command line and the environment. A value may begin with "-". Throws WrongCall.
Call readCall(int argc, char** argv);

}  // namespace quilp::kit
