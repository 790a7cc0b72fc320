#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>
#include <vector>

// Runs a fuzz target without the fuzzer: on every file of its corpus, on every start of it, and on
// random sequences of bytes and of its dictionary's words, which are the same in every run.

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace {

constexpr std::size_t kMostStarts = 1000;

void run(const std::string& input) {
  LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(input.data()), input.size());
}

/// The words of lines such as "\xEF\"x".
std::vector<std::string> wordsOf(const std::string& dictionary) {
  std::vector<std::string> words;
  std::ifstream lines(dictionary);
  for (std::string line; std::getline(lines, line);) {
    const std::size_t start = line.find('"') + 1;
    std::string word;
    for (std::size_t i = start; i > 0 && i + 1 < line.size(); ++i) {
      if (line[i] != '\\') {
        word += line[i];
      } else if (line[++i] == 'x') {
        word += static_cast<char>(std::strtol(line.substr(i + 1, 2).c_str(), nullptr, 16));
        i += 2;
      } else {
        word += line[i];
      }
    }
    words.push_back(word);
  }
  return words;
}

}  // namespace

/// NAME_corpus CORPUS DICTIONARY SEQUENCES
int main(int argc, char** argv) {
  if (argc < 4) {
    return 2;
  }
  for (const auto& entry : std::filesystem::directory_iterator(argv[1])) {
    std::ifstream file(entry.path(), std::ios::binary);
    const std::string input{std::istreambuf_iterator<char>(file), {}};
    std::printf("%s\n", entry.path().c_str());
    for (std::size_t size = 0; size < input.size(); size += 1 + input.size() / kMostStarts) {
      run(input.substr(0, size));
    }
    run(input);
  }
  const std::vector<std::string> words = wordsOf(argv[2]);
  std::mt19937 random(1);  // NOLINT(cert-msc32-c,cert-msc51-cpp): the same in every run
  for (long i = std::strtol(argv[3], nullptr, 10); i > 0; --i) {
    std::string input;
    for (auto parts = random() % 16; parts > 0; --parts) {
      input += random() % 4 == 0 ? std::string(1, static_cast<char>(random() % 256))
                                 : words[random() % words.size()];
    }
    run(input);
  }
  return words.empty() ? 1 : 0;
}
