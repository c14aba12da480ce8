#include "dqlib/platform/system_errors.h"

#include <cerrno>
#include <climits>
#include <cstring>
#include <exception>
#include <new>
#include <stdexcept>
#include <system_error>

#include "dqlib/platform/posix/system_services.h"

namespace dq::platform::posix {
namespace {

struct Mapping {
  int number;
  ErrorKind kind;
};

/// A list and not a switch, because some systems give several names one number.
constexpr Mapping kMappings[] = {
    {ENOENT, ErrorKind::kNotFound},
    {ENOTDIR, ErrorKind::kNotFound},
    {ESRCH, ErrorKind::kNotFound},
    {ECHILD, ErrorKind::kNotFound},
    {ENXIO, ErrorKind::kNotFound},
    {ENODEV, ErrorKind::kNotFound},
    {ENODATA, ErrorKind::kNotFound},
    {EEXIST, ErrorKind::kAlreadyExists},
    {EACCES, ErrorKind::kAccessDenied},
    {EPERM, ErrorKind::kAccessDenied},
    {EROFS, ErrorKind::kAccessDenied},
    {EINVAL, ErrorKind::kInvalidArgument},
    {EBADF, ErrorKind::kInvalidArgument},
    {EISDIR, ErrorKind::kInvalidArgument},
    {ENAMETOOLONG, ErrorKind::kInvalidArgument},
    {ELOOP, ErrorKind::kInvalidArgument},
    {E2BIG, ErrorKind::kInvalidArgument},
    {ENOEXEC, ErrorKind::kInvalidArgument},
    {EPIPE, ErrorKind::kBrokenPipe},
    {ECONNRESET, ErrorKind::kBrokenPipe},
    {ECANCELED, ErrorKind::kBrokenPipe},
    {EBUSY, ErrorKind::kBusy},
    {EAGAIN, ErrorKind::kBusy},
    {EWOULDBLOCK, ErrorKind::kBusy},
    {ETXTBSY, ErrorKind::kBusy},
    {EDEADLK, ErrorKind::kBusy},
    {ENOSPC, ErrorKind::kNoSpace},
    {EDQUOT, ErrorKind::kNoSpace},
    {EFBIG, ErrorKind::kNoSpace},
    {ENOMEM, ErrorKind::kNoSpace},
    {EMFILE, ErrorKind::kNoSpace},
    {ENFILE, ErrorKind::kNoSpace},
    {ENOSYS, ErrorKind::kUnsupported},
    {ENOTSUP, ErrorKind::kUnsupported},
    {EOPNOTSUPP, ErrorKind::kUnsupported},
};

// `strerror_r` comes in two forms: one answers the text, the other fills the buffer and answers
// whether it could. Whichever the system has picks its overload.
[[maybe_unused]] const char* TextOf(const char* answer, const char*) { return answer; }
[[maybe_unused]] const char* TextOf(int failed, const char* buffer) {
  return failed == 0 ? buffer : nullptr;
}

class ErrnoTexts : public SystemErrors {
 public:
  DWORD LastError() override { return static_cast<DWORD>(errno); }

  std::optional<std::string> Describe(DWORD code) override {
    if (code > INT_MAX) return std::nullopt;
    const int number = static_cast<int>(code);
#ifdef __GLIBC__
    if (strerrordesc_np(number) == nullptr) return std::nullopt;
#endif
    const int last_error = errno;  // asking for a text is no system call that failed
    char buffer[256];
    const char* const text = TextOf(strerror_r(number, buffer, sizeof buffer), buffer);
    std::optional<std::string> described;
    if (text != nullptr) described = std::string(text) + "\r\n";
    errno = last_error;
    return described;
  }
};

}  // namespace

Error ErrorFromErrno(int number) {
  if (number == 0) return {};
  const DWORD code = static_cast<DWORD>(number);
  for (const Mapping& mapping : kMappings) {
    if (mapping.number == number) return {mapping.kind, code};
  }
  return {ErrorKind::kOther, code};
}

Error ErrorOfException() noexcept {
  try {
    throw;
  } catch (const std::bad_alloc&) {
    return ErrorFromErrno(ENOMEM);
  } catch (const std::length_error&) {
    return ErrorFromErrno(ENOMEM);
  } catch (const std::system_error& error) {
    return ErrorFromErrno(error.code().value());
  } catch (const std::exception&) {
    return ErrorFromErrno(EIO);
  }
}

SystemErrors& SystemErrorTexts() {
  static ErrnoTexts& texts = *new ErrnoTexts;
  return texts;
}

}  // namespace dq::platform::posix
