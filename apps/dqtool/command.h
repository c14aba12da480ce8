// The commands' common ground; `apps/common/command.h` shows how a command looks.

#pragma once

#include "apps/common/command.h"

namespace dqtool {

using dqapps::Arguments;
using dqapps::Command;
using dqapps::Complain;
using dqapps::ComplainInLines;
using dqapps::DidYouMean;
using dqapps::Fields;
using dqapps::kJson;
using dqapps::kNo;
using dqapps::kWrongUsage;
using dqapps::kYes;
using dqapps::Listing;
using dqapps::OnOneLine;
using dqapps::Option;
using dqapps::OutputClosed;
using dqapps::PrintAnswer;
using dqapps::PrintFacts;
using dqapps::PrintLine;
using dqapps::PrintTruth;
using dqapps::ReadNumber;
using dqapps::Times;
using dqapps::Value;
using dqapps::WrongUsage;

}  // namespace dqtool
