#include "core/file_write.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <vector>

#include "core/fault.h"

namespace zorvik {

namespace {

[[noreturn]] void fail(const std::string& path, int error) {
  throw Fault("Cannot write " + path + ": " + std::strerror(error));
}

std::string folderOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  if (slash == std::string::npos) return ".";
  return slash == 0 ? "/" : path.substr(0, slash);
}

std::string nameOf(const std::string& path) {
  const size_t slash = path.rfind('/');
  return slash == std::string::npos ? path : path.substr(slash + 1);
}

// The file a name stands for: links followed one by one (a dangling link gives the path it points to),
// at most as many as the system itself would follow.
std::string finalTarget(const std::string& path) {
  std::string at = path;
  for (int hop = 0; hop < 40; ++hop) {
    struct stat st {};
    if (::lstat(at.c_str(), &st) != 0 || !S_ISLNK(st.st_mode)) return at;
    std::vector<char> link(static_cast<size_t>(st.st_size > 0 ? st.st_size : 255) + 1);
    const ssize_t n = ::readlink(at.c_str(), link.data(), link.size());
    if (n < 0) fail(path, errno);
    std::string to(link.data(), static_cast<size_t>(n));
    at = !to.empty() && to[0] == '/' ? to : folderOf(at) + "/" + to;
  }
  fail(path, ELOOP);
}

mode_t modeFromUmask() {
  const mode_t mask = ::umask(0);
  ::umask(mask);
  return 0666 & ~mask;
}

// mkstemp's file in `folder`, named after `name`; -1 and errno on failure.
int createExclusive(const std::string& folder, const std::string& name, std::string& made) {
  std::string pattern = folder + "/." + name + ".XXXXXX";
  std::vector<char> buffer(pattern.begin(), pattern.end());
  buffer.push_back('\0');
  const int fd = ::mkstemp(buffer.data());
  if (fd >= 0) made.assign(buffer.data());
  return fd;
}

}  // namespace

void writeFileReplacing(const std::string& path, std::string_view bytes) {
  if (path.empty()) throw Fault("No file name given");
  const std::string target = finalTarget(path);
  struct stat st {};
  mode_t mode = modeFromUmask();
  if (::stat(target.c_str(), &st) == 0) {
    if (S_ISDIR(st.st_mode)) throw Fault("Cannot write " + path + ": it is a folder");
    if (!S_ISREG(st.st_mode)) throw Fault("Cannot write " + path + ": it is not a regular file");
    if (::access(target.c_str(), W_OK) != 0) fail(path, errno);
    mode = st.st_mode & 07777;  // a replaced file keeps its permissions (a private file stays private)
  }
  std::string temporary;
  const int fd = createExclusive(folderOf(target), nameOf(target), temporary);
  if (fd < 0) fail(path, errno);
  int error = 0;
  if (::fchmod(fd, mode) != 0) error = errno;
  size_t done = 0;
  while (error == 0 && done < bytes.size()) {
    const ssize_t n = ::write(fd, bytes.data() + done, bytes.size() - done);
    if (n < 0 && errno == EINTR) continue;
    if (n <= 0) {
      error = n < 0 ? errno : EIO;
      break;
    }
    done += static_cast<size_t>(n);
  }
  if (error == 0 && ::fsync(fd) != 0) error = errno;
  if (::close(fd) != 0 && error == 0) error = errno;
  if (error == 0 && ::rename(temporary.c_str(), target.c_str()) != 0) error = errno;
  if (error != 0) {
    ::unlink(temporary.c_str());
    fail(path, error);
  }
}

std::string makePrivateFile(const std::string& folder, const std::string& prefix) {
  std::string made;
  const int fd = createExclusive(folder.empty() ? "." : folder, prefix, made);
  if (fd < 0) throw Fault("Cannot make a private file in " + folder + ": " + std::strerror(errno));
  ::close(fd);
  return made;
}

}  // namespace zorvik
