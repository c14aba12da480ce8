// What a command answers: plain lines or, with `--json`, JSON.

#pragma once

#include <concepts>
#include <cstdint>
#include <initializer_list>
#include <string>
#include <string_view>
#include <utility>
#include <variant>
#include <vector>

#include "apps/common/command_line.h"

namespace dqapps {

/// A value of an answer: nothing, true or false, a whole number, a text or several texts.
class Value {
 public:
  using Texts = std::vector<std::string>;

  Value() = default;
  Value(std::same_as<bool> auto truth) : value_(truth) {}
  Value(std::signed_integral auto number) : value_(std::int64_t{number}) {}
  Value(std::unsigned_integral auto number) requires(!std::same_as<decltype(number), bool>)
      : value_(std::uint64_t{number}) {}
  Value(const char* text) : value_(std::string(text)) {}
  Value(std::string_view text) : value_(std::string(text)) {}
  Value(std::string text) : value_(std::move(text)) {}
  Value(Texts texts) : value_(std::move(texts)) {}

  /// As a column of a plain line: by `OnOneLine`, several texts with tabs between.
  std::string Column() const;

  const auto& Get() const { return value_; }

 private:
  std::variant<std::monostate, bool, std::int64_t, std::uint64_t, std::string, Texts> value_;
};

/// The members of an object, in their order.
using Fields = std::vector<std::pair<std::string_view, Value>>;

/// A list. As JSON it is an array of objects, one a line, which is whole once `End` was called.
class Listing {
 public:
  explicit Listing(const Arguments& arguments) : json_(arguments.Has(kJson.name)) {}

  /// Prints an entry; plainly as its columns with tabs between, or as the line given.
  void Add(const Fields& fields);
  void Add(std::string_view line, const Fields& fields);
  /// Returns the status.
  int End(int status = kYes);

 private:
  bool json_;
  /// As JSON: the entry before, which is printed once it is known what follows.
  std::string last_;
};

/// Prints one answer, as the line or as a JSON object of the fields, and returns the status.
int PrintAnswer(const Arguments& arguments, std::string_view line, const Fields& fields,
                int status = kYes);

/// Prints facts, plainly a line NAME<TAB>VALUE for each; as JSON one object.
int PrintFacts(const Arguments& arguments, const Fields& facts);

/// "true" or "false", which is the status too; as JSON {"result": true}.
int PrintTruth(const Arguments& arguments, bool truth);

}  // namespace dqapps
