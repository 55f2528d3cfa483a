#include "PseudoTerminal.h"

#include <fcntl.h>
#include <sys/inotify.h>
#include <sys/stat.h>
#include <termios.h>
#include <unistd.h>

#include <array>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>

namespace tessmar::sim {
namespace {

int OpenNearEnd() {
  const int near = posix_openpt(O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC);
  if (near < 0) throw SystemError("no pseudo-terminal", errno);
  return near;
}

std::string NameOfFarEnd(int near) {
  std::array<char, 128> name{};
  if (grantpt(near) != 0 || unlockpt(near) != 0 || ptsname_r(near, name.data(), name.size()) != 0)
    throw SystemError("no pseudo-terminal", errno);
  return name.data();
}

int OpenFarEnd(const std::string& name) {
  const int far = open(name.c_str(), O_RDWR | O_NOCTTY | O_CLOEXEC);
  if (far < 0) throw SystemError(name, errno);
  return far;
}

int WatchClosings(const std::string& name) {
  const int watcher = inotify_init1(IN_NONBLOCK | IN_CLOEXEC);
  if (watcher < 0) return -1;
  if (inotify_add_watch(watcher, name.c_str(), IN_CLOSE) >= 0) return watcher;
  close(watcher);
  return -1;
}

}  // namespace

SystemError::SystemError(const std::string& what, int error)
    : std::runtime_error(what + ": " + std::strerror(error)) {}

Descriptor::~Descriptor() {
  if (descriptor_ >= 0) close(descriptor_);
}

PseudoTerminal::PseudoTerminal(const std::string& link)
    : link_(link),
      near_(OpenNearEnd()),
      farName_(NameOfFarEnd(near_.Get())),
      far_(OpenFarEnd(farName_)),
      closings_(WatchClosings(farName_)) {
  MakeRaw();
  MakeLink();
}

PseudoTerminal::~PseudoTerminal() {
  if (LinkIsOurs()) unlink(link_.c_str());
}

void PseudoTerminal::MakeRaw() const {
  termios settings{};
  if (tcgetattr(far_.Get(), &settings) != 0) throw SystemError(farName_, errno);
  cfmakeraw(&settings);
  if (tcsetattr(far_.Get(), TCSANOW, &settings) != 0) throw SystemError(farName_, errno);
}

void PseudoTerminal::MakeLink() const {
  struct stat there {};
  const bool exists = lstat(link_.c_str(), &there) == 0;
  if (exists && !S_ISLNK(there.st_mode)) throw SystemError(link_, EEXIST);
  // Made beside and renamed, so that the path never points nowhere.
  const std::string fresh = link_ + "." + std::to_string(getpid());
  unlink(fresh.c_str());
  if (symlink(farName_.c_str(), fresh.c_str()) != 0) throw SystemError(link_, errno);
  if (rename(fresh.c_str(), link_.c_str()) == 0) return;
  const int error = errno;
  unlink(fresh.c_str());
  throw SystemError(link_, error);
}

bool PseudoTerminal::LinkIsOurs() const {
  std::array<char, 256> target{};
  const ssize_t length = readlink(link_.c_str(), target.data(), target.size());
  return length > 0 && std::string(target.data(), static_cast<std::size_t>(length)) == farName_;
}

bool PseudoTerminal::TakeClosings() {
  alignas(inotify_event) std::array<char, 4096> events{};
  bool any = false;
  while (closings_.Get() >= 0 && read(closings_.Get(), events.data(), events.size()) > 0)
    any = true;
  return any;
}

void PseudoTerminal::DiscardUnread() {
  tcflush(far_.Get(), TCIFLUSH);
}

}  // namespace tessmar::sim
