// Services that answer what a test tells them and keep what they were asked.
//
//   ScriptedPlatform platform;
//   platform.errors.texts[2] = "No such file\r\n";
//   CDQSystemErrorMsg(2).Show();
//   EXPECT_EQ(platform.prompts.boxes.back().text, "No such file\r\n");

#pragma once

#include <functional>
#include <map>
#include <string>
#include <vector>

#include "dqlib/framework/base/resource_module.h"
#include "dqlib/platform/platform.h"

namespace dq::test {

struct Box {
  std::string text;
  UINT type;
  UINT help_id;
  friend bool operator==(const Box&, const Box&) = default;
};

class RecordingPrompts : public platform::Prompts {
 public:
  int Show(std::string_view text, UINT type, UINT help_id) override {
    boxes.push_back({std::string(text), type, help_id});
    if (on_show) on_show();
    return answer;
  }
  std::vector<Box> boxes;
  std::function<void()> on_show;
  int answer = BUTTON_OK;
};

class ScriptedModules : public platform::Modules {
 public:
  std::string FileName(const platform::Module* module) override {
    named.push_back(module);
    return "/opt/host";
  }
  const platform::Module& System() override { return system; }
  ResourceModule system;
  std::vector<const platform::Module*> named;
};

class ScriptedFacts : public platform::SystemFacts {
 public:
  int VerticalPixelsPerInch() override { return pixels_per_inch; }
  COLORREF Color(int index) override { return colors[index]; }
  int pixels_per_inch = 96;
  std::map<int, COLORREF> colors;
};

class ScriptedErrors : public platform::SystemErrors {
 public:
  DWORD LastError() override { return last; }
  std::optional<std::string> Describe(DWORD code) override {
    const auto text = texts.find(code);
    return text == texts.end() ? std::nullopt : std::optional(text->second);
  }
  DWORD last = 0;
  std::map<DWORD, std::string> texts;
};

class ScriptedNetwork : public platform::Network {
 public:
  platform::Result<platform::NetworkError> LastError() override { return last; }
  platform::Result<platform::NetworkError> last;
};

/// Puts all of the above in place for its lifetime.
class ScriptedPlatform {
 public:
  RecordingPrompts prompts;
  ScriptedModules modules;
  ScriptedFacts facts;
  ScriptedErrors errors;
  ScriptedNetwork network;

 private:
  platform::Platform Services() {
    platform::Platform services = platform::Current();
    services.prompts = &prompts;
    services.modules = &modules;
    services.system_facts = &facts;
    services.system_errors = &errors;
    services.network = &network;
    return services;
  }
  platform::ScopedPlatform scope_{Services()};
};

}  // namespace dq::test
