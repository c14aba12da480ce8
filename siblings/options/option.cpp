#include "siblings/options/option.h"

#include <utility>

#include "dqlib/framework/base/drawing.h"
#include "siblings/options/options_server.h"

namespace dq {

CDQOption::CDQOption(CDQOptionsServer& server, OptionDefinition definition, CString file)
    : m_server(server), m_strFile(std::move(file)) {
  SetDefinition(std::move(definition));
}

CDQOption::~CDQOption() = default;

void CDQOption::SetDefinition(OptionDefinition definition) {
  m_definition = std::move(definition);
  m_strName = m_definition.name;
  m_strShortName = m_definition.label;
  m_lastReading = {};
}

bool CDQOption::GetBool() const { return m_server.GetBool(GetID()); }

int CDQOption::GetInt() const { return m_server.GetInt(GetID()); }

CString CDQOption::GetString() const { return m_server.GetString(GetID()); }

bool CDQStringOption::Load() {
  m_strValue = CDQOptionsServer::GetObject()->GetString(m_nID);
  return !m_strValue.IsEmpty();
}

COLORREF CDQStringOption::GetColorRef(COLORREF fallback) const {
  if (!IsOptionValue(OptionKind::kColor, m_strValue.View())) return fallback;
  const auto parts = BytesOfHex(m_strValue.View());
  if (!parts || parts->size() != 3) return fallback;
  return RGB(static_cast<BYTE>((*parts)[0]), static_cast<BYTE>((*parts)[1]),
             static_cast<BYTE>((*parts)[2]));
}

}  // namespace dq
