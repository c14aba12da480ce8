#include "siblings/dberrors/errors.h"

#include <utility>

namespace dq {

ErrorRecord::ErrorRecord(const char* description) : description_(description) {}

ErrorRecord::~ErrorRecord() = default;

CString ErrorRecord::GetErrorDescription() const { return description_; }

Errors::~Errors() = default;

void Errors::Add(std::unique_ptr<ErrorRecord> error) {
  if (error != nullptr) errors_.push_back(std::move(error));
}

bool Errors::MoreErrors() const { return next_ < errors_.size(); }

ErrorRecord& Errors::GetNextError() { return *errors_[next_++]; }

}  // namespace dq
