// Text from templates with variables of the form `$$name$$`.
//
//   CDQTemplateEngine engine;
//   engine.SetVariable("$$object_name$$", "EMP");
//   engine.ResolveVariableString("DROP TABLE $$object_name$$");   // "DROP TABLE EMP"

#pragma once

#include <functional>
#include <string>
#include <string_view>
#include <unordered_map>

#include "dqlib/framework/base/c_string.h"

namespace dq {

/// Takes one message about a template, without a line end.
using TemplateReportSink = std::function<void(const CString& message)>;

/// A dictionary of variables and the replacement of them in texts. Names include their marks and
/// keep their case. Values stay until they are overwritten and are not scanned again. For the
/// user-interface thread.
class CDQTemplateEngine {
 public:
  /// Stores the value under a name of the form `$$name$$`, which has no other mark in it, so that
  /// a text can name it; `name` may be empty. Any other name, null too, is reported, nothing is
  /// stored, and the result is false. A null value counts as "".
  bool SetVariable(const char* name, const char* value);
  /// Whether there is a variable of that name.
  bool HasVariable(const char* name) const;

  /// The text with every variable replaced by its value. Marks pair from left to right, so a lone
  /// "$$" opens a variable that ends at the next one. A variable that isn't in the dictionary is
  /// reported and stays with its marks; an opening mark without a closing one is reported, and the
  /// rest of the text stays. Null counts as "". Linear in the text and the result.
  CString ResolveVariableString(const char* text);

  /// Replaces where reports go, null by the default, the trace log. Returns the former one. A sink
  /// may call the engine, this operation included.
  TemplateReportSink SetReportSink(TemplateReportSink sink);

 private:
  /// Finds names by a part of a text without making a string of it.
  struct NameHash {
    using is_transparent = void;
    std::size_t operator()(std::string_view name) const {
      return std::hash<std::string_view>{}(name);
    }
  };

  void Process(std::string_view text, std::string& result);
  void Report(UINT id, std::string_view subject) const;

  std::unordered_map<std::string, std::string, NameHash, std::equal_to<>> m_variables;
  TemplateReportSink m_sink;
};

}  // namespace dq
