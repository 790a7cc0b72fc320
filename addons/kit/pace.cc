#include "pace.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <algorithm>
#include <random>
#include <thread>

#include "ascii.h"
#include "shared_folder.h"

namespace quilp::kit {
namespace {

constexpr Milliseconds kFirstPoll{10};
constexpr Milliseconds kLongestPoll{200};
constexpr Milliseconds kFirstBackOff{1000};
constexpr Milliseconds kLongestBackOff{60000};
constexpr Milliseconds kLongestPause{3600000};

std::int64_t now(clockid_t clock) {
  timespec time = {};
  clock_gettime(clock, &time);
  return std::int64_t{time.tv_sec} * 1000 + time.tv_nsec / 1000000;
}

Milliseconds leftUntil(Clock::time_point end) {
  return std::chrono::duration_cast<Milliseconds>(end - Clock::now());
}

/// A folder that nobody else can write to; empty if there is none.
std::string privateFolder() {
  const std::string folder = "/dev/shm/quilp-" + std::to_string(geteuid());
  mkdir(folder.c_str(), 0700);
  struct stat status {};
  const bool isOurs = lstat(folder.c_str(), &status) == 0 && S_ISDIR(status.st_mode) &&
                      status.st_uid == geteuid() && (status.st_mode & 022) == 0;
  return isOurs ? folder : "";
}

std::string fileName(std::string host) {
  for (char& c : host) {
    c = libquilp::isAlnum(static_cast<unsigned char>(c)) || c == '.' || c == '-' ? c : '_';
  }
  return "/pace-" + host.substr(0, 200);
}

}  // namespace

Milliseconds jittered(Milliseconds most) {
  static std::minstd_rand generator(std::random_device{}());
  return Milliseconds(
      std::uniform_int_distribution<Milliseconds::rep>(most.count() / 2, most.count())(generator));
}

struct Pace::Head {
  std::int64_t pauseUntil = 0;  // by the wall clock, as the file outlives a boot
  std::int64_t failures = 0;
};

struct Pace::Slot {
  std::int64_t used = 0;   // since boot
  std::int64_t inUse = 0;  // not set back: its process was killed

