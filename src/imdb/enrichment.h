#pragma once

#include <pthread.h>

#include <memory>

#include "plugin/files.h"
#include "plugin/observer.h"

namespace libquilp {

/// Input and output of one enrichment thread; empty strings if it finds nothing.
struct MovieWorkRecord {
  char id[64];
  char image[2048];
  char outline[2048];
  const char* reference;  // see titleAddress
  const Context* context;
};

using ThreadBody = void* (*)(void*);

/// The body of each enrichment thread: fills a MovieWorkRecord from its title page and returns
/// null. An empty identifier is not fetched. Throws nothing: nothing catches it in a thread.
void* enrichFromTitlePage(void* record);

/// Does the work of its own work records concurrently.
class Enrichment {
 public:
  Enrichment(int n, const char* reference, const Context& context,
             ThreadBody body = &enrichFromTitlePage);
  /// Joins the threads that still run: the calling thread may have been cancelled.
  ~Enrichment();
  Enrichment(const Enrichment&) = delete;
  Enrichment& operator=(const Enrichment&) = delete;

  void set(int i, const char* id);
  /// Under a control, fetches all title pages together, then all plot summaries. Otherwise starts a
  /// thread for each record; if one cannot be started, the caller does its work. Throws nothing.
  void start();
  const MovieWorkRecord& join(int i);

 private:
  void fetchAll();

  struct Work {
    MovieWorkRecord record;
    pthread_t thread;
    bool running;
  };
  // More records could overflow the stack of a small thread.
  static constexpr int kInFrame = 4;

  int n_;
  const char* reference_;
  Context context_;
  ThreadBody body_;
  Work inFrame_[kInFrame];
  std::unique_ptr<Work[]> onHeap_;
  Work* work_;
};

/// Gives every record the poster address and the outline of its title page.
template <class Record>
void enrich(Record* records, int n, char* Record::*id, char* Record::*image, char* Record::*outline,
            const char* reference, const Context& context) {
  if (n < 1) {
    return;
  }
  Enrichment enrichment(n, reference, context);
  for (int i = 0; i < n; ++i) {
    enrichment.set(i, records[i].*id);
  }
  enrichment.start();
  for (int i = 0; i < n; ++i) {
    const MovieWorkRecord& found = enrichment.join(i);
    records[i].*image = SafeStrdup(found.image);
    records[i].*outline = SafeStrdup(found.outline);
  }
}

}  // namespace libquilp
