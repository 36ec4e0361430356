#include "Progress.h"

namespace KesraIo
{

Progress Progress::Part(double from, double to) const
{
    if (m_state == nullptr)
    {
        return Progress();
    }
    const double width = m_to - m_from;
    return Progress(*m_state, m_from + width * from, m_from + width * to);
}

void Progress::TellFraction(double fraction) const
{
    if (fraction < m_state->told + kStep)
    {
        return;
    }
    m_state->told = fraction;
    if (!m_state->monitor->progress(fraction))
    {
        throw ReadCancelled();
    }
}

void Progress::TellDone() const
{
    if (m_state == nullptr || m_state->told >= m_to)
    {
        return;
    }
    m_state->told = m_to;
    if (!m_state->monitor->progress(m_to))
    {
        throw ReadCancelled();
    }
}

} // namespace KesraIo
