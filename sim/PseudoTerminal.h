#pragma once

#include <stdexcept>
#include <string>

namespace tessmar::sim {

/// Something that the system refused; what() says what and why.
class SystemError : public std::runtime_error {
 public:
  /// @param error  as in errno.
  SystemError(const std::string& what, int error);
};

/// A file descriptor that is closed at the end of its life.
class Descriptor {
 public:
  explicit Descriptor(int descriptor = -1) : descriptor_(descriptor) {}
  ~Descriptor();
  Descriptor(Descriptor&& other) noexcept : descriptor_(other.descriptor_) {
    other.descriptor_ = -1;
  }
  Descriptor& operator=(Descriptor&&) = delete;

  int Get() const { return descriptor_; }

 private:
  int descriptor_;
};

/// A raw pseudo-terminal and a symbolic link to the end that programs open.
///
/// That end is held open here as well: a program may close and reopen it, and the near end never
/// sees a hang-up.
class PseudoTerminal {
 public:
  /// Replaces a symbolic link that is there already, but nothing else. Throws SystemError.
  explicit PseudoTerminal(const std::string& link);
  /// Removes the link, unless it leads elsewhere by now.
  ~PseudoTerminal();
  PseudoTerminal(const PseudoTerminal&) = delete;
  PseudoTerminal& operator=(const PseudoTerminal&) = delete;

  /// The near end, not blocking.
  int NearEnd() const { return near_.Get(); }
  /// Readable when a program has closed the far end; -1 where the system cannot tell.
  int Closings() const { return closings_.Get(); }
  /// Takes the reports of Closings. @return true when there was one.
  bool TakeClosings();
  /// Throws away what no program has read.
  void DiscardUnread();

 private:
  void MakeRaw() const;
  void MakeLink() const;
  bool LinkIsOurs() const;

  std::string link_;
  Descriptor near_;
  std::string farName_;
  Descriptor far_;
  Descriptor closings_;
};

}  // namespace tessmar::sim
