#ifndef QUILP_HPP
#define QUILP_HPP

/**
 * @file
 * quilp.h for C++17. A header alone: link with libquilp.so.
 *
 * A lookup that fails is no exception: ask Answer::reason. Wrong use throws std::invalid_argument
 * (a value that a request cannot have) or std::out_of_range (Answer::at); no memory,
 * std::bad_alloc. What an Answer returns belongs to it: do not let a view outlive it. An observer
 * must not throw.
 *
 *   quilp::Request request(QUILP_MOVIE_SEARCH);
 *   request.set(QUILP_KEYWORD, "Lighthouse").timeout(std::chrono::seconds(2));
 *   const quilp::Answer movies = request.run();
 *   for (const quilp::Result movie : movies) ...
 */

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <functional>
#include <iterator>
#include <limits>
#include <memory>
#include <new>
#include <optional>
#include <stdexcept>
#include <string>
#include <string_view>
#include <utility>

#include "quilp.h"

namespace quilp {

/** Iterates over what has size() and operator[]. Invalid when its range is. */
template <class Range, class Value>
class Iterator {
 public:
  using iterator_category = std::input_iterator_tag;
  using value_type = Value;
  using difference_type = std::ptrdiff_t;
  using pointer = const Value*;
  using reference = Value;

  Iterator(const Range* range, std::size_t i) : range_(range), i_(i) {}
  Value operator*() const { return (*range_)[i_]; }
  Iterator& operator++() {
    ++i_;
    return *this;
  }
  Iterator operator++(int) { return Iterator(range_, i_++); }
  bool operator==(const Iterator& other) const { return i_ == other.i_; }
  bool operator!=(const Iterator& other) const { return i_ != other.i_; }

 private:
  const Range* range_;
  std::size_t i_;
};

/** An actor; one without a role has none. */
struct Actor {
  std::string_view name;
  std::optional<std::string_view> role;
};

/** The values of one element of a result. */
class ValueList {
 public:
  ValueList(const quilp_answer* answer, std::size_t result, std::string element)
      : answer_(answer), result_(result), element_(std::move(element)) {}

  std::size_t size() const { return quilp_answer_size(answer_, result_, element_.c_str()); }
  bool empty() const { return size() == 0; }
  /** i is below size(). */
  std::string_view operator[](std::size_t i) const {
    return quilp_answer_value(answer_, result_, element_.c_str(), i);
  }
  Iterator<ValueList, std::string_view> begin() const { return {this, 0}; }
  Iterator<ValueList, std::string_view> end() const { return {this, size()}; }

 private:
  const quilp_answer* answer_;
  std::size_t result_;
  std::string element_;
};

/** The actors of a result. */
class Cast {
 public:
  Cast(const quilp_answer* answer, std::size_t result) : answer_(answer), result_(result) {}

  std::size_t size() const { return quilp_answer_size(answer_, result_, "actor"); }
  bool empty() const { return size() == 0; }
  /** i is below size(). */
  Actor operator[](std::size_t i) const {
    const char* role = quilp_answer_role(answer_, result_, i);
    return {quilp_answer_value(answer_, result_, "actor", i),
            role != nullptr ? std::optional<std::string_view>(role) : std::nullopt};
  }
  Iterator<Cast, Actor> begin() const { return {this, 0}; }
  Iterator<Cast, Actor> end() const { return {this, size()}; }

 private:
  const quilp_answer* answer_;
  std::size_t result_;
};

/** One result. */
class Result {
 public:
  Result(const quilp_answer* answer, std::size_t i) : answer_(answer), i_(i) {}

  /** The first value of an element; none where the result has none. */
  std::optional<std::string_view> operator[](const std::string& element) const {
    const char* text = quilp_answer_text(answer_, i_, element.c_str());
    return text != nullptr ? std::optional<std::string_view>(text) : std::nullopt;
  }
  ValueList all(std::string element) const { return {answer_, i_, std::move(element)}; }
  Cast cast() const { return {answer_, i_}; }

 private:
  const quilp_answer* answer_;
  std::size_t i_;
};

/** What a lookup found, and why. Can be moved, not copied. */
class Answer {
 public:
  explicit Answer(quilp_answer* owned) : answer_(owned) {}

  explicit operator bool() const { return reason() == QUILP_OK; }
  quilp_reason reason() const { return quilp_answer_reason(answer_.get()); }
  std::string_view sentence() const { return quilp_answer_sentence(answer_.get()); }
  long number() const { return quilp_answer_number(answer_.get()); }
  std::optional<std::string_view> addOn() const {
    const char* path = quilp_answer_add_on(answer_.get());
    return path != nullptr ? std::optional<std::string_view>(path) : std::nullopt;
  }
  std::chrono::milliseconds duration() const {
    return std::chrono::milliseconds(quilp_answer_milliseconds(answer_.get()));
  }
  std::string_view json() const { return quilp_answer_json(answer_.get()); }

