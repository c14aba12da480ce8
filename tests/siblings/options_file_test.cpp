#include "siblings/options/options_file.h"

#include "tests/support/testing.h"

namespace dq {
namespace {

TEST(OptionsFile, ReadsEveryKindOfValue) {
  const std::string text =
      "# first a remark\r\n\ndqoptions 1\r\n"
      "variable root directory \"../templates\"\n"
      "variable maker string \"V\\\\\\\"\\n\\x41\"\n"
      "option 7 bool On\n\tlabel \"An \xC3\xA4 on\"\n\tdefault 1\n"
      "option 8 int low\nlabel \"\"\ndefault -2147483648\nrange -2147483648 5\n"
      "option 9 string end\nmachine \"Software\\\\V\" \"End\"\n"
      "label \"l\"\ndefault oracle \"/\"\ndefault \"# no remark\"\n"
      "option 10 color ink\nlabel \"l\"\ndefault oracle none\ndefault 0aF1c2\n"
      "option 11 binary font\nlabel \"l\"\ndefault db2 0b\ndefault none\n"
      "option 2147483647 directory last\nlabel \"l\"\ndefault \"$$root$$\"";
  OptionsFile file;
  const auto error = ReadOptionsText(text, file);
  ASSERT_FALSE(error) << error->line << ": " << error->text;
  std::string read;
  for (const auto& variable : file.variables) {
    read += (variable.is_directory ? "d:" : "") + variable.value + "|";
  }
  for (const auto& option : file.options) {
    read +=
        "\n" + std::to_string(option.id) + option.name + "," + option.label + "," + option.fallback;
    for (const auto& [platform, value] : option.platform_fallbacks) {
      read += "," + std::to_string(platform) + "=" + value;
    }
    read += "," + option.machine_key + "," + option.machine_value;
  }
  EXPECT_EQ(read,
            "d:../templates|V\\\"\nA|\n7On,An \xC3\xA4 on,1,,\n8low,,-2147483648,,\n"
            "9end,l,# no remark,5=/,Software\\V,End\n10ink,l,0aF1c2,5=,,\n"
            "11font,l,,4=\x0b,,\n2147483647last,l,$$root$$,,");
  EXPECT_TRUE(IsValueOf(file.options[1], "5") && !IsValueOf(file.options[1], "6") &&
              IsValueOf(file.options[1], "-2147483648") && !IsValueOf(file.options[1], "x") &&
              !IsValueOf(file.options[0], "5"));
}

TEST(OptionsFile, RefusesWhatBreaksTheFormAndSaysWhere) {
  const std::string head = "dqoptions 1\n";
  const std::string option = head + "option 7 int n\n";
  const std::string whole = option + "label \"l\"\ndefault 1\n";
  for (const auto& [text, line, part] : test::Rows<std::string, std::size_t, const char*>{
           {"", 1, "missing"},
           {"dqoptions 2\n", 1, "version"},
           {"\xEF\xBB\xBF" + head, 1, "character"},
           {head + "options\n", 2, "unknown word 'options'"},
           {head + "\"option\" 7 int n\n", 2, "text where"},
           {head + "option -7 int n\n", 2, "id"},
           {head + "option 2147483648 int n\n", 2, "id"},
           {head + "option 7 float n\n", 2, "kind"},
           {head + "option 7 int 7n\n", 2, "name"},
           {whole + "option 7 int m\n", 5, "id"},
           {whole + "option 8 int N\n", 5, "name"},
           {option + "default 1\n", 4, "n has no label"},
           {option + "label \"l\"\noption 8 int m\n", 4, "n has no default"},
           {head + "label \"l\"\n", 2, "without its option"},
           {whole + "default 2\n", 5, "second default"},
           {whole + "range 2 3\n", 6, "n has a default out of its range"},
           {whole + "range 0 1\ndefault oracle 2\n", 7, "n has a default out of its range"},
           {whole + "range 0 1\nrange 0 1\n", 6, "a range without its option"},
           {whole + "range 1\n", 5, "'range' takes two numbers"},
           {whole + "range 0 x\n", 5, "'range' takes two numbers"},
           {whole + "range 1 0\n", 5, "a range that holds no number"},
           {head + "option 7 bool n\nrange 0 1\n", 3, "a range without its option"},
           {whole + "default oracle 2\ndefault oracle 2\n", 6, "platform"},
           {whole + "default acme 2\n", 5, "platform"},
           {option + "default \"1\"\n", 3, "kind int"},
           {option + "default 1 # remark\n", 3, "character"},
           {head + "option 7 bool n\ndefault 2\n", 3, "kind bool"},
           {head + "option 7 string n\ndefault \"\\x00\"\n", 3, "kind string"},
           {head + "option 7 string n\ndefault \"a\n", 3, "closing quote"},
           {head + "option 7 string n\ndefault \"\\x4\"\n", 3, "escape"},
           {head + "option 7 string n\ndefault \"a\"\"b\"\n", 3, "blank"},
           {head + "option 7 string n\ndefault \"\x1b\"\n", 3, "control"},
           {head + "option 7 color n\ndefault 12345\n", 3, "kind color"},
           {head + "option 7 binary n\ndefault 123\n", 3, "kind binary"},
           {head + "option 7 binary n\nmachine \"K\" \"v\"\n", 3, "binary"},
           {head + "variable a directory b\n", 2, "'variable' takes"},
           {head + "variable a string \"1\"\nvariable a string \"2\"\n", 3, "second variable"},
       }) {
    SCOPED_TRACE(text);
    OptionsFile file;
    const auto error = ReadOptionsText(text, file);
    ASSERT_TRUE(error);
    EXPECT_EQ(error->line, line) << error->text;
    EXPECT_NE(error->text.find(part), std::string::npos) << error->text;
    EXPECT_TRUE(file.options.empty() && file.variables.empty());
  }
}

}  // namespace
}  // namespace dq
