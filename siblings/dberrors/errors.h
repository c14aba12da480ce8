// The list of errors that a database call left behind, as the platform layer of the family keeps
// it.

#pragma once

#include <deque>
#include <memory>

#include "dqlib/framework/base/c_string.h"

namespace dq {

/// One error of a database.
class ErrorRecord {
 public:
  explicit ErrorRecord(const char* description);
  virtual ~ErrorRecord();

  /// The database's text. Virtual, because a driver may fetch it when it is asked for, and may
  /// throw.
  virtual CString GetErrorDescription() const;

 private:
  CString description_;
};

/// Errors in the order in which they came, to be taken one by one. Not for several threads at once.
class Errors {
 public:
  Errors() = default;
  Errors(const Errors&) = delete;
  Errors& operator=(const Errors&) = delete;
  virtual ~Errors();

  /// Adds an error at the end; null adds nothing.
  void Add(std::unique_ptr<ErrorRecord> error);

  /// True while `GetNextError` has one to give.
  virtual bool MoreErrors() const;
  /// The next error, which stays owned by the list; call it only while there are more.
  virtual ErrorRecord& GetNextError();

 private:
  std::deque<std::unique_ptr<ErrorRecord>> errors_;
  std::size_t next_ = 0;
};

}  // namespace dq