  static off_t offset(int number) {
    return static_cast<off_t>(sizeof(Head)) + static_cast<off_t>(sizeof(Slot)) * number;
  }
};

Pace::Pace(const std::string& folder, const std::string& host, int requests, Milliseconds span)
    : slots_(requests), span_(span) {
  if (!open(folder + fileName(host))) {
    const std::string other = privateFolder();
    if (!other.empty()) {
      open(other + fileName(host));
    }
  }
}

Pace::~Pace() {
  if (file_ >= 0) {
    giveBack();
    close(file_);
  }
}

bool Pace::open(const std::string& path) {
  file_ = ::open(path.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW | O_CLOEXEC, 0644);
  shareFile(file_, path.substr(0, path.rfind('/')));
  struct stat status {};
  bool isUsable = file_ >= 0 && fstat(file_, &status) == 0 && S_ISREG(status.st_mode) &&
                  status.st_nlink == 1 &&  // another name of it may be a file of worth
                  lock(F_WRLCK, 0, true);
  // All of it is written now, so that a full disk cannot lose a slot.
  const off_t size = Slot::offset(slots_);
  for (off_t at = isUsable && fstat(file_, &status) == 0 ? status.st_size / 16 * 16 : size;
       isUsable && at < size; at += 16) {
    const Slot slot;
    isUsable = pwrite(file_, &slot, sizeof slot, at) == static_cast<ssize_t>(sizeof slot);
  }
  if (file_ >= 0) {
    lock(F_UNLCK, 0, false);
  }
  if (file_ >= 0 && !isUsable) {
    close(file_);
    file_ = -1;
  }
  return isUsable;
}

/// Locks 16 bytes.
bool Pace::lock(int type, off_t offset, bool waits) const {
  struct flock range = {};
  range.l_type = static_cast<short>(type);
  range.l_whence = SEEK_SET;
  range.l_start = offset;
  range.l_len = 16;
  return fcntl(file_, waits ? F_SETLKW : F_SETLK, &range) == 0;
}

Pace::Head Pace::head() const {
  Head head;
  return file_ >= 0 && pread(file_, &head, sizeof head, 0) == static_cast<ssize_t>(sizeof head)
             ? head
             : Head();
}

Milliseconds Pace::pauseLeft() const {
  const Milliseconds left(head().pauseUntil - now(CLOCK_REALTIME));
  return left > kLongestPause ? Milliseconds(0) : std::max(left, Milliseconds(0));
}

/// Of the slots that nobody holds, the one that is free first; -1 for none. It is locked.
int Pace::lockSlot(Milliseconds& wait) const {
  int best = -1;
  for (int i = 0; i < slots_; ++i) {
    if (!lock(F_WRLCK, Slot::offset(i), false)) {
      continue;
    }
    Slot slot;
    if (pread(file_, &slot, sizeof slot, Slot::offset(i)) != static_cast<ssize_t>(sizeof slot)) {
      slot.inUse = 1;
    }
    const std::int64_t time = now(CLOCK_BOOTTIME);
    if (slot.inUse != 0 || slot.used > time) {
      slot = {time, 0};
      static_cast<void>(pwrite(file_, &slot, sizeof slot, Slot::offset(i)));
    }
    const Milliseconds left =
        slot.used == 0 ? Milliseconds(0)
                       : std::max(span_ - Milliseconds(time - slot.used - 1), Milliseconds(0));
    if (best < 0 || left < wait) {
      if (best >= 0) {
        lock(F_UNLCK, Slot::offset(best), false);
      }
      best = i;
      wait = left;
    } else {
      lock(F_UNLCK, Slot::offset(i), false);
    }
    if (wait.count() == 0) {
      break;
    }
  }
  return best;
}

/// False if isDone() says so.
bool Pace::sleep(Milliseconds time, const std::function<bool()>& isDone) const {
  const Clock::time_point end = Clock::now() + time;
  while (Clock::now() < end) {
    std::this_thread::sleep_until(std::min(end, Clock::now() + kLongestPoll));
    if (isDone()) {
      return false;
    }
  }
  return true;
}

bool Pace::take(Clock::time_point end, const std::function<bool()>& isDone) {
  if (file_ < 0) {
    const Milliseconds wait = std::max(leftUntil(next_), Milliseconds(0));
    next_ = Clock::now() + wait + span_ / slots_;
    return wait < leftUntil(end) && sleep(wait, isDone);
  }
  for (Milliseconds poll = kFirstPoll;; poll = std::min(poll * 2, kLongestPoll)) {
    Milliseconds wait = pauseLeft();
    int slot = -1;
    if (wait.count() == 0) {
      wait = jittered(poll);
      slot = lockSlot(wait);
    }
    if (wait >= leftUntil(end) || !sleep(wait, isDone)) {
      if (slot >= 0) {
        lock(F_UNLCK, Slot::offset(slot), false);
      }
      return false;
    }
    if (slot >= 0 && pauseLeft().count() > 0) {
      lock(F_UNLCK, Slot::offset(slot), false);
    } else if (slot >= 0) {
      taken_ = slot;
      const Slot used = {now(CLOCK_BOOTTIME), 1};
      static_cast<void>(pwrite(file_, &used, sizeof used, Slot::offset(slot)));
      return true;
    }
  }
}

void Pace::giveBack() {
  if (taken_ >= 0) {
    const Slot used = {now(CLOCK_BOOTTIME), 0};
    static_cast<void>(pwrite(file_, &used, sizeof used, Slot::offset(taken_)));
    lock(F_UNLCK, Slot::offset(taken_), false);
    taken_ = -1;
  }
}

void Pace::pause(Milliseconds time) {
  if (file_ >= 0 && lock(F_WRLCK, 0, true)) {
    Head changed = head();
    changed.pauseUntil = std::max(now(CLOCK_REALTIME) + pauseLeft().count(),
                                  now(CLOCK_REALTIME) + std::min(time, kLongestPause).count());
    static_cast<void>(pwrite(file_, &changed, sizeof changed, 0));
    lock(F_UNLCK, 0, false);
  } else {
    next_ = Clock::now() + time;
  }
}

Milliseconds Pace::backOff() {
  Milliseconds time = pauseLeft();  // others were told the same
  if (time.count() == 0 && file_ >= 0 && lock(F_WRLCK, 0, true)) {
    Head changed = head();
    const int doublings = static_cast<int>(std::clamp<std::int64_t>(changed.failures, 0, 6));
    time = jittered(std::min(kFirstBackOff * (1 << doublings), kLongestBackOff));
    changed = {now(CLOCK_REALTIME) + time.count(), changed.failures + 1};
    static_cast<void>(pwrite(file_, &changed, sizeof changed, 0));
    lock(F_UNLCK, 0, false);
  }
  return time.count() == 0 ? jittered(kFirstBackOff) : time;
}

void Pace::succeed() {
  if (head().failures != 0 && lock(F_WRLCK, 0, true)) {
    Head changed = head();
    changed.failures = 0;
    static_cast<void>(pwrite(file_, &changed, sizeof changed, 0));
    lock(F_UNLCK, 0, false);
  }
}

}  // namespace quilp::kit
