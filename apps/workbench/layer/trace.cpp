#include "apps/workbench/layer/trace.h"

#include "apps/workbench/layer/text.h"

namespace workbench {

Trace::~Trace() = default;

std::string QuoteJson(std::string_view text) {
  std::string quoted = "\"";
  for (const wxUniChar character : ToNative(text)) {
    const auto code = character.GetValue();
    if (code == '"' || code == '\\') quoted += '\\';
    if (code >= ' ') {
      quoted += wxString(character).utf8_str();
    } else {
      quoted += wxString::Format("\\u%04x", static_cast<unsigned>(code)).utf8_str();
    }
  }
  return quoted + '"';
}

TraceLine::TraceLine(std::string_view event) : text_("{") {
  text_ += "\"event\":" + QuoteJson(event);
}

void TraceLine::Name(std::string_view name) { text_ += "," + QuoteJson(name) + ":"; }

void TraceLine::Add(std::string_view name, std::string_view text) {
  Name(name);
  text_ += QuoteJson(text);
}

void TraceLine::Add(std::string_view name, long long number) {
  Name(name);
  text_ += std::to_string(number);
}

void TraceLine::Add(std::string_view name, bool truth) {
  Name(name);
  text_ += truth ? "true" : "false";
}

void TraceLine::Add(std::string_view name, std::initializer_list<int> numbers) {
  Name(name);
  text_ += '[';
  for (const int number : numbers) {
    if (text_.back() != '[') text_ += ',';
    text_ += std::to_string(number);
  }
  text_ += ']';
}

void TraceLine::AddRaw(std::string_view name, std::string_view json) {
  Name(name);
  text_ += json;
}

}  // namespace workbench
