// Text from templates with variables of the form `$$name$$`.

#pragma once

#include <functional>
#include <map>
#include <string>
#include <string_view>

#include "dqlib/framework/base/c_string.h"

namespace dq {

/// Takes one message about a template, without a line end.
using TemplateReportSink = std::function<void(const CString& message)>;

/// A dictionary of variables and the replacement of them in texts. Names include their marks and
/// keep their case. Values stay until they are overwritten and are not scanned again. For the
/// user-interface thread.
class CDQTemplateEngine {
 public:
  /// Stores the value under a name of the form `$$name$$`. Any other name is reported, nothing is
  /// stored, and the result is false.
  bool SetVariable(const char* name, const char* value);

  /// The text with every variable replaced by its value. Marks pair from left to right, so a lone
  /// "$$" opens a variable that ends at the next one. A variable that isn't in the dictionary is
  /// reported and stays with its marks; an opening mark without a closing one is reported, and the
  /// rest of the text stays. Linear in the text.
  CString ResolveVariableString(const char* text);

  /// Replaces where reports go, null by the default, the trace log. Returns the former one.
  TemplateReportSink SetReportSink(TemplateReportSink sink);

 private:
  void Process(std::string_view text, std::string& result);
  void Report(UINT id, std::string_view subject) const;

  std::map<std::string, std::string, std::less<>> m_variables;
  TemplateReportSink m_sink;
};

}  // namespace dq
