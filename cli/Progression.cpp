#include "Progression.h"

#include <prefa.h>

#include <cstdio>

namespace prefa_cli
{

ProgressBar::ProgressBar(bool enabled)
    : m_enabled(enabled && AfxIsStdErrTerminal()), m_start(std::chrono::steady_clock::now())
{
}

ProgressBar::~ProgressBar()
{
    Finish();
}

void ProgressBar::Update(double fraction, const std::string& label)
{
    if (!m_enabled)
        return;
    double elapsed = std::chrono::duration<double>(std::chrono::steady_clock::now() - m_start).count();
    if (!m_shown && elapsed < 1.0)
        return;
    if (fraction < 0)
        fraction = 0;
    if (fraction > 1)
        fraction = 1;
    int permille = (int)(fraction * 1000);
    if (m_shown && permille == m_lastPermille)
        return;
    m_lastPermille = permille;
    m_shown = true;
    const int width = 30;
    int filled = (int)(fraction * width + 0.5);
    std::string bar(filled, '#');
    bar.resize(width, ' ');
    std::fprintf(stderr, "\r[%s] %5.1f%%  %-28s", bar.c_str(), fraction * 100.0, label.c_str());
    std::fflush(stderr);
}

void ProgressBar::Finish()
{
    if (m_shown)
    {
        std::fprintf(stderr, "\r%*s\r", 72, "");
        std::fflush(stderr);
        m_shown = false;
    }
}

} // namespace prefa_cli
