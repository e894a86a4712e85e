#include "tools/doctor/report.h"

namespace {

QString gradeName(Finding::Grade grade)
{
    switch (grade) {
    case Finding::Grade::Good:
        return QStringLiteral("  ok    ");
    case Finding::Grade::Note:
        return QStringLiteral("  note  ");
    default:
        return QStringLiteral("  MEND  ");
    }
}

} // namespace

Report::Report(FILE *out)
    : m_out(out)
{
    m_out.setCodec("UTF-8");
}

void Report::begin(const QString &heading)
{
    m_out << heading << '\n';
    m_out.flush();
}

void Report::add(const Findings &findings)
{
    for (const Finding &finding : findings) {
        m_out << gradeName(finding.grade) << finding.what << '\n';
        if (!finding.mend.isEmpty()) {
            m_out << "        -> " << finding.mend << '\n';
        }
        m_toMend += finding.grade == Finding::Grade::Mend ? 1 : 0;
    }
    m_out.flush();
}

bool Report::conclude()
{
    if (m_toMend == 0) {
        m_out << "All is well.\n";
    } else {
        m_out << "To mend: " << m_toMend << '\n';
    }
    m_out.flush();
    return m_toMend == 0;
}
