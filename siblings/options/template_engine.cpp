#include "siblings/options/template_engine.h"

#include <utility>

#include "dqlib/framework/base/trace.h"
#include "dqlib/resources/string_ids.h"

namespace dq {
namespace {

/// No code page has a two-byte character with a "$" in it, so bytes are enough to go by.
constexpr std::string_view kMark = "$$";

std::string_view OrEmpty(const char* text) { return text == nullptr ? "" : text; }

/// Index behind the variable that opens at `open`; npos if it has no closing mark.
std::size_t EndOfVariable(std::string_view text, std::size_t open) {
  const std::size_t close = text.find(kMark, open + kMark.size());
  return close == std::string_view::npos ? close : close + kMark.size();
}

}  // namespace

bool CDQTemplateEngine::SetVariable(const char* name, const char* value) {
  const std::string_view key = OrEmpty(name);
  if (!key.starts_with(kMark) || EndOfVariable(key, 0) != key.size()) {
    Report(IDS_TEMPLATE_MALFORMED_NAME, key);
    return false;
  }
  m_variables.insert_or_assign(std::string(key), std::string(OrEmpty(value)));
  return true;
}

bool CDQTemplateEngine::HasVariable(const char* name) const {
  return m_variables.contains(OrEmpty(name));
}

CString CDQTemplateEngine::ResolveVariableString(const char* text) {
  std::string result;
  Process(OrEmpty(text), result);
  return CString(std::move(result));
}

void CDQTemplateEngine::Process(std::string_view text, std::string& result) {
  result.reserve(text.size());
  std::size_t done = 0;
  for (;;) {
    const std::size_t open = text.find(kMark, done);
    if (open == std::string_view::npos) break;
    const std::size_t end = EndOfVariable(text, open);
    if (end == std::string_view::npos) {
      Report(IDS_TEMPLATE_MALFORMED_VARIABLE, text);
      break;
    }
    const std::string_view name = text.substr(open, end - open);
    const auto found = m_variables.find(name);
    if (found == m_variables.end()) {
      result.append(text, done, end - done);
      Report(IDS_TEMPLATE_UNKNOWN_VARIABLE, name);
    } else {
      result.append(text, done, open - done).append(found->second);
    }
    done = end;
  }
  result.append(text.substr(done));
}

void CDQTemplateEngine::Report(UINT id, std::string_view subject) const {
  CString message;
  message.Format(id, std::string(subject).c_str());
  // A sink may put another one in its own place.
  if (const TemplateReportSink sink = m_sink) {
    sink(message);
  } else {
    AfxTrace((message + "\n").View());
  }
}

TemplateReportSink CDQTemplateEngine::SetReportSink(TemplateReportSink sink) {
  return std::exchange(m_sink, std::move(sink));
}

}  // namespace dq
