#include <benchmark/benchmark.h>
#include <unistd.h>

#include <cstdio>
#include <fstream>
#include <stdexcept>
#include <string>

#include "libquilp.h"
#include "movie/records.h"
#include "plugin/records.h"

// Reading an add-on's document and printing one, by the number of its entries.

namespace {

using libquilp::XMLNode;

/// A document of movies in a file of its own.
class Document {
 public:
  explicit Document(std::int64_t entries) {
    std::ofstream file(name_);
    file << "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n<movielist>\n";
    for (std::int64_t i = 1; i <= entries; ++i) {
      file << "<movie rank=\"" << i << "\"><url><![CDATA[https://images.example/p.jpg]]></url>"
           << "<id><![CDATA[" << i << "]]></id><title><![CDATA[The Paper Lighthouse]]></title>"
           << "<year><![CDATA[2011]]></year><outline><![CDATA[A keeper folds a lighthouse out of "
           << "old letters & one night it is lit.]]></outline></movie>\n";
    }
    file << "</movielist>\n";
  }
  ~Document() { std::remove(name_.c_str()); }
  Document(const Document&) = delete;
  Document& operator=(const Document&) = delete;

  int read(velMovie_** movies) const {
    int error = 0;
    const XMLNode root = XMLNode::openFileHelper(name_.c_str(), &error, "movielist");
    return libquilp::readRecords<velMovie_>(root, "movie", velFreeMovies,
                                            [](const XMLNode& entry, velMovie_& movie) {
                                              libquilp::readRecord<velMovie_>(
                                                  entry, libquilp::kMovieFields, movie);
                                            })
        .giveTo(movies);
  }

 private:
  std::string name_ = "/tmp/document_bench." + std::to_string(getpid());
};

void readDocument(benchmark::State& state) {
  const Document document(state.range(0));
  for (auto _ : state) {
    velMovie_* movies = nullptr;
    const int n = document.read(&movies);
    if (n != state.range(0)) {
      state.SkipWithError("entries are missing");
    }
    velFreeMovies(movies, n);
  }
  state.SetItemsProcessed(state.iterations() * state.range(0));
}
BENCHMARK(readDocument)->Arg(1)->Arg(20)->Arg(2000);

void makeDocument(benchmark::State& state) {
  velMovie_* movies = nullptr;
  const int n = Document(state.range(0)).read(&movies);
  for (auto _ : state) {
    XMLNode top = XMLNode::createXMLTopNode("xml", true);
    XMLNode list = top.addChild("movielist");
    for (int i = 0; i < n; ++i) {
      XMLNode entry = list.addChild("movie");
      libquilp::writeRecord<velMovie_>(entry, libquilp::kMovieFields, movies[i]);
    }
    char* text = top.createXMLString(1);
    benchmark::DoNotOptimize(text);
    libquilp::freeXMLString(text);
  }
  velFreeMovies(movies, n);
  state.SetItemsProcessed(state.iterations() * n);
}
BENCHMARK(makeDocument)->Arg(1)->Arg(20)->Arg(2000);

}  // namespace
