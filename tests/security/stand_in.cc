// Stands in for the client and for add-ons where thousands of calls are made: answers with the
// contents of /etc/config/page, or of .xml and .json beside it for the music services.

#include <cstdio>
#include <cstring>
#include <fstream>
#include <iostream>
#include <string>

int main(int argc, char** argv) {
  const char* output = "/dev/stdout";
  std::string answer = "/etc/config/page";
  for (int i = 1; i < argc; ++i) {
    if (std::strcmp(argv[i], "-o") == 0 && i + 1 < argc) {
      output = argv[++i];
    } else if (std::strcmp(argv[i], "-D") == 0 && i + 1 < argc) {
      std::ofstream(argv[++i]) << "HTTP/1.1 200 OK\r\n";
    } else if (std::strncmp(argv[i], "https://musicbrainz.org/", 24) == 0) {
      answer += ".xml";
    } else if (std::strncmp(argv[i], "https://webservice.fanart.tv/", 29) == 0) {
      answer += ".json";
    }
  }
  std::ofstream(output) << std::ifstream(answer).rdbuf();
  return 0;
}
