#include <benchmark/benchmark.h>

#include <cstring>
#include <fstream>

#include "inputs.h"
#include "tv/details.h"

#ifdef QUILP_WITH_LIBXML2
#include <libxml/HTMLparser.h>
#include <libxml/xpath.h>
#endif

// Cuts each kind of page, and compares with a parser with XPath if libxml2 is installed.
// page_bench --inputs=DIR writes the pages and their expressions for other parsers.

namespace {

using bench::Page;

void report(benchmark::State& state, const Page& page, int values) {
  if (values < 1) {
    state.SkipWithError("the page has no values");
  }
  state.counters["values"] = values;
  state.SetBytesProcessed(state.iterations() * static_cast<std::int64_t>(page.html.size()));
}

void cut(benchmark::State& state, const Page& page) {
  int values = 0;
  for (auto _ : state) {
    values = page.cut(page.html);
  }
  report(state, page, values);
}

#ifdef QUILP_WITH_LIBXML2
int valuesAt(xmlXPathContext* context, xmlXPathCompExpr* path) {
  xmlXPathObject* found = xmlXPathCompiledEval(path, context);
  const int n = found->nodesetval != nullptr ? found->nodesetval->nodeNr : 0;
  for (int i = 0; i < n; ++i) {
    xmlChar* text = xmlNodeGetContent(found->nodesetval->nodeTab[i]);
    benchmark::DoNotOptimize(text);
    xmlFree(text);
  }
  xmlXPathFreeObject(found);
  return n;
}

void parse(benchmark::State& state, const Page& page) {
  std::vector<xmlXPathCompExpr*> paths;
  for (const char* path : page.xpaths) {
    paths.push_back(xmlXPathCompile(reinterpret_cast<const xmlChar*>(path)));
  }
  int values = 0;
  for (auto _ : state) {
    htmlDocPtr document =
        htmlReadMemory(page.html.data(), static_cast<int>(page.html.size()), nullptr, "UTF-8",
                       HTML_PARSE_RECOVER | HTML_PARSE_NOERROR | HTML_PARSE_NOWARNING);
    xmlXPathContext* context = xmlXPathNewContext(document);
    values = 0;
    for (xmlXPathCompExpr* path : paths) {
      values += valuesAt(context, path);
    }
    xmlXPathFreeContext(context);
    xmlFreeDoc(document);
  }
  for (xmlXPathCompExpr* path : paths) {
    xmlXPathFreeCompExpr(path);
  }
  report(state, page, values);
}
#endif

/// The time per byte must not grow with the page.
void hostileRole(benchmark::State& state) {
  std::string role;
  for (auto _ : state) {
    role.assign(static_cast<std::size_t>(state.range(0)), '-');
    libquilp::cutRole(role);
    benchmark::DoNotOptimize(role);
  }
  state.SetBytesProcessed(state.iterations() * state.range(0));
}
BENCHMARK(hostileRole)->Arg(100000)->Arg(1000000)->Unit(benchmark::kMicrosecond);

void writeLines(const std::string& path, const std::vector<const char*>& lines) {
  std::ofstream file(path);
  for (const char* line : lines) {
    file << line << '\n';
  }
}

void writeInputs(const std::string& folder, const std::vector<Page>& pages) {
  writeLines(folder + "/names", {std::begin(bench::kReleaseNames), std::end(bench::kReleaseNames)});
  std::ofstream(folder + "/text") << bench::ordinaryText(64 << 10);
  for (const Page& page : pages) {
    std::ofstream(folder + '/' + page.name + ".html") << page.html;
    writeLines(folder + '/' + page.name + ".selectors", page.selectors);
  }
}

}  // namespace

int main(int argc, char** argv) {
  const std::vector<Page> pages = bench::pages();
  constexpr char kInputs[] = "--inputs=";
  if (argc == 2 && std::strncmp(argv[1], kInputs, std::strlen(kInputs)) == 0) {
    writeInputs(argv[1] + std::strlen(kInputs), pages);
    return 0;
  }
  for (const Page& page : pages) {
    const std::string name = page.name;
    benchmark::RegisterBenchmark(("cut/" + name).c_str(), cut, page);
#ifdef QUILP_WITH_LIBXML2
    benchmark::RegisterBenchmark(("parse/" + name).c_str(), parse, page);
#endif
  }
  benchmark::Initialize(&argc, argv);
  benchmark::RunSpecifiedBenchmarks();
  return 0;
}
