#pragma once

#include <unistd.h>

#include <utility>

namespace korvel::toolkit {

/// An open file of the operating system, closed with the object. A negative number is no file.
class Descriptor {
 public:
  explicit Descriptor(int number) : number_(number) {}
  ~Descriptor() {
    if (number_ >= 0) ::close(number_);
  }
  Descriptor(Descriptor&& other) noexcept : number_(other.Release()) {}
  Descriptor& operator=(Descriptor&& other) noexcept {
    std::swap(number_, other.number_);
    return *this;
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;

  int Number() const { return number_; }
  bool IsOpen() const { return number_ >= 0; }
  int Release() { return std::exchange(number_, -1); }

 private:
  int number_;
};

}  // namespace korvel::toolkit
