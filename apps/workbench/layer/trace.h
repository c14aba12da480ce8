// What tests of a host with windows read: lines of JSON on standard output that tell where the
// toolkit's windows are.

#pragma once

#include <initializer_list>
#include <string>
#include <string_view>

namespace workbench {

/// One line: an object whose members are added in order.
class TraceLine {
 public:
  explicit TraceLine(std::string_view event);

  void Add(std::string_view name, std::string_view text);
  void Add(std::string_view name, const char* text) { Add(name, std::string_view(text)); }
  void Add(std::string_view name, long long number);
  void Add(std::string_view name, bool truth);
  void Add(std::string_view name, std::initializer_list<int> numbers);
  /// A member that is JSON already.
  void AddRaw(std::string_view name, std::string_view json);

  std::string Finish() const { return text_ + "}"; }

 private:
  void Name(std::string_view name);

  std::string text_;
};

/// The text as a JSON string.
std::string QuoteJson(std::string_view text);

/// Where the lines go.
class Trace {
 public:
  Trace() = default;
  Trace(const Trace&) = delete;
  Trace& operator=(const Trace&) = delete;
  virtual ~Trace();

  virtual void Write(const TraceLine& line) = 0;
};

}  // namespace workbench
