// Services that answer what a test tells them and keep what they were asked.
//
//   ScriptedPlatform platform;
//   platform.errors.texts[2] = "No such file\r\n";
//   EXPECT_EQ(CDQSystemErrorMsg(2).GetErrorMessage(), "No such file\r\n");

#pragma once

#include "dqlib/framework/base/resource_module.h"
#include "tests/support/own_service.h"
#include "tests/support/testing.h"

namespace dq::testing {

struct ScriptedModules : platform::Modules {
  std::string FileName(const platform::Module* module) override {
    named.push_back(module);
    return path;
  }
  const platform::Module& System() override { return system; }
  std::string path = "/opt/host";
  ResourceModule system;
  std::vector<const platform::Module*> named;
};

struct ScriptedFacts : platform::SystemFacts {
  int VerticalPixelsPerInch() override { return pixels_per_inch; }
  COLORREF Color(int index) override { return colors[index]; }
  platform::Result<platform::SystemVersion> Version() override { return version; }
  std::string UserName() override { return "scott"; }
  std::string ComputerName() override { return "TIGER"; }
  std::string HostName() override { return "tiger.example.org"; }
  bool IsAdministrator() override { return administrator; }
  std::string FolderPath(int folder) override { return folders[folder]; }
  std::string WebBrowserCommand() override { return browser; }
  int pixels_per_inch = 96;
  platform::Result<platform::SystemVersion> version;
  bool administrator = false;
  std::map<int, std::string> folders;
  std::string browser;
  std::map<int, COLORREF> colors;
};

struct ScriptedErrors : platform::SystemErrors {
  DWORD LastError() override { return last; }
  std::optional<std::string> Describe(DWORD code) override {
    return texts.contains(code) ? std::optional(texts[code]) : std::nullopt;
  }
  DWORD last = 0;
  std::map<DWORD, std::string> texts;
};

struct ScriptedNetwork : platform::Network {
  platform::Result<platform::NetworkError> LastError() override { return last; }
  platform::Result<platform::NetworkError> last;
};

/// Puts all of the above in place for its lifetime.
class ScriptedPlatform {
 public:
  ScriptedModules modules;
  ScriptedFacts facts;
  ScriptedErrors errors;
  ScriptedNetwork network;

 private:
  using Scope = platform::ScopedPlatform;
  Scope modules_{test::With(&platform::Platform::modules, &modules)};
  Scope facts_{test::With(&platform::Platform::system_facts, &facts)};
  Scope errors_{test::With(&platform::Platform::system_errors, &errors)};
  Scope network_{test::With(&platform::Platform::network, &network)};
};

}  // namespace dq::testing
