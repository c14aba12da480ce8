#include "apps/common/answer.h"

#include <nlohmann/json.hpp>

#include "apps/common/console.h"

namespace dqapps {
namespace {

using Json = nlohmann::ordered_json;

/// A text that isn't UTF-8 is no JSON text.
Json OfText(const std::string& text) {
  Json json = text;
  try {
    json.dump();
  } catch (const Json::type_error&) {
    constexpr std::string_view digits = "0123456789abcdef";
    std::string hex;
    for (const char each : text) {
      const auto byte = static_cast<unsigned char>(each);
      hex.append({digits[byte >> 4], digits[byte & 0xF]});
    }
    json = {{"hex", hex}};
  }
  return json;
}

struct ToJson {
  Json operator()(std::monostate) const { return nullptr; }
  Json operator()(const std::string& text) const { return OfText(text); }
  Json operator()(const Value::Texts& texts) const {
    Json array = Json::array();
    for (const std::string& text : texts) array.push_back(OfText(text));
    return array;
  }
  template <typename Number>
  Json operator()(Number number) const {
    return number;
  }
};

std::string ObjectOf(const Fields& fields) {
  Json object = Json::object();
  for (const auto& [name, value] : fields) {
    object[std::string(name)] = std::visit(ToJson(), value.Get());
  }
  return object.dump();
}

struct ToColumn {
  std::string operator()(std::monostate) const { return {}; }
  std::string operator()(bool truth) const { return truth ? "true" : "false"; }
  std::string operator()(const std::string& text) const { return OnOneLine(text); }
  std::string operator()(const Value::Texts& texts) const {
    std::string line;
    for (const std::string& text : texts) {
      if (&text != texts.data()) line += '\t';
      line += OnOneLine(text);
    }
    return line;
  }
  template <typename Number>
  std::string operator()(Number number) const {
    return std::to_string(number);
  }
};

}  // namespace

std::string Value::Column() const { return std::visit(ToColumn(), value_); }

void Listing::Add(const Fields& fields) {
  std::string line;
  if (!json_) {
    for (const auto& field : fields) {
      if (&field != fields.data()) line += '\t';
      line += field.second.Column();
    }
  }
  Add(line, fields);
}

void Listing::Add(std::string_view line, const Fields& fields) {
  if (!json_) {
    PrintLine(line);
    return;
  }
  PrintLine(last_.empty() ? "[" : last_ + ',');
  last_ = ObjectOf(fields);
}

int Listing::End(int status) {
  if (json_) PrintLine(last_.empty() ? "[]" : last_ + "\n]");
  return status;
}

int PrintAnswer(const Arguments& arguments, std::string_view line, const Fields& fields,
                int status) {
  PrintLine(arguments.Has(kJson.name) ? ObjectOf(fields) : std::string(line));
  return status;
}

int PrintFacts(const Arguments& arguments, const Fields& facts) {
  std::string lines;
  for (const auto& [name, value] : facts) {
    lines.append(lines.empty() ? "" : "\n").append(name).append("\t").append(value.Column());
  }
  return PrintAnswer(arguments, lines, facts);
}

int PrintTruth(const Arguments& arguments, bool truth) {
  return PrintAnswer(arguments, truth ? "true" : "false", {{"result", truth}}, truth ? kYes : kNo);
}

}  // namespace dqapps
