#include "imdb/enrichment.h"

#include <cstring>
#include <exception>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "imdb/title_page.h"
#include "plugin/page_fetch.h"

namespace libquilp {
namespace {

/// Copies as much as the buffer holds.
template <std::size_t N>
void copyCut(char (&buffer)[N], std::string_view text) {
  const std::string_view fitting = atMost(text, N - 1);
  std::memcpy(buffer, fitting.data(), fitting.size());
  buffer[fitting.size()] = '\0';
}

}  // namespace

void* enrichFromTitlePage(void* work) {
  auto& record = *static_cast<MovieWorkRecord*>(work);
  if (record.id[0] == '\0') {
    return nullptr;
  }
  try {
    const auto page = fetchThroughPipe(titleAddress(record.id, record.reference), *record.context);
    if (page) {
      copyCut(record.image, posterOf(*page).value_or(""));
      copyCut(record.outline, fetchOutline(*page, record.id, *record.context).value_or(""));
    }
  } catch (const std::exception&) {
    // What was found so far stays.
  }
  return nullptr;
}

Enrichment::Enrichment(int n, const char* reference, const Context& context, ThreadBody body)
    : n_(n), reference_(reference), context_(context), body_(body), work_(inFrame_) {
  const auto size = static_cast<std::size_t>(n);
  if (n > kInFrame) {
    onHeap_.reset(new Work[size]);
    work_ = onHeap_.get();
  }
  std::memset(work_, 0, size * sizeof(Work));
}

Enrichment::~Enrichment() {
  for (int i = 0; i < n_; ++i) {
    join(i);
  }
}

void Enrichment::set(int i, const char* id) {
  MovieWorkRecord& record = work_[i].record;
  copyCut(record.id, orEmpty(id));
  record.reference = reference_;
  record.context = &context_;
}

void Enrichment::start() {
  if (context_.control != nullptr) {
    try {
      fetchAll();
    } catch (const std::exception&) {
      // What was found so far stays.
    }
    return;
  }
  for (int i = 0; i < n_; ++i) {
    Work& work = work_[i];
    work.running = pthread_create(&work.thread, nullptr, body_, &work.record) == 0;
    if (!work.running) {
      body_(&work.record);
    }
  }
}

void Enrichment::fetchAll() {
  const auto size = static_cast<std::size_t>(n_);
  std::vector<std::string> addresses(size);
  for (std::size_t i = 0; i < size; ++i) {
    if (work_[i].record.id[0] != '\0') {
      addresses[i] = titleAddress(work_[i].record.id, reference_);
    }
  }
  std::vector<std::string> summaries(size);
  std::vector<CurlEnd> pages = fetchTogether(std::move(addresses), context_);
  for (std::size_t i = 0; i < size; ++i) {
    if (pages[i].output) {
      MovieWorkRecord& record = work_[i].record;
      copyCut(record.image, posterOf(*pages[i].output).value_or(""));
      const Outline outline = imdbExtractOutline(*pages[i].output);
      if (outline.isOnSummaryPage) {
        summaries[i] = summaryAddress(record.id);
      }
      copyCut(record.outline, decodedOutline(outline.text).value_or(""));
    }
  }
  pages = fetchTogether(std::move(summaries), context_);
  for (std::size_t i = 0; i < size; ++i) {
    if (pages[i].output) {
      copyCut(work_[i].record.outline, outlineOfSummaryPage(*pages[i].output).value_or(""));
    }
  }
}

const MovieWorkRecord& Enrichment::join(int i) {
  if (work_[i].running) {
    pthread_join(work_[i].thread, nullptr);
    work_[i].running = false;
  }
  return work_[i].record;
}

}  // namespace libquilp
