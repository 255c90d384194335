#include "core/file_read.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>

#include "core/fault.h"

namespace zorvik {

namespace {

class Descriptor {
 public:
  explicit Descriptor(int fd) : fd_(fd) {}
  ~Descriptor() {
    if (fd_ >= 0) ::close(fd_);
  }
  Descriptor(const Descriptor&) = delete;
  Descriptor& operator=(const Descriptor&) = delete;
  int get() const { return fd_; }

 private:
  int fd_;
};

std::string named(const char* what, const std::string& path) {
  return std::string(what) + " \"" + path + "\"";
}

[[noreturn]] void cannotRead(const char* what, const std::string& path, int error) {
  throw Fault("cannot read the " + named(what, path) + ": " + std::strerror(error));
}

[[noreturn]] void tooLarge(const char* what, const std::string& path, size_t maxBytes) {
  throw Fault("the " + named(what, path) + " is larger than " + std::to_string(maxBytes) + " bytes");
}

}  // namespace

std::string readFileBounded(const std::string& path, size_t maxBytes, const char* what) {
  if (path.empty()) throw Fault(std::string("no ") + what + " named");
  // open() would take the name only up to its first zero byte and so read another file.
  // The message shows the name up to that byte, as a zero would end the message too.
  if (const size_t zero = path.find('\0'); zero != std::string::npos)
    throw Fault(std::string("the name of the ") + what + " holds a zero byte after \"" +
                path.substr(0, zero) + "\"");
  // O_NONBLOCK: opening a FIFO does not wait for a writer, so fstat can refuse it.
  Descriptor fd(::open(path.c_str(), O_RDONLY | O_NONBLOCK | O_NOCTTY | O_CLOEXEC));
  if (fd.get() < 0) cannotRead(what, path, errno);
  struct stat info {};
  if (::fstat(fd.get(), &info) != 0) cannotRead(what, path, errno);
  if (S_ISDIR(info.st_mode)) throw Fault("the " + named(what, path) + " is a directory");
  if (!S_ISREG(info.st_mode)) throw Fault("the " + named(what, path) + " is not a regular file");
  if (info.st_size < 0 || static_cast<unsigned long long>(info.st_size) > maxBytes)
    tooLarge(what, path, maxBytes);

  std::string bytes;
  bytes.reserve(static_cast<size_t>(info.st_size));
  char buffer[65536];
  for (;;) {
    // Never more than one byte beyond the limit, so a file that grows meanwhile can't fill memory.
    const size_t room = maxBytes - bytes.size();
    const ssize_t n = ::read(fd.get(), buffer, room < sizeof buffer ? room + 1 : sizeof buffer);
    if (n < 0) {
      if (errno == EINTR) continue;
      cannotRead(what, path, errno);
    }
    if (n == 0) break;
    if (static_cast<size_t>(n) > room) tooLarge(what, path, maxBytes);
    bytes.append(buffer, static_cast<size_t>(n));
  }
  return bytes;
}

}  // namespace zorvik
