// How operations of the platform seam report failure: as values, never as exceptions. That goes for
// want of memory too, wherever an operation returns an `Error` or a `Result`: it has then done
// nothing. Operations that return a plain value have no place for an error; there want of memory is
// `std::bad_alloc`, as it would be in the caller that copies the value.

#pragma once

#include <utility>

#include "dqlib/platform/types.h"

namespace dq::platform {

/// What went wrong, as far as a caller acts on it. `code` of `Error` says it exactly.
enum class ErrorKind {
  kNone,             ///< The operation succeeded.
  kNotFound,         ///< The thing named doesn't exist. Trying again doesn't help.
  kAlreadyExists,    ///< The thing to be made exists.
  kAccessDenied,     ///< The system forbids it to this user.
  kInvalidArgument,  ///< The system could not make sense of what it was given.
  kBrokenPipe,       ///< The other end is gone, or a reader was interrupted. An ordinary end.
  kBusy,             ///< Someone else holds it. Trying again later may help.
  kNoSpace,          ///< The disk, a quota or a table is full.
  kBufferTooSmall,   ///< The caller's buffer is too small for the data.
  kUnsupported,      ///< This platform has no such service.
  kOther,            ///< Anything else.
};

/// The outcome of an operation. A value; any thread.
struct Error {
  ErrorKind kind = ErrorKind::kNone;
  /// The system's own error number (errno on POSIX), 0 on success. `SystemErrors` has its text.
  DWORD code = 0;

  bool ok() const { return kind == ErrorKind::kNone; }
};

/// A value, or the error that stands in its place; then `value` is default-constructed.
template <typename T>
struct Result {
  T value{};
  Error error;

  Result() = default;
  Result(T v) : value(std::move(v)) {}
  Result(Error e) : error(e) {}

  bool ok() const { return error.ok(); }
};

}  // namespace dq::platform
