#pragma once

#include <memory>
#include <string>
#include <thread>
#include <vector>

#include "platform/client_config.h"

namespace quilp {

/// What the client tells of fetching one address.
struct Transfer {
  std::string address;
  int exit = 0;     // the client's status
  int http = 0;     // the service's status; 0 for no answer
  long bytes = -1;  // of the body; below 0 when they are not told
  std::string error;
};

/// Listens to the client as long as it lives, or until take(). The client's own configuration makes
/// it talk: nothing changes in what the library asks of it or gets from it.
class TransferLog {
 public:
  enum class Source {
    kPages,     // its standard error is ours: it can write a line for each transfer there
    kDocuments  // all its output is thrown away, and one is fetched at a time: its account of each
  };

  explicit TransferLog(Source source);
  ~TransferLog();
  TransferLog(const TransferLog&) = delete;
  TransferLog& operator=(const TransferLog&) = delete;

  /// Ends listening and gives the transfers in their order; none also where the client is too old
  /// to tell.
  std::vector<Transfer> take();

 private:
  std::string configuration() const;
  void end();

  Source source_;
  int reading_ = -1;
  int writing_ = -1;
  int error_ = -1;  // standard error as it was
  std::unique_ptr<ClientConfig> config_;
  std::thread listener_;
  std::string heard_;
};

}  // namespace quilp