  std::size_t size() const { return quilp_answer_count(answer_.get()); }
  bool empty() const { return size() == 0; }
  /** i is below size(). */
  Result operator[](std::size_t i) const { return {answer_.get(), i}; }
  Result at(std::size_t i) const {
    if (i >= size()) {
      throw std::out_of_range("quilp::Answer::at");
    }
    return (*this)[i];
  }
  Iterator<Answer, Result> begin() const { return {this, 0}; }
  Iterator<Answer, Result> end() const { return {this, size()}; }

  const quilp_answer* get() const { return answer_.get(); }

 private:
  struct Free {
    void operator()(quilp_answer* answer) const { quilp_answer_free(answer); }
  };
  std::unique_ptr<quilp_answer, Free> answer_;
};

/** What the name of a release or of a karaoke song's file tells; nobody is asked. */
inline Answer readName(const std::string& name, quilp_name_kind kind = QUILP_NAME_ANY) {
  if (name.find('\0') != std::string::npos) {
    throw std::invalid_argument("quilp::readName: a zero byte in a name");
  }
  Answer answer(quilp_read_name(name.c_str(), kind));
  if (answer.get() == nullptr) {
    throw std::bad_alloc();
  }
  return answer;
}

/** A lookup. Can be moved, but not while a thread runs or cancels it. */
class Request {
 public:
  using Observer = std::function<void(quilp_event, std::string_view text, long number)>;

  explicit Request(quilp_lookup what) : request_(quilp_request_new(what)) {
    if (!request_) {
      if (what < QUILP_MOVIE_SEARCH || what > QUILP_SONG) {
        throw std::invalid_argument("quilp::Request: an unknown lookup");
      }
      throw std::bad_alloc();
    }
  }

  Request& set(quilp_text which, const std::string& text) {
    if (text.find('\0') != std::string::npos) {
      throw std::invalid_argument("quilp::Request::set: a zero byte in a text");
    }
    if (quilp_request_set_text(request_.get(), which, text.c_str()) != 0) {
      if (which < QUILP_KEYWORD || which > QUILP_LANGUAGE) {
        throw std::invalid_argument("quilp::Request::set: an unknown text");
      }
      throw std::bad_alloc();
    }
    return *this;
  }
  Request& set(quilp_number which, long number) {
    if (quilp_request_set_number(request_.get(), which, number) != 0) {
      throw std::invalid_argument("quilp::Request::set: a number that the request cannot have");
    }
    return *this;
  }
  Request& route(quilp_route route) { return set(QUILP_ROUTE, route); }

  /** How long a run may take at most: more than nothing. Parts of a millisecond count as one. */
  template <class Rep, class Period>
  Request& timeout(std::chrono::duration<Rep, Period> limit) {
    using Milliseconds = std::chrono::duration<double, std::milli>;
    const double wanted = std::chrono::duration_cast<Milliseconds>(limit).count();
    if (!(wanted > 0 && wanted <= std::numeric_limits<std::int32_t>::max())) {
      throw std::invalid_argument("quilp::Request::timeout: no time that a lookup can take");
    }
    const auto whole = static_cast<long>(wanted);
    return set(QUILP_DEADLINE, static_cast<double>(whole) < wanted ? whole + 1 : whole);
  }

  /** Is told the steps of a lookup, one at a time, also from other threads. */
  Request& observe(Observer observer) {
    auto kept = observer ? std::make_unique<Observer>(std::move(observer)) : nullptr;
    quilp_request_set_observer(request_.get(), kept ? &Request::tell : nullptr, kept.get());
    observer_ = std::move(kept);
    return *this;
  }

  Answer run() {
    Answer answer(quilp_run(request_.get()));
    if (answer.get() == nullptr) {
      throw std::bad_alloc();
    }
    return answer;
  }

  /** Ends the run under way in another thread, or the next one. */
  void cancel() { quilp_request_cancel(request_.get()); }

  quilp_request* get() { return request_.get(); }

 private:
  struct Free {
    void operator()(quilp_request* request) const { quilp_request_free(request); }
  };
  static void tell(void* user, quilp_event event, const char* text, long number) {
    (*static_cast<Observer*>(user))(event, text, number);
  }

  std::unique_ptr<Observer> observer_{};
  std::unique_ptr<quilp_request, Free> request_;
};

}  // namespace quilp

#endif
