#include "inflate.h"

#include <fcntl.h>
#include <unistd.h>
#include <zlib.h>

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <stdexcept>
#include <utility>

#include "database.h"

namespace quilp::catalogue {
namespace {

constexpr std::size_t kInput = std::size_t{1} << 18;

}  // namespace

struct ByteSource::Gzip {
  Gzip() {
    if (inflateInit2(&stream, 15 + 16) != Z_OK) {
      throw std::bad_alloc();
    }
  }
  ~Gzip() { inflateEnd(&stream); }
  Gzip(const Gzip&) = delete;
  Gzip& operator=(const Gzip&) = delete;

  z_stream stream{};
  bool inMember = true;
};

ByteSource::ByteSource(std::string path)
    : path_(std::move(path)),
      file_(open(path_.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK)),  // a FIFO is not waited for
      input_(kInput, '\0') {
  if (file_ < 0) {
    throw std::runtime_error(path_ + ": " + std::strerror(errno));
  }
  try {
    refuseSpecialFile(path_);
    const std::size_t size = fill();
    if (size >= 2 && input_[0] == '\x1f' && input_[1] == '\x8b') {
      gzip_ = std::make_unique<Gzip>();
      gzip_->stream.next_in = reinterpret_cast<Bytef*>(input_.data());
      gzip_->stream.avail_in = static_cast<uInt>(size);
    } else {
      input_.resize(size);
    }
  } catch (...) {
    close(file_);
    throw;
  }
}

ByteSource::~ByteSource() { close(file_); }

std::size_t ByteSource::readFile(char* to, std::size_t size) {
  ssize_t got = 0;
  do {
    got = ::read(file_, to, size);
  } while (got < 0 && errno == EINTR);
  if (got < 0) {
    throw std::runtime_error(path_ + ": " + std::strerror(errno));
  }
  consumed_ += static_cast<std::uint64_t>(got);
  return static_cast<std::size_t>(got);
}

std::size_t ByteSource::fill() { return readFile(input_.data(), kInput); }

std::size_t ByteSource::inflateSome(char* to, std::size_t size) {
  z_stream& stream = gzip_->stream;
  stream.next_out = reinterpret_cast<Bytef*>(to);
  stream.avail_out = static_cast<uInt>(size);
  while (stream.avail_out > 0) {
    if (stream.avail_in == 0) {
      stream.avail_in = static_cast<uInt>(fill());
      stream.next_in = reinterpret_cast<Bytef*>(input_.data());
      if (stream.avail_in == 0) {
        if (gzip_->inMember) {
          throw std::runtime_error(path_ + ": the gzip file ends early; fetch it again");
        }
        break;
      }
    }
    if (!gzip_->inMember) {  // a gzip file may have several members
      inflateReset(&stream);
      gzip_->inMember = true;
    }
    const int result = inflate(&stream, Z_NO_FLUSH);
    if (result == Z_STREAM_END) {
      gzip_->inMember = false;
    } else if (result != Z_OK) {
      throw std::runtime_error(path_ + ": the gzip file is damaged; fetch it again");
    }
  }
  return size - stream.avail_out;
}

std::size_t ByteSource::read(char* to, std::size_t size) {
  if (gzip_) {
    return inflateSome(to, size);
  }
  if (input_.empty()) {
    return readFile(to, size);
  }
  const std::size_t count = std::min(size, input_.size());
  std::memcpy(to, input_.data(), count);
  input_.erase(0, count);
  return count;
}

}  // namespace quilp::catalogue
